#pragma once

#include <QPointer>

#include "app/parts/screen.h"
#include "ui/entrance.h"
#include "ui/home_view.h"
#include "ui/push_button.h"

class QLabel;

namespace tarnby {

class GuideWindow;

/// The screen that everything begins from: one big button.
class HomeViewController : public Screen {
  Q_OBJECT
 public:
  explicit HomeViewController(AppContext& context);
  ~HomeViewController() override;

  void view_did_appear() override;

  HomeView* search_button;
  /// What all runs together have removed, empty before the first; or what is still to end before a scan can begin.
  QLabel* cleaned_so_far;
  /// The quiet way to the category pages.
  PushButton* categories_button;

  /// The guide to full disk access; null while it is not shown.
  QPointer<GuideWindow> privacy_windowcontroller;

  /// Touches the personal folders once, so that the system asks for its consent now and not in the middle of a scan.
  void privacy_for_directories();
  /// Tests whether there is full disk access, and guides to it when there is not.
  void privacy_full_disk_access();
  /// Looks for what can be removed.
  void search();
  /// Looks for it category by category.
  void show_categories();
  /// Its closing animation, after which it asks to be taken away.
  void home_end_anim();

 private:
  void show_guide();
  bool offers_scheduler() const;
  void update_ui();
  QString status_text() const;

  bool folders_were_touched_ = false;

  std::unique_ptr<Entrance> entrance_;
};

}  // namespace tarnby
