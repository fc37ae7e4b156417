// A settings file and those who share it.
//
// What was set is kept as changes, key by key, until it is written. To write, a store takes the lock, reads the file as
// it is by then, applies its changes to that, and puts the result in the file's place. So a counter that two processes
// add to gets both sums, and a key that another process has written stays.
//
// The lock is a file of its own beside the settings, since they are replaced with every write, and it stays there: who
// removed it would let two others each hold a lock on a different file of that name.

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <string>
#include <thread>
#include <utility>
#include <variant>

#include "files/descriptor.h"
#include "files/directory.h"
#include "files/temporary_file.h"
#include "platform/settings_store.h"

namespace tarnby {

namespace {

using Values = SettingsStore::Values;

/// More than any settings; a larger file is something else that stands in their place.
constexpr std::size_t max_settings_bytes = std::size_t{64} << 20U;

constexpr mode_t private_file = 0600;

// ---- What happened to a key

/// The value a key was given, or none when it was removed.
using NewValue = std::optional<PropertyList>;

/// What is to become of a key: a new value, or that much more than it holds.
using Change = std::variant<NewValue, std::int64_t>;
using Changes = std::map<std::string, Change, std::less<>>;

NewValue changed(const PropertyList* held, const Change& change) {
  if (const auto* amount = std::get_if<std::int64_t>(&change)) return sum_of(held, *amount);
  return std::get<NewValue>(change);
}

/// Both changes as one.
Change combined(const Change& earlier, const Change& later) {
  const auto* amount = std::get_if<std::int64_t>(&later);
  if (amount == nullptr) return later;
  if (const auto* value = std::get_if<NewValue>(&earlier)) return changed(*value ? &**value : nullptr, later);
  const PropertyList before = std::get<std::int64_t>(earlier);
  return *sum_of(&before, *amount).as<std::int64_t>();
}

void put(Changes& changes, std::string_view key, Change change) {
  const auto [entry, is_new] = changes.try_emplace(std::string(key), change);
  if (!is_new) entry->second = combined(entry->second, change);
}

void apply(Values& values, const Changes& changes) {
  for (const auto& [key, change] : changes) {
    const auto held = values.find(key);
    NewValue value = changed(held == values.end() ? nullptr : &held->second, change);
    if (value) {
      values.insert_or_assign(key, std::move(*value));
    } else if (held != values.end()) {
      values.erase(held);
    }
  }
}

// ---- The file

enum class FileState {
  missing,
  sound,
  /// There are bytes, but they are no settings.
  damaged,
  /// There is something, and it cannot be read.
  unreadable,
};

struct FileContent {
  FileState state = FileState::unreadable;
  Values values;
  mode_t mode = private_file;
};

std::optional<std::string> read_all(int descriptor) {
  std::string bytes;
  constexpr std::size_t step = std::size_t{64} << 10U;
  for (;;) {
    const std::size_t old_size = bytes.size();
    if (old_size > max_settings_bytes) return std::nullopt;
    bytes.resize(old_size + step);
    const ssize_t count = uninterrupted([&] { return ::read(descriptor, bytes.data() + old_size, step); });
    if (count < 0) return std::nullopt;
    bytes.resize(old_size + static_cast<std::size_t>(count));
    if (count == 0) return bytes;
  }
}

FileContent read_settings(const std::string& path) {
  struct stat status = {};
  if (uninterrupted([&] { return ::stat(path.c_str(), &status); }) != 0) {
    return {errno == ENOENT ? FileState::missing : FileState::unreadable, {}};
  }
  if (!S_ISREG(status.st_mode)) return {};  // opening a FIFO or a device could wait or do something
  const Descriptor file(
      uninterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY); }));
  if (!file || uninterrupted([&] { return ::fstat(file.get(), &status); }) != 0 || !S_ISREG(status.st_mode)) return {};
  const bool too_large = status.st_size > off_t{max_settings_bytes};
  const auto bytes = too_large ? std::nullopt : read_all(file.get());
  if (!bytes) return {};
  auto list = parse_property_list(*bytes);
  auto* values = list ? list->as<Values>() : nullptr;
  const mode_t mode = status.st_mode & 0777U;
  if (values == nullptr) return {FileState::damaged, {}, mode};
  return {FileState::sound, std::move(*values), mode};
}

std::string folder_of(const std::string& path) {
  return Url::file(path).parent().path();
}

/// The file that a chain of links leads to, which may be missing. Those who keep their settings elsewhere and a link in
/// their place want the file there to change and the link to stay. None when the chain has no end or cannot be read.
std::optional<std::string> without_links(std::string path) {
  constexpr int longest_chain = 40;
  for (int links = 0; links < longest_chain; ++links) {
    std::string target(4096, '\0');
    const ssize_t length = uninterrupted([&] { return ::readlink(path.c_str(), target.data(), target.size()); });
    if (length < 0 && errno != EINVAL && status_at(AT_FDCWD, path.c_str()).error != ENOENT) return std::nullopt;
    if (length < 0) return path;  // no link; whatever else it is shows when it is read
    target.resize(static_cast<std::size_t>(length));
    if (!target.starts_with('/')) target.insert(0, folder_of(path) + "/");
    path = std::move(target);
  }
  return std::nullopt;
}

std::atomic<bool> is_hurried{false};
static_assert(std::atomic<bool>::is_always_lock_free);

