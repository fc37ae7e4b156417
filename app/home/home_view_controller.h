#pragma once

#include "app/screen.h"
#include "ui/entrance.h"
#include "ui/home_view.h"
#include "ui/push_button.h"

class QLabel;

namespace tarnby {

/// The screen that everything begins from: one big button.
class HomeViewController : public Screen {
  Q_OBJECT
 public:
  explicit HomeViewController(AppContext& context);

  HomeView* search_button;
  /// What all runs together have removed; not shown before the first.
  QLabel* cleaned_so_far;
  /// The quiet way to the category pages.
  PushButton* categories_button;

  /// Looks for what can be removed.
  void search();
  /// Starts the junk scan in the background and shows its progress.
  void show_categories();
  /// Its closing animation, after which it asks to be taken away.
  void home_end_anim();

 private:
  std::unique_ptr<Entrance> entrance_;
};

}  // namespace tarnby
