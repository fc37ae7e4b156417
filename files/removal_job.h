#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <system_error>
#include <vector>

#include "files/confined_threads.h"
#include "files/holding_folders.h"
#include "files/removal.h"
#include "files/traversal.h"

namespace tarnby {

/// What unlinkat(2) took for this run. What others took, or take back, is not among it.
struct Taken {
  std::int64_t entries = 0;
  std::int64_t bytes = 0;

  /// Removes a file, link or special file; errno(3) tells why it could not.
  bool unlink(int folder, const char* name, std::int64_t size);
  /// Removes a folder that is empty.
  /// @param size what it counts.
  bool remove_folder(int parent, const char* name, std::int64_t size);

  void tell(RemovalProgress* progress) const;
};

/// What an entry counts when it goes now; for a folder what it takes itself.
std::int64_t counted_at(CountedBytes counted, int parent, const char* name);

/// Removes whole folders; each start is one of them, and its tag is its index in the list.
class RemovalJob final : public TraversalJob {
 public:
  /// Why a listed entry may not be begun after all; empty when it may. Called on the workers.
  using MayBegin = std::function<std::error_code(std::size_t tag)>;

  /// @param confined threads for the parts of a deep tree; null when this job's threads keep their rights.
  RemovalJob(const GrantedFolders& granted, const KeptIdentities& kept, ConfinedThreads* confined, std::size_t targets,
             const RemovalOptions& options, MayBegin may_begin)
      : granted_(granted),
        kept_(kept),
        confined_(confined),
        targets_(targets),
        options_(options),
        may_begin_(std::move(may_begin)) {}

  /// Prepares a target; call before its traversal starts.
  /// @param follows it goes on with what was begun before it, so that a stop does not keep it from being begun.
  void prepare(std::size_t tag, std::shared_ptr<const HoldingFolder> holding, std::string name, bool follows);
  void wait_for_fewer_than(std::size_t most);

  /// True when the target was prepared and has been left: the functions below tell how it went.
  bool is_done(std::size_t tag) const { return targets_[tag].done; }
  /// False when a stop came before it.
  bool begun(std::size_t tag) const { return targets_[tag].begun; }
  /// Why it is not all gone; empty when it is.
  std::error_code error(std::size_t tag) const;
  /// What all its passes have removed.
  std::int64_t bytes(std::size_t tag) const { return targets_[tag].bytes; }
  bool taken(std::size_t tag) const { return targets_[tag].taken; }
  /// The name under which what is left of a whole unit lies; empty when it has its own.
  const std::string& hidden_name(std::size_t tag) const { return targets_[tag].hidden_name; }

  Descriptor open_start(const TraversedFolder& folder) override;
  Descriptor open_below(int parent, const TraversedFolder& folder) override;
  bool run_apart(int folder, const std::function<void()>& work) override;
  bool keeps_handles() const override { return true; }
  bool only_looks() const override { return false; }
  void visit(const TraversedFolder& folder, int handle, std::span<const RawEntry> entries,
             FoldersToEnter& enter) override;
  void leave(const TraversedFolder& folder, int parent_handle) override;

 private:
  struct Target {
    std::shared_ptr<const HoldingFolder> holding;
    std::string name;
    std::string hidden_name;
    std::atomic<int> first_error{0};
    std::error_code refusal;
    /// Once it is, it is the entry in hand, which a stop lets go to its end.
    std::atomic<bool> begun{false};
    std::atomic<bool> done{false};
    bool follows = false;
    std::atomic<std::int64_t> bytes{0};
    std::atomic<bool> lost_something{false};
    bool taken = false;

    const std::string& standing_name() const { return hidden_name.empty() ? name : hidden_name; }
  };

  bool begin(std::size_t tag);
  static bool hide(Target& target, const Descriptor& opened);
  static void give_name_back(Target& target);
  template <typename Attempt>
  bool unlocking(int folder, Attempt attempt) const;
  Descriptor open_checked(int parent, const std::string& name) const;
  bool may_enter(const Descriptor& folder) const;
  bool ends_now();
  void note_taken(Target& target);
  void count(std::size_t tag, const Taken& taken);
  void remove_left(const TraversedFolder& folder, int parent, const std::string& name, Taken& taken);
  void note(std::size_t tag, int error);

  const GrantedFolders& granted_;
  const KeptIdentities& kept_;
  ConfinedThreads* const confined_;
  std::vector<Target> targets_;
  const RemovalOptions& options_;
  const MayBegin may_begin_;
  std::mutex mutex_;
  std::condition_variable one_done_;
  std::size_t in_hand_ = 0;
};

}  // namespace tarnby
