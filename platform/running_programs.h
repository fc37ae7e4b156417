#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "files/url.h"

namespace tarnby {

struct Session;

/// Whether something runs. `unknown` is to be treated as `yes` by whoever would change what is in use.
enum class Running : std::uint8_t { no, yes, unknown };

/// Where the system tells of processes; tests give folders of their own.
struct ProcessPlaces {
  /// Laid out as proc(5) tells.
  Url processes;
  /// XDG_RUNTIME_DIR, in which flatpak keeps ".flatpak/NUMBER" for each instance; may be nowhere.
  Url runtime_folder;
};

/// Those of this process.
ProcessPlaces process_places(const Session& session);

/// Which programs of this user ran at one moment. A process belongs to the user whom /proc/PID belongs to; those of
/// others count for nothing, nor do zombies. Where the processes could not be listed whole, or this process is not
/// among them, every answer is `unknown`; so it is on systems without /proc.
///
/// Landlock hides the executables of all other processes from a thread that has given rights up (ptrace(2), "access
/// mode checking"). Such a thread goes by the names under which processes were started and go, which everybody may
/// read.
///
/// Copies are independent values; any thread may ask.
class RunningPrograms {
 public:
  /// One pass over all processes: about 5 ms for 500 of them.
  static RunningPrograms look(const ProcessPlaces& places);

  /// Whether a process runs an executable of one of these names: whole names, as "soffice.bin", case and all. An
  /// executable replaced while it runs still counts. A process that hides its executable, and a script, whose
  /// executable is that of its interpreter, is also known by the first 15 bytes of the name it goes by (comm in
  /// proc(5)) and by the name it was started under (its first argument).
  Running program(std::span<const std::string_view> names) const;

  /// Whether the process of that number runs one of them. For the numbers that programs leave in lock files, which may
  /// be another program's by now.
  Running process(std::int64_t number, std::span<const std::string_view> names) const;

  /// Whether an instance of a flatpak runs ("org.gnome.Epiphany"): by the file .flatpak-info at the root that its
  /// processes see, or by the instance's lock in the runtime folder. What an instance that ended left there says
  /// nothing.
  Running flatpak(std::string_view id) const;

  /// Whether a process of a snap runs ("hello"): by its control group (cgroups(7), "snap.firefox.…"), or by the place
  /// of its executable, /snap/firefox.
  Running snap(std::string_view name) const;

 private:
  struct Process {
    std::int64_t number;
    /// The name of its executable; empty when that is hidden.
    std::string executable;
    /// The name it goes by, at most 15 bytes, and the one it was started under; empty where the executable says enough.
    std::string command = {};
    std::string started_as = {};
  };
  struct Answer {
    bool is_found;
    bool is_certain;
  };
  class Look;
  static Running told(Answer answer);
  static bool runs_one_of(const Process& process, std::span<const std::string_view> names);

  bool knows_processes_ = false;
  bool knows_sandboxes_ = false;
  bool knows_instances_ = false;
  std::vector<Process> processes_;
  std::set<std::string, std::less<>> flatpaks_;
  std::set<std::string, std::less<>> snaps_;
};

/// Whether any process holds a lock of fcntl(2) on a plain file, such as the lock file of a browser's profile, as
/// somebody sees who wants to write to it. The file is opened for reading only and never made, and no link in the path
/// is followed. `no` also when there is no such file; `unknown` when nobody can tell. This process's own locks and
/// those of flock(2) are not seen.
Running lock_is_held(const Url& file);

/// The number of the process in what a browser's lock link says: "127.0.1.1:+1234" (Mozilla's) or "HOST-1234"
/// (Chromium's). The host is not looked at. None when there is no number.
std::optional<std::int64_t> process_in_lock_link(std::string_view text);

}  // namespace tarnby
