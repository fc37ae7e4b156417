#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "engine/categories.h"
#include "engine/chosen_amount.h"
#include "engine/cleaner_item.h"
#include "engine/cleanup.h"
#include "engine/clients.h"
#include "engine/known_places.h"
#include "engine/large_files.h"
#include "engine/look_problem.h"
#include "engine/smart_outline_item.h"
#include "files/home_kind.h"
#include "leftovers/cache.h"
#include "leftovers/remainders.h"

namespace tarnby {

class HomeOffers;
class Platform;

/// The cleaning engine: the standard locations, one record per category, the scans that fill them and the removal of
/// what was chosen.
///
/// Operations run to their end on the caller's thread and call their handler there, last. They report no failure: what
/// cannot be read is empty or 0. Fields are written without locks; one scan or removal at a time. A category is
/// read once the handler, a completion flag or its notification has come.
class Cleaner {
 public:
  /// The one of this process. Any thread may call.
  static Cleaner& sharedCleaner();

  /// Resolves the stored grant "home" and begins to access it; without it every location is nowhere.
  Cleaner(Platform& platform, Cache& cache, Remainders& remainders);
  ~Cleaner();

  // The fields, in the order in which they are described everywhere else.
  // The flags are polled by the main thread while a scan runs: once one is seen set, what it stands for may be read.
  std::atomic<bool> search_is_complete = false;
  std::atomic<bool> apps_junk_search_complete = false;
  std::atomic<bool> media_search_coomplete = false;  // the spelling is the name by which the screens know it
  ApplicationDelegate* appDelegate;
  AppSettings* app_settings;
  /// Bytes handed over for removal, or removed; added to the lifetime total by the screen or command that shows the
  /// result.
  std::int64_t wasCleaned = 0;
  // Bytes found by the junk scan: caches, logs, leftovers and browser data; the Trash and mail attachments.
  std::int64_t apps_junk_size = 0;
  std::int64_t media_junk_size = 0;
  /// What a removal run could not remove and what is still there, while the run goes on; empty before and after.
  std::vector<Url> remainder_urls;
  Url url_home;
  Url url_library;
  Url url_caches;
  Url url_logs;
  Url url_mails;
  Url url_trash;
  Url url_downloads;
  // The categories; null until a scan has made them.
  std::shared_ptr<CleanerItem> apps_caches_item;
  std::shared_ptr<CleanerItem> apps_logs_item;
  std::shared_ptr<CleanerItem> apps_remainders_item;
  std::shared_ptr<CleanerItem> mails_item;
  std::shared_ptr<CleanerItem> apple_mail_item;
  std::shared_ptr<CleanerItem> airmail_item;
  std::shared_ptr<CleanerItem> spark_mail_item;
  std::shared_ptr<CleanerItem> trash_item;
  std::shared_ptr<CleanerItem> downloads_item;
  std::shared_ptr<CleanerItem> large_files_item;
  std::shared_ptr<CleanerItem> browser_item;
  std::shared_ptr<CleanerItem> browser_chrome_item;
  std::shared_ptr<CleanerItem> browser_mozilla_item;
  std::shared_ptr<CleanerItem> browser_safari_item;
  /// The last application or package that a search for large files took, and its extension, a slash behind each. They
  /// keep their values, so that the next search begins with them.
  std::string original_package_path;
  std::string original_package_extension;
  std::vector<std::string> archive_formats;
  std::vector<std::string> audio_formats;
  std::vector<std::string> document_formats;
  std::vector<std::string> movie_formats;
  std::vector<std::string> picture_formats;
  LargeFileRows outlineItems;
  LargeFileList largeFiles;
  std::int64_t totalLargeFilesSize = 0;
  // Bytes found by the smart scan, in all and by category.
  std::int64_t total_smart_size = 0;
  std::int64_t totalCacheSize = 0;
  std::int64_t totalLogsSize = 0;
  std::int64_t totalRemaindersSize = 0;
  std::int64_t totalBrowserSize = 0;
  std::int64_t totalMailsSize = 0;
  std::int64_t totalInstallSize = 0;
  std::int64_t totalTrashSize = 0;
  std::vector<std::shared_ptr<LargeFile>> installFiles;
  std::shared_ptr<CleanerItem> install_files_item;
  std::vector<std::shared_ptr<SmartOutlineItem>> smart_outline_items;
  std::vector<SmartMenuItem> smart_menu_items;
  std::shared_ptr<SmartOutlineItem> outlineCacheItem;
  std::shared_ptr<SmartOutlineItem> outlineLogsItem;
  std::shared_ptr<SmartOutlineItem> outlineRemaindersItem;
  std::shared_ptr<SmartOutlineItem> outlineBrowsersItem;
  std::shared_ptr<SmartOutlineItem> outlineMailsItem;
  std::shared_ptr<SmartOutlineItem> outlineInstallsItem;
  std::shared_ptr<SmartOutlineItem> outlineTrashItem;
  /// What the user kept ticked, for `remove_files`.
  std::vector<Url> files;

  /// What any choice of what the last smart scan, or the last junk scan and search for large files, has listed amounts
  /// to, with each location counted once. Replaced before the scan calls its handler; null until then, and after a scan
  /// that was ended.
  std::shared_ptr<const ChosenAmount> smart_amount;
  std::shared_ptr<const ChosenAmount> junk_amount;

  /// The leftovers object that the scans ask.
  const Remainders& remainders() const { return remainders_; }

  /// The icon of the application that the last search for caches knew by this label; none when it knew none.
  Image icon_of_application(const std::string& label) const;

