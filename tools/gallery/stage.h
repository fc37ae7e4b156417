#pragma once

#include <QTemporaryDir>
#include <QWidget>
#include <memory>
#include <span>
#include <string_view>

#include "app/parts/app_context.h"
#include "app/parts/screen_catalogue.h"
#include "engine/cleaner.h"
#include "tests/support/hand_animation_clock.h"
#include "text/localization.h"
#include "ui/background_view.h"

namespace tarnby {

/// A window that shows one screen by itself, with an engine whose results are invented and with nothing of the desktop.
class Stage {
 public:
  static constexpr QSize usual_size{960, 640};
  static constexpr QSize least_size{820, 560};

  /// @param localization the language of the screen; English without it.
  /// @param size of its window.
  explicit Stage(Localization localization = {}, QSize size = usual_size);
  ~Stage();

  AppContext& context() { return *context_; }
  Cleaner& cleaner() { return *cleaner_; }
  QWidget* window() { return window_.get(); }
  BackgroundView* background() { return background_; }

  /// Shows the screen that a catalogue makes; the background is where `change` leads it.
  template <class Controller>
  Controller* show(const ScreenCatalogue& catalogue, std::string_view identifier, void (BackgroundView::*change)()) {
    return static_cast<Controller*>(put(catalogue.make(identifier, *context_), change));
  }

  /// Lets the time pass for everything that moves, and draws.
  void pass(int milliseconds);
  /// Runs what has come to the main queue; after `finish_background`.
  void run_main_queue();
  /// Runs what is delayed on the main queue, however long it would have to wait.
  void run_delayed();
  /// Waits for what the screen has started in the background.
  void finish_background();
  /// A folder of its own, named as the stage's user.
  Url home() const;

 private:
  class Queue;
  class NoWorkspace;
  class NoChooser;

  Screen* put(std::unique_ptr<Screen> screen, void (BackgroundView::*change)());

  QTemporaryDir folder_;
  test::HandAnimationClock clock_;
  std::unique_ptr<Queue> queue_;
  std::unique_ptr<Platform> platform_;
  std::unique_ptr<AppDelegate> delegate_;
  std::unique_ptr<NoWorkspace> workspace_;
  std::unique_ptr<NoChooser> chooser_;
  std::unique_ptr<Application> application_;
  std::unique_ptr<Cache> cache_;
  std::unique_ptr<Remainders> remainders_;
  std::unique_ptr<Cleaner> cleaner_;
  BackgroundQueue background_work_;
  std::unique_ptr<AppContext> context_;
  std::unique_ptr<QWidget> window_;
  BackgroundView* background_;
  std::unique_ptr<Screen> screen_;
};

/// Fills the engine as after a smart scan, with what a person might have.
void pretend_smart_scan(Cleaner& cleaner);
/// The same with nothing found.
void pretend_clean_home(Cleaner& cleaner);

struct StageRow {
  const char* name;
  void (*fill)(Stage& stage);
};

/// Every screen in its states.
std::span<const StageRow> screen_stages();

}  // namespace tarnby
