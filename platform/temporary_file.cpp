#include "platform/temporary_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "platform/directory.h"

namespace tarnby {

namespace {

/// Until this is done a power failure may still bring back what was there before, which is no damage: the result does
/// not count, for some file systems cannot do it.
void flush_folder(const std::string& folder) {
  const Descriptor opened(uninterrupted([&] { return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
  if (opened) (void)uninterrupted([&] { return ::fsync(opened.get()); });
}

}  // namespace

TemporaryFile::TemporaryFile(const std::string& beside)
    : file_(uninterrupted([&] {
        name_ = beside + ".XXXXXX";
        return ::mkostemp(name_.data(), O_CLOEXEC);
      })) {}

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

bool TemporaryFile::take_free_name(const std::string& path) {
  return rename_to_free_name(name_, path) && has_moved(path);
}

bool TemporaryFile::has_moved(const std::string& path) {
  file_.reset();
  flush_folder(Url::file(path).parent().path());
  return true;
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
