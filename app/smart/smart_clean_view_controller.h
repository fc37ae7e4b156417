#pragma once

#include <QPointer>
#include <optional>

#include "app/parts/outline_view.h"
#include "app/parts/screen.h"
#include "app/smart/nothing_found.h"
#include "app/smart/smart_clean_lists.h"
#include "app/smart/smart_outline_model.h"
#include "app/smart/warning_cleanup_view_controller.h"
#include "ui/chart_view.h"
#include "ui/push_button.h"

class QLabel;
class QMenu;

namespace tarnby {

/// Shows everything that the smart scan found, all of it ticked, and removes what is left ticked.
class SmartCleanViewController : public Screen, public SmartCleanLists {
  Q_OBJECT
 public:
  explicit SmartCleanViewController(AppContext& context);

  QPersistentModelIndex selectedRow;  // of the row menu
  QPointer<Screen> sheet_view_controller;
  AppDelegate& appDelegate;
  AppSettings& app_settings;
  Cleaner& sharedCleaner;
  OutlineView* outlineview;
  QMenu* cleanItemMenu;
  NumberLabel* size;
  /// Tells why that is less than the groups add up to, where it is.
  QLabel* counted_once;
  PushButton* remove_button;
  /// Says so when nothing was found at all.
  QLabel* app_title;
  Url preview_url;

  ChartView* chart;
  PushButton* back_button;

  /// A group's box: off and mixed turn on, on turns off.
  void select_smart_outline_item(const QModelIndex& group, bool on);
  /// An entry's box.
  void select_item(const QModelIndex& entry, bool on);
  /// Opens the popover that tells about a group, or why an entry is offered.
  void about_item(const QModelIndex& row);
  /// Opens or closes a group.
  void show_items(const QModelIndex& group);
  void show_item_in_finder();
  void quick_look_item();
  void get_item_info();
  /// Hands what is ticked to the engine and goes on to its removal, also when that is nothing.
  void remove();
  /// Asks before `remove`, unless nothing is ticked or the person does not want to be asked. With nothing ticked its
  /// button is off.
  void ask_and_remove();
  /// What is ticked, in bytes and by category.
  void update_ui();

 private:
  QWidget* chart_panel();
  QWidget* outline_panel();
  QWidget* bottom_bar();
  std::optional<WhyNothing> why_nothing() const;
  void say_there_is_nothing();
  std::unique_ptr<Screen> about_of(const QModelIndex& row);
  void make_menu();
  void open_menu(const QModelIndex& entry, const QPoint& at);
  void menuDidClose();
  /// Where the first location of a row lies; nowhere when it has none.
  Url location_of(const QModelIndex& entry) const;
  RemovalQuestion question() const;

  SmartOutlineModel* model_ = nullptr;
};

}  // namespace tarnby
