#pragma once

#include "app/screen.h"
#include "ui/entrance.h"
#include "ui/home_view.h"

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

  /// Looks for what can be removed.
  void search();
  /// Its closing animation, after which it asks to be taken away.
  void home_end_anim();

 private:
  std::unique_ptr<Entrance> entrance_;
};

}  // namespace tarnby