  /// Why a group of the last scan may lack something, by its type in the smart scan ("caches") or its setting in the
  /// junk scan and the search for large files ("Caches", "LargeFiles"); none when all was seen. Read when the group may
  /// be; any thread may call.
  std::optional<LookProblem> problem_of(std::string_view group) const { return problems_.of(group); }

  /// Of which kind the last scan took the home to be; macOS before the first. Any thread may call.
  HomeKind layout() const { return layout_; }

  /// False when the last scan found none of the places that it knows in the home folder. Any thread may call.
  bool knows_places() const { return knows_places_; }

  /// Bytes in a list: what is no file URL or is missing counts 0, a folder all that is below it.
  std::int64_t overall_size_of_files(std::span<const Url> urls);
  /// Bytes below a folder; 0 when it is missing or unreadable.
  std::int64_t overall_size_of_direcory(const Url& folder);

  /// "archive", "audio", "document", "movie", "picture" or "other", by the extension exactly as written: an upper-case
  /// one is "other".
  std::string type_at_url_file(const Url& file) const;

  /// What follows the last dot of the last component; the whole component when it has no dot.
  std::string package_extension_at_url(const Url& url) const;

  /// Bytes in the categories that are switched on, Downloads included, which no removal run takes.
  std::int64_t beCleaned() const;

  /// The junk scan: six categories, each with its files and its size, the clients among them, and the two sums. Writes
  /// that all three browsers are chosen. `apps_junk_search_complete` is set when the first sum is there,
  /// `media_search_coomplete` and `search_is_complete` at the end.
  void clean_with_complete_handler(const std::function<void()>& handler);

  /// Looks through the whole home folder for applications, packages and files of at least 10,000,000 bytes that belong
  /// to no other category. Empties `large_files_item`, which takes what a user chooses from the result.
  void search_large_files_with_complete_handler(const LargeFilesHandler& handler);

  /// Removes for good what the categories hold that are switched on and not empty, one after the other, adds the size
  /// of each to `wasCleaned`, which is never reset, and writes the date of the run for the scheduler.
  /// @param report what the run did; may be null.
  void cleanup_with_complete_handler(const std::function<void()>& handler, CleanupReport* report = nullptr);

  /// The locations that such a run would remove, in its order.
  std::vector<Url> cleanup_files() const;
  /// What such a run takes, for `junk_amount`.
  std::vector<CleanerEntry> cleanup_entries() const;
  /// Bytes of that, each location counted once: what people are told before such a run.
  std::int64_t cleanup_amount() const;
  /// True when the category holds something and its setting is true.
  bool is_switched_on(const Category& category) const;

  /// The smart scan: seven categories in a fixed order, with a total each and a group each for the outline. After each
  /// but the last a notification is posted on the main queue, named after the one that comes next: "smart_scan_logs",
  /// "smart_scan_remainders", "smart_scan_browsers", "smart_scan_mails", "smart_scan_installs", "smart_scan_trash".
  void smart_clean_with_complete_handler(const std::function<void()>& handler);

  /// Removes `files` for good, in order, and touches no category, no total and no setting. The result tells what became
  /// of each; screens ignore it.
  std::vector<Removal> remove_files(const RemovalOptions& options = {});

 private:
  friend struct CategoryTable;  // names the scans

  struct Found {
    std::vector<std::shared_ptr<LargeFile>> files;
    std::int64_t size = 0;
  };

  /// Locations that were listed, and what was missed on the way.
  struct Listed {
    std::vector<Url> locations;
    Missed missed;
  };

  void look_for_places();
  void look_at_home();
  std::optional<LookProblem> problem_of_link(std::string_view group) const;
  OfferedItems offered_rows(const Category& category);
  void scan_offers(const Category& category);
  void junk_scan_places();
  void junk_scan_offers();
  void note_browsers(const CleanerItem& all);
  std::shared_ptr<CleanerItem> item_of_offers(const Category& category);
  RemovalOptions guarded(std::span<const Url> urls, const RemovalOptions& options) const;
  void tell_problem(std::string_view group, const Missed& missed);
  void note_smart_amount();
  void note_junk_amount();
  void plan_smart_scan();
  void plan_clients();
  void scan_caches();
  void scan_logs();
  void scan_remainders();
  void scan_browsers();
  void scan_mails();
  void scan_installs();
  void scan_trash();

  std::vector<Url> cache_locations() const;
  template <typename List>
  Listed listed(List list) const;
  std::shared_ptr<CleanerItem> measured_item(std::string_view group, Listed listed);
  void scan_junk_browsers();
  void scan_junk_mails();
  void remove_category(const Category& category, CleanupReport& report);

  std::shared_ptr<CleanerItem> client_item(const ClientRow& row);
  std::shared_ptr<CleanerItem> all_clients(std::span<const ClientRow> rows);
  std::shared_ptr<CleanerItem> clients_category(std::span<const ClientRow> rows);
  Found measured_entries(const Url& folder, Hidden hidden);
  std::vector<Url> install_candidates() const;
  void sort_by_name(std::vector<std::shared_ptr<LargeFile>>& files) const;
  void finish_category(std::string_view type, std::shared_ptr<CleanerItem> item, std::int64_t size);
  void post(std::string_view notification);

  KnownPlaces places_;
  std::atomic<HomeKind> layout_ = HomeKind::macos;
  std::unique_ptr<HomeOffers> offers_;  // while a scan of a Linux home runs
  /// Of the last scans, by the path of each location: what a removal has to ask about again.
  std::unordered_map<std::string, std::shared_ptr<const OfferedItem>> offered_;
  std::atomic<bool> knows_places_ = true;
  LookProblems problems_;
  Platform& platform_;
  Cache& cache_;
  Remainders& remainders_;
};

}  // namespace tarnby
