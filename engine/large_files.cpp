#include "engine/large_files.h"

#include "engine/cleaner.h"
#include "engine/large_file_walk.h"
#include "files/bytes.h"
#include "places/macos_home.h"
#include "platform/platform.h"

namespace tarnby {

namespace {

struct GroupRow {
  std::string_view type;
  std::string_view label;
};

constexpr GroupRow groups[] = {
    {"app", english("Applications")},   {"archive", english("Archives")}, {"audio", english("Audios")},
    {"document", english("Documents")}, {"movie", english("Movies")},     {"picture", english("Pictures")},
    {"package", english("Packages")},   {"other", english("Other")},
};

/// The rules of the search, one candidate after the other in walking order.
class LargeFileRules {
 public:
  LargeFileRules(Cleaner& cleaner, std::span<const Url> excluded) : cleaner_(cleaner) {
    for (const Url& url : excluded) excluded_.emplace_back(url.path());
    remember_package(FoldedText(cleaner.original_package_path), FoldedText(cleaner.original_package_extension));
  }

  void ask(const LargeFileCandidate& candidate) {
    if (candidate.is_package) {
      ask_package(candidate);
    } else {
      ask_file(candidate);
    }
  }

  LargeFileList& found() { return found_; }

 private:
  void ask_file(const LargeFileCandidate& file) {
    const FoldedText path(file.path);
    if (path.contains(package_path_)) return;
    for (const FoldedText& excluded : excluded_) {
      if (path.contains(excluded)) return;
    }
    take(file, {});
  }

  /// The extension is looked for anywhere in the path, so that once an application was found, a bundle in any folder
  /// whose name ends in "app" is passed over, and what is in it counts by itself (pinned by
  /// of_any_home_are_those_that_a_walk_entry_by_entry_finds).
  void ask_package(const LargeFileCandidate& package) {
    if (FoldedText(package.path).contains(package_extension_)) return;
    cleaner_.original_package_path = package.path + "/";
    cleaner_.original_package_extension = cleaner_.package_extension_at_url(Url::file(package.path)) + "/";
    remember_package(FoldedText(cleaner_.original_package_path), FoldedText(cleaner_.original_package_extension));
    take(package, is_application_name(last_component_of(package.path)) ? "app" : "package");
  }

  void remember_package(FoldedText path, FoldedText extension) {
    package_path_ = std::move(path);
    package_extension_ = std::move(extension);
  }

  void take(const LargeFileCandidate& candidate, std::string type) {
    if (candidate.size < large_file_bytes) return;
    const Url url = Url::file(candidate.path).listed_as(candidate.is_package ? EntryKind::folder : EntryKind::file);
    if (type.empty()) type = cleaner_.type_at_url_file(url);
    found_.push_back(LargeFile::init_with_file_url(url, std::string(url.last_path_component()), candidate.size, type));
  }

  Cleaner& cleaner_;
  std::vector<FoldedText> excluded_;
  FoldedText package_path_;
  FoldedText package_extension_;
  LargeFileList found_;
};

}  // namespace

LargeFileSelection large_files_of_at_least(std::int64_t bytes, std::span<const std::shared_ptr<LargeFile>> files) {
  LargeFileSelection selection;
  for (const auto& file : files) {
    if (file->size < bytes) continue;
    selection.files.push_back(file);
    selection.total = add_bytes(selection.total, file->size);
  }
  for (const GroupRow& group : groups) {
    LargeFileList members;
    for (const auto& file : selection.files) {
      if (file->type == group.type) members.push_back(file);
    }
    if (members.empty()) continue;
    selection.rows.push_back(OutlineItem::init_with_label(std::string(group.label), std::move(members)));
  }
  return selection;
}

void Cleaner::search_large_files_with_complete_handler(const LargeFilesHandler& handler) {
  large_files_item = std::make_shared<CleanerItem>();
  std::vector<Url> excluded = {url_downloads, url_caches, url_logs};
  for (const std::string_view folder : macos_home::without_large_files)
    excluded.push_back(url_library.appending(folder));
  LargeFileRules rules(*this, excluded);
  const LookWatch watch;
  for (const LargeFileCandidate& candidate : walk_for_large_files(platform_.files, url_home, excluded)) {
    rules.ask(candidate);
  }
  problems_.set("LargeFiles", problem_of_look(watch.missed(), url_home));
  sort_by_name(rules.found());
  LargeFileSelection selection = large_files_of_at_least(large_file_bytes, rules.found());
  outlineItems = std::move(selection.rows);
  largeFiles = std::move(selection.files);
  totalLargeFilesSize = selection.total;
  note_junk_amount();
  handler(outlineItems, largeFiles, totalLargeFilesSize);
}

}  // namespace tarnby
