#pragma once

#include <deque>
#include <vector>

#include "app/parts/scan_screen.h"
#include "engine/cleaner_item.h"
#include "ui/dash_view.h"
#include "ui/scan_views.h"

namespace tarnby {

/// Runs the smart scan and shows how far it is, category by category. However fast the scan is, each step is shown long
/// enough to be read.
class SmartScanViewController : public ScanScreen {
  Q_OBJECT
 public:
  explicit SmartScanViewController(AppContext& context);

  void view_will_appear() override;

  AppDelegate& appDelegate;
  AppSettings& app_settings;
  Cleaner& sharedCleaner;
  NumberLabel* smart_size;
  FadingLabel* smart_item;
  ScanView* progressView;
  DashView* steps;

 protected:
  bool scanning() const override { return scanning_; }

 private:
  void start();
  /// Shows a step once the one before it has been shown for its time.
  void show_in_turn(Work step);
  void show_next();
  void complete();
  void begin_category(std::size_t at);
  void count_category(std::size_t finished);
  void transitionItem(const QString& text);
  void transitionSize(const QString& text);

  /// The entries of the categories that are done.
  std::vector<CleanerEntry> found_;
  bool scanning_ = true;
  std::deque<Work> steps_to_come_;
  /// A step is being shown, and `show_next` comes by itself.
  bool step_has_its_time_ = true;
};

}  // namespace tarnby
