#include "files/file_manager.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <iterator>
#include <mutex>

#include "files/confined_threads.h"
#include "files/traversal.h"

namespace tarnby {

namespace {

constexpr std::string_view package_extensions[] = {"app",
                                                   "action",
                                                   "aplibrary",
                                                   "band",
                                                   "bundle",
                                                   "component",
                                                   "driver",
                                                   "fcpbundle",
                                                   "imovielibrary",
                                                   "kext",
                                                   "logicx",
                                                   "mdimporter",
                                                   "migratedphotolibrary",
                                                   "mpkg",
                                                   "musiclibrary",
                                                   "photolibrary",
                                                   "photoslibrary",
                                                   "pkg",
                                                   "playground",
                                                   "plugin",
                                                   "prefpane",
                                                   "qlgenerator",
                                                   "rtfd",
                                                   "saver",
                                                   "scptd",
                                                   "sparsebundle",
                                                   "theater",
                                                   "tvlibrary",
                                                   "vst",
                                                   "vst3",
                                                   "wdgt",
                                                   "workflow",
                                                   "xcarchive",
                                                   "xcdatamodeld",
                                                   "xcodeproj",
                                                   "xpc"};

/// Keeps the wanted entries of a walk, with their whole paths.
class WalkJob final : public TraversalJob {
 public:
  WalkJob(const GrantedFolders& granted, Hidden hidden, Packages packages, const WantEntry& want)
      : granted_(granted), hidden_(hidden), packages_(packages), want_(want) {}

  void visit(const TraversedFolder& folder, int /*handle*/, std::span<const RawEntry> entries,
             FoldersToEnter& enter) override {
    std::vector<std::string> kept;
    std::string path;
    for (const RawEntry& entry : entries) {
      if (hidden_ == Hidden::skip && is_hidden(entry.name)) continue;
      if (entry.kind == EntryKind::folder && !(packages_ == Packages::skip && is_package_name(entry.name))) {
        enter.add(entry.name, 0);
      }
      if (!want_(entry.name, entry.kind)) continue;
      if (path.empty()) path = folder.path() + "/";
      kept.push_back(path + std::string(entry.name));
    }
    if (kept.empty()) return;
    const std::lock_guard lock(mutex_);
    std::move(kept.begin(), kept.end(), std::back_inserter(found_));
  }

  void leave(const TraversedFolder& folder, int /*parent_handle*/) override { missed_.note(folder.error(), folder); }

  Descriptor open_start(const TraversedFolder& folder) override {
    return granted_.open_folder(Url::file(folder.name()));
  }

  Missed missed() const { return missed_.missed(); }

  std::vector<Url> found() {
    std::sort(found_.begin(), found_.end(), walks_before);
    std::vector<Url> urls;
    urls.reserve(found_.size());
    for (const std::string& path : found_) urls.push_back(Url::file(path));
    return urls;
  }

