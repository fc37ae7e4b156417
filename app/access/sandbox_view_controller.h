#pragma once

#include <optional>

#include "app/parts/screen.h"
#include "leftovers/folder_grants.h"
#include "ui/entrance.h"
#include "ui/push_button.h"

class QLabel;

namespace tarnby {

class FolderCard;

/// The screen that asks for the two folders. What is picked is stored before it is checked; a wrong folder is refused
/// with a word on which one is meant, and its button stays. The screen ends by itself when both are right. When they
/// were right from the beginning, both can be picked anew, until "Done".
class SandboxViewController : public Screen {
  Q_OBJECT
 public:
  explicit SandboxViewController(AppContext& context);

  AppSettings& app_settings;
  PushButton* allowHome;
  PushButton* allowApps;
  /// Only where both folders were right from the beginning.
  PushButton* done_button;
  QLabel* label;
  QLabel* text;
  PushButton* info_text;
  QWidget* directory_view;
  QWidget* buttons_view;
  FolderCard* home_card;
  FolderCard* applications_card;

  void allow_home();
  void allow_applications();
  void open_sandbox_webpage();
  /// Plays the closing animation and then has the layer cleared.
  void sandbox_end_anim();

 private:
  void choose(Grant grant);
  void chosen(Grant grant, const Url& folder);
  void answer(Grant grant, const Url& picked, const GrantState& taken);
  void go_home();
  struct Words {
    const char* title;
    const char* text;
  };
  void make_words();
  Words words_now() const;
  QWidget* make_cards();
  QWidget* make_buttons();
  void show_access();
  void show_grant(Grant grant, const GrantState& state);
  void show_fault(Grant grant, GrantFault fault, const Url& folder);
  PushButton* button_of(Grant grant) const { return grant == Grant::home ? allowHome : allowApps; }
  FolderCard* card_of(Grant grant) const { return grant == Grant::home ? home_card : applications_card; }
  QString wanted_home() const;

  Access access_;
  /// Both were right when the screen came.
  const bool changes_;
  std::unique_ptr<Entrance> entrance_;
};

}  // namespace tarnby
