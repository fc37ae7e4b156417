#include "files/temporary_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <span>
#include <vector>

#include "files/directory.h"

namespace tarnby {

namespace {

constexpr std::string_view mark = ".unfinished-";
constexpr std::string_view any_characters = "XXXXXX";

/// What mkostemp(3) makes of them.
bool is_made_up(std::string_view characters) {
  return characters.size() == any_characters.size() &&
         std::all_of(characters.begin(), characters.end(), [](unsigned char c) { return std::isalnum(c) != 0; });
}

bool is_older_than_a_day(const struct stat& status) {
  constexpr time_t day = time_t{24} * 60 * 60;
  return status.st_mtime < ::time(nullptr) - day;
}

void remove_if_left_over(const std::string& path) {
  const Descriptor file(
      uninterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK); }));
  struct stat status = {};
  if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) || !is_older_than_a_day(status)) return;
  if (uninterrupted([&] { return ::flock(file.get(), LOCK_EX | LOCK_NB); }) == 0) ::unlink(path.c_str());
}

/// Until this is done a power failure may still bring back what was there before, which is no damage: the result does
/// not count, for some file systems cannot do it.
void flush_folder(const std::string& folder) {
  const Descriptor opened(uninterrupted([&] { return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
  if (opened) (void)uninterrupted([&] { return ::fsync(opened.get()); });
}

}  // namespace

TemporaryFile::TemporaryFile(const std::string& beside)
    : file_(uninterrupted([&] {
        name_ = beside + std::string(mark) + std::string(any_characters);
        return ::mkostemp(name_.data(), O_CLOEXEC);
      })) {
  if (file_) (void)uninterrupted([&] { return ::flock(file_.get(), LOCK_EX | LOCK_NB); });  // says that it is in use
}

TemporaryFile::~TemporaryFile() {
  if (file_) (void)uninterrupted([&] { return ::unlink(name_.c_str()); });
}

bool TemporaryFile::write(std::string_view bytes, mode_t mode) {
  if (!file_) return false;
  while (!bytes.empty()) {
    const ssize_t count = uninterrupted([&] { return ::write(file_.get(), bytes.data(), bytes.size()); });
    if (count <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return uninterrupted([&] { return ::fchmod(file_.get(), mode); }) == 0 &&
         uninterrupted([&] { return ::fsync(file_.get()); }) == 0;
}

bool TemporaryFile::replace(const std::string& path) {
  return uninterrupted([&] { return ::rename(name_.c_str(), path.c_str()); }) == 0 && has_moved(path);
}

bool TemporaryFile::move_to_free_name(const std::string& path) {
  return rename_to_free_name(name_, path) && has_moved(path);
}

bool TemporaryFile::has_moved(const std::string& path) {
  file_.reset();
  flush_folder(Url::file(path).parent().path());
  return true;
}

void remove_old_temporary_files(const std::string& beside) {
  const Url file = Url::file(beside);
  const std::string begin = std::string(file.last_path_component()) + std::string(mark);
  const Descriptor folder = open_folder_at(AT_FDCWD, file.parent().path().c_str());
  DirectoryReader reader;
  std::vector<std::string> left_over;
  for (auto entries = folder ? reader.read(folder.get()) : std::span<const RawEntry>(); !entries.empty();
       entries = reader.read(folder.get())) {
    for (const RawEntry& entry : entries) {
      const bool is_ours = entry.name.starts_with(begin) && is_made_up(entry.name.substr(begin.size()));
      if (is_ours && entry.kind == EntryKind::file) left_over.emplace_back(entry.name);
    }
  }
  for (const std::string& name : left_over) remove_if_left_over(file.parent().appending(name).path());
}

void make_folders(const Url& folder) {
  constexpr mode_t private_folder = 0700;
  const auto make = [&] { return uninterrupted([&] { return ::mkdir(folder.path().c_str(), private_folder); }); };
  if (make() == 0 || errno != ENOENT) return;
  if (folder.parent() == folder) return;
  make_folders(folder.parent());
  (void)make();
}

}  // namespace tarnby
