#include "platform/running_programs.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <utility>

#include "files/descriptor.h"
#include "files/directory.h"
#include "files/small_file.h"
#include "platform/session.h"
#include "text/key_file.h"
#include "text/whole_number.h"

namespace tarnby {

namespace {

constexpr std::size_t most_of_a_file = std::size_t{64} << 10U;

bool is_absence(int error) {
  return error == ENOENT || error == ENOTDIR;
}

/// What a link below an open folder says; empty, with errno(3) set, when that cannot be read.
std::string link_text_at(int folder, const char* name) {
  std::array<char, PATH_MAX> text;  // NOLINT(cppcoreguidelines-pro-type-member-init): filled before it is read
  const ssize_t size = readlinkat(folder, name, text.data(), text.size());
  return size < 0 ? std::string() : std::string(text.data(), static_cast<std::size_t>(size));
}

/// "/usr/lib/x/program (deleted)" as "/usr/lib/x/program": what an upgrade leaves of a program that goes on.
std::string_view without_deleted(std::string_view executable) {
  constexpr std::string_view mark = " (deleted)";
  if (executable.ends_with(mark)) executable.remove_suffix(mark.size());
  return executable;
}

/// Of "/snap/NAME/…" the name; empty for any other path.
std::string_view snap_of_executable(std::string_view path) {
  constexpr std::string_view folder = "/snap/";
  if (!path.starts_with(folder)) return {};
  path.remove_prefix(folder.size());
  return path.substr(0, std::min(path.find('/'), path.size()));
}

/// Of "…/snap.NAME.…" the name; empty when a control group has no such part.
std::string_view snap_of_control_group(std::string_view groups) {
  constexpr std::string_view mark = "/snap.";
  const auto at = groups.find(mark);
  if (at == std::string_view::npos) return {};
  groups.remove_prefix(at + mark.size());
  const auto end = groups.find_first_of("./\n");
  return end != std::string_view::npos && groups[end] == '.' ? groups.substr(0, end) : std::string_view();
}

/// What runs in an instance, as flatpak says (flatpak-metadata(5)): an application, or a runtime alone.
std::string flatpak_of(std::string_view info) {
  const auto file = KeyFile::parse(info);
  if (!file) return {};
  const auto application = file->value("Application", "name");
  return application ? *application : file->value("Runtime", "name").value_or("");
}

/// Whether executables of this name run what others have written, under names of their own.
bool runs_scripts(std::string_view executable) {
  constexpr std::string_view interpreters[] = {"python", "perl", "ruby", "gjs",  "mono",
                                               "java",   "node", "bash", "dash", "sh"};
  return std::ranges::any_of(interpreters, [&](std::string_view name) { return executable.starts_with(name); });
}

/// A process that has ended and waits to be collected. One whose first thread has ended while others go on is none,
/// although it has the same letter; proc_pid_stat(5) tells how many there are.
bool is_zombie(std::string_view stat) {
  const auto name_end = stat.rfind(')');
  if (name_end == std::string_view::npos) return false;
  std::string_view fields = stat.substr(name_end + 1);
  constexpr int state = 3;
  constexpr int threads = 20;
  char letter = ' ';
  for (int field = state; field <= threads; ++field) {
    fields.remove_prefix(std::min(fields.find_first_not_of(' '), fields.size()));
    const std::string_view value = fields.substr(0, fields.find(' '));
    if (field == state && !value.empty()) letter = value.front();
    if (field == threads) return (letter == 'Z' || letter == 'X') && whole_number<int>(value).value_or(1) <= 1;
    fields.remove_prefix(value.size());
  }
  return false;
}

Running lock_is_held_at(int folder, const char* name) {
  const Status standing = status_at(folder, name);
  if (standing.kind == EntryKind::none) return is_absence(standing.error) ? Running::no : Running::unknown;
  if (standing.kind != EntryKind::file) return Running::unknown;
  const Descriptor file = open_file_at(folder, name);
  if (!file) return is_absence(errno) ? Running::no : Running::unknown;
  if (status_of(file.get()).kind != EntryKind::file) return Running::unknown;
  struct flock lock = {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  // Asks only, so a handle for reading suffices; without a length the question is about the whole file.
  if (fcntl(file.get(), F_GETLK, &lock) != 0) return Running::unknown;
  return lock.l_type == F_UNLCK ? Running::no : Running::yes;
}

/// The folder of that name, which is no link: else ELOOP, where the system says ENOTDIR as of a file.
Descriptor open_no_link_at(int parent, const std::string& name) {
  Descriptor folder = open_path_handle_at(parent, name.c_str());
  if (folder || errno != ENOTDIR) return folder;
  errno = status_at(parent, name.c_str()).kind == EntryKind::file ? ENOTDIR : ELOOP;
  return folder;
}

/// The folder of that path, no link in it followed; empty, with errno(3) set, when it cannot be opened.
Descriptor open_without_links(const Url& folder) {
  Descriptor at = open_path_handle_at(AT_FDCWD, "/");
  std::string_view rest = folder.path();
  while (at && rest.size() > 1) {
    rest.remove_prefix(1);
    const std::string name(rest.substr(0, rest.find('/')));
    rest.remove_prefix(name.size());
    at = open_no_link_at(at.get(), name);
  }
  return at;
}

}  // namespace

/// Fills one answer.
class RunningPrograms::Look {
 public:
  explicit Look(RunningPrograms& found) : found_(found) {}

  void processes(const Url& place);
  void instances(const Url& runtime_folder);

 private:
  void process(int places, const std::string& number, bool is_own);
  void add_other_names(int places, const std::string& number, Process& process);
  void sandboxes(int places, const std::string& number, std::string_view executable);
  bool instance(int instances, const std::string& number);
  std::string_view text_at(int folder, const std::string& name, LastLink link = LastLink::refused);