/// Waits a bounded time until no other process holds the file; false when one still does. Asked again and again, since
/// nothing else ends waiting for a lock.
bool wait_for_lock(int file) {
  using std::chrono::milliseconds;
  milliseconds waited{0};
  for (milliseconds pause{1}; uninterrupted([&] { return ::flock(file, LOCK_EX | LOCK_NB); }) != 0;) {
    if (errno != EWOULDBLOCK || waited >= (is_hurried ? milliseconds(200) : milliseconds(3'000))) return false;
    std::this_thread::sleep_for(pause);
    waited += pause;
    pause = std::min(2 * pause, milliseconds(20));
  }
  return true;
}

/// Waits for its turn; lets the next one have it when closed. Holds nothing when there is no lock to be had.
Descriptor lock_for_writing(const std::string& path) {
  const std::string name = path + ".lock";
  Descriptor lock(uninterrupted(
      [&] { return ::open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NOCTTY, private_file); }));
  if (lock && !wait_for_lock(lock.get())) lock.reset();
  return lock;
}

bool set_aside(const std::string& path) {
  constexpr int most_names = 10'000;
  std::string name = path + ".damaged";
  for (int next = 2; next <= most_names; ++next) {
    if (rename_to_free_name(path, name)) return true;
    if (errno != EEXIST) return false;
    name = path + ".damaged-" + std::to_string(next);
  }
  return false;
}

/// Puts `values` in the place of what was read. A damaged file goes aside only when its successor is on the disk. Where
/// there was no file, none is replaced, should one be there all the same.
bool replace_settings(const std::string& path, const FileContent& old, const Values& values) {
  const std::string bytes = write_xml_property_list(values);
  // What could not be read again is not written: it would be set aside as damaged, with all other keys.
  if (bytes.size() > max_settings_bytes || !parse_property_list(bytes)) return false;
  TemporaryFile successor(path);
  if (!successor.write(bytes, old.mode)) return false;
  if (old.state == FileState::damaged && !set_aside(path)) return false;
  return old.state == FileState::sound ? successor.replace(path) : successor.move_to_free_name(path);
}

/// Applies the changes to what the file holds now. Gives what it holds then; none when that failed.
std::optional<Values> write_changes(const Url& file, const Changes& changes) {
  if (!file.is_file_url()) return std::nullopt;
  make_folders(file.parent());
  const auto path = without_links(file.path());
  if (!path) return std::nullopt;
  const Descriptor lock = lock_for_writing(*path);
  if (!lock) return std::nullopt;
  remove_old_temporary_files(*path);
  const FileContent old = read_settings(*path);
  if (old.state == FileState::unreadable) return std::nullopt;
  Values values = old.values;
  apply(values, changes);
  const bool nothing_new = values == old.values && old.state != FileState::damaged;
  if (!nothing_new && !replace_settings(*path, old, values)) return std::nullopt;
  return values;
}

// ---- The store

class SettingsFile final : public SettingsStore {
 public:
  explicit SettingsFile(Url file) : file_(std::move(file)) { read_again(); }

  std::optional<PropertyList> value(std::string_view key) const override {
    const std::lock_guard lock(mutex_);
    const auto held = held_.find(key);
    NewValue seen = held == held_.end() ? NewValue() : held->second;
    for (const Changes* changes : {&being_written_, &changes_}) {
      const auto change = changes->find(key);
      if (change != changes->end()) seen = changed(seen ? &*seen : nullptr, change->second);
    }
    return seen;
  }

  bool is_readable() const override {
    const std::lock_guard lock(mutex_);
    return is_readable_;
  }

  void set(std::string_view key, PropertyList value) override { change(key, NewValue(std::move(value))); }
  void add(std::string_view key, std::int64_t amount) override { change(key, amount); }
  void remove(std::string_view key) override { change(key, NewValue()); }

  Values all() const override {
    const std::lock_guard lock(mutex_);
    Values values = held_;
    apply(values, being_written_);
    apply(values, changes_);
    return values;
  }

  bool synchronize() override {
    const std::lock_guard one_at_a_time(writing_);
    const Changes changes = begin_writing();
    if (changes.empty()) {
      read_again();
      return true;
    }
    auto written = write_changes(file_, changes);
    const bool done = written.has_value();
    end_writing(std::move(written));
    return done;
  }

 private:
  void change(std::string_view key, Change change) {
    const std::lock_guard lock(mutex_);
    put(changes_, key, std::move(change));
  }

  /// While the disk is busy, readers still see what is on its way there, and new changes come on top of it.
  Changes begin_writing() {
    const std::lock_guard lock(mutex_);
    being_written_ = std::exchange(changes_, {});
    return being_written_;
  }

  void end_writing(std::optional<Values> written) {
    const std::lock_guard lock(mutex_);
    if (written) {
      held_ = std::move(*written);
      is_readable_ = true;
    } else {
      for (auto& [key, later] : changes_) put(being_written_, key, std::move(later));
      changes_ = std::move(being_written_);
    }
    being_written_.clear();
  }

  /// A file that says nothing leaves what was known.
  void read_again() {
    if (!file_.is_file_url()) return;
    FileContent now = read_settings(file_.path());
    const std::lock_guard lock(mutex_);
    is_readable_ = now.state == FileState::sound || now.state == FileState::missing;
    if (!is_readable_) return;
    held_ = std::move(now.values);
  }

  const Url file_;
  /// Held for the whole of a write; taken before the other one.
  std::mutex writing_;
  mutable std::mutex mutex_;  // guards what follows
  bool is_readable_ = true;
  Values held_;
  Changes being_written_;
  Changes changes_;
};

}  // namespace

void hurry_settings() {
  is_hurried = true;
}

Url place_of_settings(const Url& file) {
  const auto path = file.is_file_url() ? without_links(file.path()) : std::nullopt;
  return path ? Url::file(*path) : Url();
}

std::unique_ptr<SettingsStore> open_settings_file(const Url& file) {
  return std::make_unique<SettingsFile>(file);
}

}  // namespace tarnby
