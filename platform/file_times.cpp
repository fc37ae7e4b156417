#include "platform/file_times.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

#include "platform/bundle.h"

namespace tarnby {

namespace {

#ifdef __APPLE__
constexpr auto accessed = &stat::st_atimespec;
constexpr auto modified = &stat::st_mtimespec;
#else
constexpr auto accessed = &stat::st_atim;
constexpr auto modified = &stat::st_mtim;
#endif

class FileTimes final : public FileMetadata {
 public:
  explicit FileTimes(const FileManager& files) : files_(files) {}

  std::optional<Moment> last_used_date(const Url& application) const override {
    const auto executable = Bundle(files_, application).text("CFBundleExecutable");
    if (!executable || executable->empty()) return {};
    struct stat info = {};
    if (!look(application.appending("Contents/MacOS").appending(*executable), info) || S_ISDIR(info.st_mode)) return {};
    const timespec& used = info.*accessed;
    const timespec& changed = info.*modified;
    const bool later =
        used.tv_sec > changed.tv_sec || (used.tv_sec == changed.tv_sec && used.tv_nsec > changed.tv_nsec);
    return later ? std::optional(Moment(std::chrono::seconds(used.tv_sec))) : std::nullopt;
  }

  std::optional<Moment> content_change_date(const Url& application) const override {
    struct stat info = {};
    if (!look(application, info) || !S_ISDIR(info.st_mode)) return {};
    return Moment(std::chrono::seconds((info.*modified).tv_sec));
  }

  std::optional<Moment> modification_date(const Url& entry) const override {
    struct stat info = {};
    if (!look(entry, info)) return {};
    return Moment(std::chrono::seconds((info.*modified).tv_sec));
  }

 private:
  bool look(const Url& url, struct stat& info) const {
    ParentCursor cursor(files_.granted());
    const int parent = cursor.parent_of(url);
    const std::string name(url.last_path_component());
    if (name == "..") return false;
    const auto ask = [&] { return fstatat(parent, name.c_str(), &info, AT_SYMLINK_NOFOLLOW); };
    if (parent >= 0 && uninterrupted(ask) == 0) return true;
    note_missed(errno, url);
    return false;
  }

  const FileManager& files_;
};

}  // namespace

std::unique_ptr<FileMetadata> file_times(const FileManager& files) {
  return std::make_unique<FileTimes>(files);
}

}  // namespace tarnby
