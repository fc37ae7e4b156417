#pragma once

#include <QLabel>
#include <map>
#include <optional>
#include <vector>

#include "app/junk/junk_rows.h"
#include "app/parts/scan_screen.h"
#include "ui/scan_views.h"

namespace tarnby {

/// Shows the junk scan as a timed show: a ring, the category, and the files found flickering past, with the bytes that
/// they come to so far. Its two halves show the categories of one page each. It does not start the scan; it waits for
/// it twice, before the Trash, with which the second half begins, and before the end.
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

  void animation_trash();
  void scan_complete();

 protected:
  bool scanning() const override { return !is_ready(JunkPage::media); }

 private:
  /// Whether the scan has finished the categories of a page; until then it still writes them.
  bool is_ready(JunkPage page) const;
  void once_ready(JunkPage page, Work next);
  /// Begins each category of a page at its moment from now.
  void show_page(std::span<const JunkRow> rows);
  void show_category(const JunkRow& row);
  bool tick(const JunkRow& row, std::size_t& count);
  /// The locations that flicker past; null when the scan has made no record of the category.
  const std::vector<Url>* locations(const JunkRow& row) const;
  QString empty_text(const JunkRow& row) const;
  void count_passed(const JunkRow& row, double part);
  /// Bytes of what has flickered past of the categories of that page.
  std::int64_t passed_bytes(JunkPage page) const;
  std::int64_t found_so_far();
  /// What was found for the first page, and for both, in bytes.
  struct Sums {
    std::int64_t applications, both;
  };
  /// With each location counted once. To be asked for once the scan is over.
  const Sums& sums();
  void scan_open_anim();

  /// How much of each category has flickered past, 0 to 1.
  std::map<const JunkRow*, double> passed_;
  /// The first sum has been shown, and both.
  bool apps_are_counted_ = false;
  bool all_is_counted_ = false;
  std::optional<Sums> sums_;
};

}  // namespace tarnby