  RunningPrograms& found_;
  DirectoryReader reader_;
  std::string bytes_;
  uid_t user_ = geteuid();
  std::size_t others_ = 0;
  bool hides_others_ = false;
};

/// The content of a small file; empty when it cannot be read.
std::string_view RunningPrograms::Look::text_at(int folder, const std::string& name, LastLink link) {
  (void)read_small_file_at(folder, name.c_str(), link, most_of_a_file, bytes_);
  return bytes_;
}

void RunningPrograms::Look::processes(const Url& place) {
  const Descriptor folder = open_folder_at(AT_FDCWD, place.path().c_str());
  if (!folder) return;
  const std::string own = link_text_at(folder.get(), "self");
  bool sees_itself = false;
  bool sees_first = false;
  for (auto batch = reader_.read(folder.get()); !batch.empty(); batch = reader_.read(folder.get())) {
    for (const RawEntry& entry : batch) {
      if (entry.name.find_first_not_of("0123456789") != std::string_view::npos) continue;
      sees_itself |= entry.name == own;
      sees_first |= entry.name == "1";
      process(folder.get(), std::string(entry.name), entry.name == own);
    }
  }
  // The first process is always there. Where it is hidden, so may be others.
  found_.knows_processes_ = sees_itself && reader_.error() == 0 && (others_ > 0 || sees_first);
  found_.knows_sandboxes_ = !hides_others_;
}

void RunningPrograms::Look::process(int places, const std::string& number, bool is_own) {
  const auto value = whole_number<std::int64_t>(number);
  struct stat info = {};
  if (!value || fstatat(places, number.c_str(), &info, AT_SYMLINK_NOFOLLOW) != 0 || info.st_uid != user_) return;
  const std::string executable = link_text_at(places, (number + "/exe").c_str());
  if (executable.empty() && is_zombie(text_at(places, number + "/stat"))) return;
  Process process = {*value, std::string(last_component_of(without_deleted(executable)))};
  if (executable.empty() || runs_scripts(process.executable)) add_other_names(places, number, process);
  if (process.executable.empty() && process.command.empty()) return;  // it is gone by now
  hides_others_ |= executable.empty() && !is_own;
  others_ += is_own ? 0 : 1;
  found_.processes_.push_back(std::move(process));
  sandboxes(places, number, executable);
}

void RunningPrograms::Look::add_other_names(int places, const std::string& number, Process& process) {
  std::string_view name = text_at(places, number + "/comm");
  if (name.ends_with('\n')) name.remove_suffix(1);
  process.command = name;
  // The arguments follow one another with a NUL behind each. Of a script the first is the interpreter, of others the
  // program, by whatever path.
  const std::string_view arguments = text_at(places, number + "/cmdline");
  process.started_as = last_component_of(arguments.substr(0, arguments.find('\0')));
}

void RunningPrograms::Look::sandboxes(int places, const std::string& number, std::string_view executable) {
  if (std::string id = flatpak_of(text_at(places, number + "/root/.flatpak-info")); !id.empty()) {
    found_.flatpaks_.insert(std::move(id));
  }
  std::string_view snap = snap_of_executable(executable);
  if (snap.empty()) snap = snap_of_control_group(text_at(places, number + "/cgroup"));
  if (!snap.empty()) found_.snaps_.emplace(snap);
}

void RunningPrograms::Look::instances(const Url& runtime_folder) {
  found_.knows_instances_ = true;
  if (!runtime_folder.is_file_url()) return;
  found_.knows_sandboxes_ = true;
  const Descriptor folder = open_folder_at(AT_FDCWD, runtime_folder.appending(".flatpak").path().c_str());
  if (!folder) {
    found_.knows_instances_ = is_absence(errno);
    return;
  }
  for (auto batch = reader_.read(folder.get()); !batch.empty(); batch = reader_.read(folder.get())) {
    for (const RawEntry& entry : batch) found_.knows_instances_ &= instance(folder.get(), std::string(entry.name));
  }
  found_.knows_instances_ &= reader_.error() == 0;
}

/// False when nobody can tell which instance that is, or whether it runs. A folder without "info" is none: WebKit keeps
/// its own there, and flatpak what the instances of one application share.
bool RunningPrograms::Look::instance(int instances, const std::string& number) {
  const std::string info = number + "/info";
  const SmallFileLook look = read_small_file_at(instances, info.c_str(), LastLink::refused, most_of_a_file, bytes_);
  if (look == SmallFileLook::absent) return true;
  const std::string id = look == SmallFileLook::read ? flatpak_of(bytes_) : std::string();
  const Running lock = lock_is_held_at(instances, (number + "/.ref").c_str());
  if (lock == Running::no) return true;
  if (lock == Running::yes && !id.empty()) found_.flatpaks_.insert(id);
  return lock == Running::yes && !id.empty();
}

ProcessPlaces process_places(const Session& session) {
  return {session.system_root.appending("proc"), session.runtime_folder};
}

RunningPrograms RunningPrograms::look(const ProcessPlaces& places) {
  RunningPrograms found;
  Look look(found);
  look.processes(places.processes);
  look.instances(places.runtime_folder);
  return found;
}

Running lock_is_held(const Url& file) {
  if (!file.is_file_url() || file.last_path_component() == "..") return Running::unknown;
  const Descriptor folder = open_without_links(file.parent());
  if (!folder) return is_absence(errno) ? Running::no : Running::unknown;
  return lock_is_held_at(folder.get(), std::string(file.last_path_component()).c_str());
}

}  // namespace tarnby
