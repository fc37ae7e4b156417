#pragma once

#include <QLabel>
#include <functional>
#include <vector>

#include "app/screen.h"
#include "ui/scan_views.h"

namespace tarnby {

/// Shows the junk scan as a timed show: a ring, the category, and the files found flickering past. It does not start
/// the scan; it waits for it twice, before the Trash and before the end.
class ScanViewController : public Screen {
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

 private:
  /// One category whose files flicker past.
  struct Flicker {
    /// Its files; null when there are none.
    const std::vector<Url>* (*files)(const Cleaner& cleaner);
    bool (*is_ready)(const Cleaner& cleaner);
    /// What is shown when there are none; null leaves the line as it is.
    const char* empty_text;
    const char* empty_category;
  };
  static const Flicker caches, logs, remainders, browsers, trash, mails;

  void once_ready(bool (*is_ready)(const Cleaner&), std::function<void()> next);
  void start_flicker(const Flicker& flicker);
  bool tick(const Flicker& flicker, std::size_t& count);
  void show_category(const char* category);
  void scan_open_anim();
};

}  // namespace tarnby