 private:
  const GrantedFolders& granted_;
  const Hidden hidden_;
  const Packages packages_;
  const WantEntry& want_;
  MissedByWorkers missed_;
  std::mutex mutex_;
  std::vector<std::string> found_;
};

}  // namespace

bool is_failure(int error) {
  const LookError what = look_error(error);
  return what == LookError::failed || what == LookError::stopped;
}

bool is_application_name(std::string_view name) {
  return path_extension_of(name) == "app";
}

bool is_package_name(std::string_view name) {
  std::string extension(path_extension_of(name));
  if (extension.empty()) return false;
  std::transform(extension.begin(), extension.end(), extension.begin(), ascii_lower);
  return std::find(std::begin(package_extensions), std::end(package_extensions), extension) !=
         std::end(package_extensions);
}

FileManager::FileManager(unsigned workers, std::size_t handles)
    : workers_(workers), handles_(handles), traversal_(std::make_unique<Traversal>(workers, handles)) {}

FileManager::~FileManager() = default;

void FileManager::stop_looking() {
  traversal_->stop_looking();
}

void FileManager::look_again() {
  traversal_->look_again();
}

bool FileManager::stopped_looking() const {
  return traversal_->stopped_looking();
}

std::vector<Entry> FileManager::list(const Url& folder, Hidden hidden) const {
  const Descriptor handle = granted_.open_folder(folder);
  if (!handle) {
    note_missed(errno, folder);
    return {};
  }
  std::vector<std::pair<std::string, EntryKind>> found;
  DirectoryReader reader;
  for (auto batch = reader.read(handle.get()); !batch.empty(); batch = reader.read(handle.get())) {
    for (const RawEntry& entry : batch) {
      if (hidden == Hidden::take || !is_hidden(entry.name)) found.emplace_back(entry.name, entry.kind);
    }
    note_missed(reader.error(), folder);
    if (!stopped_looking()) continue;
    note_missed(ECANCELED, folder);
    break;
  }
  note_missed(reader.error(), folder);
  std::sort(found.begin(), found.end());
  std::vector<Entry> entries;
  entries.reserve(found.size());
  for (const auto& [name, kind] : found) entries.push_back({folder.appending(name).listed_as(kind), kind});
  return entries;
}

std::vector<Url> FileManager::list_urls(const Url& folder, Hidden hidden) const {
  std::vector<Url> urls;
  for (Entry& entry : list(folder, hidden)) urls.push_back(std::move(entry.url));
  return urls;
}

std::vector<Url> FileManager::walk(const Url& folder, Hidden hidden, Packages packages, const WantEntry& want) {
  if (!folder.is_file_url()) return {};
  WalkJob job(granted_, hidden, packages, want);
  const TraversalStart starts[] = {{folder.path(), 0}};
  traversal_->run(job, starts);
  if (job.cancelled()) note_missed(ECANCELED, folder);
  note_missed(job.missed());
  return job.found();
}

std::vector<Status> FileManager::statuses(std::span<const Url> urls) const {
  ParentCursor cursor(granted_);
  std::vector<Status> result;
  result.reserve(urls.size());
  for (const Url& url : urls) {
    const std::string name(url.last_path_component());
    const int parent = cursor.parent_of(url);
    Status& status = result.emplace_back();
    if (parent >= 0 && name != "..") {
      status = status_at(parent, name.c_str());
    } else {
      status.error = parent < 0 ? errno : ENOENT;
      const Descriptor self = url.path() == "/" ? granted_.open_path_handle(url) : Descriptor();
      if (self) status = status_of(self.get());
    }
    note_missed(status.error, url);
  }
  return result;
}

Status FileManager::status(const Url& url) const {
  return statuses({&url, 1}).front();
}

bool FileManager::is_application(const Url& url) const {
  return is_application_name(url.last_path_component()) && is_folder(url);
}

std::string FileManager::display_name(const Entry& entry) const {
  std::string_view name = entry.url.last_path_component();
  if (entry.kind == EntryKind::folder && is_application_name(name)) name.remove_suffix(4);
  return std::string(name);
}

std::string FileManager::display_name(const Url& url) const {
  const bool may_be_application = is_application_name(url.last_path_component());
  return display_name(Entry{url, may_be_application ? status(url).kind : EntryKind::none});
}

bool FileManager::write(const Url& file, std::string_view bytes) const {
  ParentCursor cursor(granted_);
  const int parent = cursor.parent_of(file);
  const std::string name(file.last_path_component());
  if (parent < 0 || name == "..") return false;
  const EntryKind standing = status_at(parent, name.c_str()).kind;
  if (standing != EntryKind::none && standing != EntryKind::file)
    return false;  // a process that waits at a FIFO sleeps on
  const Descriptor handle = open_file_for_writing_at(parent, name.c_str());
  if (!handle || status_of(handle.get()).kind != EntryKind::file || ftruncate(handle.get(), 0) != 0) return false;
  while (!bytes.empty()) {
    const ssize_t put = ::write(handle.get(), bytes.data(), bytes.size());
    if (put < 0 && errno == EINTR) continue;
    if (put <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(put));
  }
  return true;
}

bool FileManager::make_folder(const Url& folder) const {
  ParentCursor cursor(granted_);
  const int parent = cursor.parent_of(folder);
  const std::string name(folder.last_path_component());
  return parent >= 0 && name != ".." && make_folder_at(parent, name.c_str());
}

Readability FileManager::readability(const Url& file) const {
  const std::string name(file.last_path_component());
  if (!file.is_file_url() || name == "..") return Readability::absent;
  const Descriptor folder = granted_.open_parent(file);
  if (!folder) {
    // Where the folder is guarded as well, the system may tell by the path what is in it; nothing is opened for that.
    const bool guarded = errno == EPERM || errno == EACCES;
    const bool is_there = guarded && status_at(AT_FDCWD, file.path().c_str()).kind == EntryKind::file;
    return is_there ? Readability::unreadable : Readability::absent;
  }
  if (status_at(folder.get(), name.c_str()).kind != EntryKind::file) return Readability::absent;
  const Descriptor handle = open_file_at(folder.get(), name.c_str());
  char first = 0;
  return handle && ::read(handle.get(), &first, 1) >= 0 ? Readability::readable : Readability::unreadable;
}

std::string FileManager::link_text(const Url& link) const {
  const Descriptor parent = granted_.open_parent(link);
  const std::string name(link.last_path_component());
  std::string text(PATH_MAX, '\0');
  const ssize_t length = parent ? ::readlinkat(parent.get(), name.c_str(), text.data(), text.size()) : -1;
  text.resize(length < 0 ? 0 : static_cast<std::size_t>(length));
  return text;
}

std::optional<std::string> FileManager::read(const Url& file, std::size_t most) const {
  ParentCursor cursor(granted_);
  const int parent = cursor.parent_of(file);
  const std::string name(file.last_path_component());
  const auto none = [&](int error) {
    note_missed(error, file);
    return std::nullopt;
  };
  if (parent < 0) return none(errno);
  if (name == "..") return {};
  // Even to open a FIFO for a moment would wake the process that waits at its other end.
  const Status standing = status_at(parent, name.c_str());
  if (standing.kind != EntryKind::file) return none(standing.error);
  const Descriptor handle = open_file_at(parent, name.c_str());
  // It is there, even when another entry is taking its place.
  if (!handle) return none(look_error(errno) == LookError::none ? EIO : errno);
  const Status status = status_of(handle.get());
  if (status.kind != EntryKind::file) return none(status.error);
  if (static_cast<std::uint64_t>(status.size) > most) return {};
  std::string bytes(static_cast<std::size_t>(status.size), '\0');
  std::size_t have = 0;
  while (have < bytes.size()) {
    const ssize_t got = uninterrupted([&] { return ::read(handle.get(), bytes.data() + have, bytes.size() - have); });
    if (got < 0) return none(EIO);
    if (got == 0) break;  // it became shorter meanwhile
    have += static_cast<std::size_t>(got);
  }
  bytes.resize(have);
  return bytes;
}

}  // namespace tarnby
