#pragma once

#include <optional>

#include "app/screen.h"
#include "leftovers/folder_grants.h"
#include "ui/entrance.h"
#include "ui/push_button.h"

class QLabel;

namespace tarnby {

/// The screen that asks for the two folders. What is picked is stored before it is checked; a wrong folder is refused
/// without a word, and its button stays.
class SandboxViewController : public Screen {
  Q_OBJECT
 public:
  explicit SandboxViewController(AppContext& context);

  AppSettings& app_settings;
  PushButton* allowHome;
  PushButton* allowApps;
  QLabel* label;
  QLabel* text;
  PushButton* info_text;
  QWidget* directory_view;
  QWidget* buttons_view;

  void allow_home();
  void allow_applications();
  void open_sandbox_webpage();
  /// Plays the closing animation and then has the layer cleared.
  void sandbox_end_anim();

 private:
  void choose(Grant grant);
  void chosen(Grant grant, const std::optional<Url>& folder);
  void show_as_allowed(PushButton* button);

  FolderGrants grants_;
  std::unique_ptr<Entrance> entrance_;
};

}  // namespace tarnby
