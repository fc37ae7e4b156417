#pragma once

#include <QLabel>
#include <functional>
#include <map>
#include <optional>
#include <vector>

#include "app/parts/scan_screen.h"
#include "ui/scan_views.h"

namespace tarnby {

/// Shows the junk scan as a timed show: a ring, the category, and the files found flickering past, with the bytes that
/// they come to so far. It does not start the scan; it waits for it twice, before the Trash and before the end.
class ScanViewController : public ScanScreen {
  Q_OBJECT
 public:
  explicit ScanViewController(AppContext& context);

  AppDelegate& appDelegate;
  AppSettings& app_settings;
  Cleaner& sharedCleaner;
  QLabel* label;
  QLabel* text;
  NumberLabel* scan_size;
  FadingLabel* scan_label;
  QLabel* path;
  ScanView* scanView;

  void animation_apps_caches();
  void animation_apps_remainders();
  void animation_browsers();
  void animation_trash();
  void animation_mails();
  void scan_complete();

 protected:
  bool scanning() const override { return !sharedCleaner.media_search_coomplete; }

 private:
  /// One category whose files flicker past.
  struct Flicker {
    /// Its files; null when there are none.
    const std::vector<Url>* (*files)(const Cleaner& cleaner);
    /// The category whose bytes the names stand for.
    std::shared_ptr<CleanerItem> Cleaner::*item;
    bool (*is_ready)(const Cleaner& cleaner);
    /// What is shown when there are none; null leaves the line as it is.
    const char* empty_text;
    const char* empty_category;
    /// Under which the engine tells what of it could not be looked at; that is then shown instead.
    const char* group;
  };
  static const Flicker caches, logs, remainders, browsers, trash, mails;

  void once_ready(bool (*is_ready)(const Cleaner&), std::function<void()> next);
  void start_flicker(const Flicker& flicker);
  bool tick(const Flicker& flicker, std::size_t& count);
  void count_passed(const Flicker& flicker, double part);
  QString empty_text(const Flicker& flicker) const;
  /// Bytes of what has flickered past of the categories that are ready at that flag.
  std::int64_t passed_bytes(bool (*is_ready)(const Cleaner&)) const;
  std::int64_t found_so_far();
  /// What was found for the first page, and for both, in bytes.
  struct Sums {
    std::int64_t applications, both;
  };
  /// With each location counted once. To be asked for once the scan is over.
  const Sums& sums();
  void show_category(const char* category);
  void scan_open_anim();

  /// How much of each category has flickered past, 0 to 1.
  std::map<const Flicker*, double> passed_;
  /// The first sum has been shown, and both.
  bool apps_are_counted_ = false;
  bool all_is_counted_ = false;
  std::optional<Sums> sums_;
};

}  // namespace tarnby
