#pragma once

#include <cstdint>

#include "app/screen.h"
#include "ui/dash_view.h"
#include "ui/scan_views.h"

namespace tarnby {

/// Runs the smart scan and shows how far it is, category by category.
class SmartScanViewController : public Screen {
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
  void will_retire() override;

 private:
  void start();
  void begin_category(std::size_t at, double stroke_end);
  void transitionItem(const QString& text);
  void transitionSize(const QString& text);

  /// Bytes in the categories that are done.
  std::int64_t found_ = 0;
  bool scanning_ = true;
};

}  // namespace tarnby
