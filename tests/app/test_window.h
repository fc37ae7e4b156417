#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/desktop/folder_chooser.h"
#include "app/parts/overlay.h"
#include "app/shell/cleaner_window_controller.h"
#include "platform/workspace.h"
#include "tests/engine/test_engine.h"
#include "tests/support/hand_time.h"
#include "ui/motion.h"

namespace tarnby::test {

using Layer = ViewController::Layer;

/// A desktop that only remembers what it was asked to do.
struct QuietWorkspace final : Workspace {
  void reveal(std::span<const Url> entries) override {
    for (const Url& entry : entries) asked.push_back("reveal " + entry.path());
  }
  void launch(const Url& application) override { asked.push_back("launch " + application.path()); }
  void preview(const Url& entry) override { asked.push_back("preview " + entry.path()); }
  void show_information(const Url& entry) override { asked.push_back("information " + entry.path()); }
  void open_link(std::string_view address) override { asked.push_back("open " + std::string(address)); }

  std::vector<std::string> asked;
};

/// A folder chooser that is answered by the test.
struct QuietFolderChooser final : FolderChooser {
  void choose(QWidget* over, const FolderRequest& request, Done done) override {
    asked_over = over;
    asked = request;
    answer = std::move(done);
  }

  QWidget* asked_over = nullptr;
  FolderRequest asked;
  Done answer;
};

/// The program as it is after its launch, in front of a test's user: its window on a time of its own, its engine, its
/// background threads.
class TestWindow {
 public:
  explicit TestWindow(TestPlatform& owner);
  ~TestWindow();

  TestPlatform& user;
  Platform& platform;
  HandTime time;
  QuietWorkspace workspace;
  QuietFolderChooser chooser;
  std::vector<std::string> logged;
  BackgroundQueue background, io_queue;
  AppDelegate delegate;
  std::optional<Engine> engine;
  AppContext context;

  /// Makes the window; it is not on the screen, so what moves in it is at its end at once.
  ViewController& open();
  /// The same, on the screen and with the keyboard.
  ViewController& open_on_screen();
  void close();
  ViewController& content() { return window_->content(); }
  QWidget* widget() { return window_.get(); }

  void post(const char* notification) { user.notifications.post(notification); }
  /// Waits for the background threads, and runs what they have handed over.
  void settle();
  /// Lets time pass, and what was to be deleted go.
  void pass(int milliseconds);
  /// Goes through a smart scan.
  void scan();

  /// The screen of a layer, null when it is none of that kind.
  template <class Kind = Screen>
  Kind* screen(Layer layer = Layer::content) {
    const auto& place = layer == Layer::content ? content().viewcontrollerC : content().viewcontrollerA;
    return qobject_cast<Kind*>(place.get());
  }
  /// The content of the card on top, null when it is none of that kind.
  template <class Kind = Screen>
  Kind* card() {
    const auto cards = window_->findChildren<Overlay*>(QString(), Qt::FindDirectChildrenOnly);
    for (auto card = cards.rbegin(); card != cards.rend(); ++card) {
      if (!(*card)->isHidden()) return qobject_cast<Kind*>(&(*card)->content());
    }
    return nullptr;
  }

 private:
  std::unique_ptr<CleanerWindowController> window_;
};

/// Keeps a background thread from going on until the test lets it.
class HeldThread {
 public:
  /// At what is handed to the queue from now on.
  explicit HeldThread(BackgroundQueue& queue);
  /// In the middle of the next scan: where it hands its second notification over.
  explicit HeldThread(HandMainQueue& queue);
  ~HeldThread();
  HeldThread(const HeldThread&) = delete;
  HeldThread& operator=(const HeldThread&) = delete;

  void wait_until_held() { place_->there.get_future().wait(); }
  void release();

 private:
  /// Where the thread is held; shared with it.
  struct Place {
    void stop_here();
    std::promise<void> there, go;
  };
  std::shared_ptr<Place> place_ = std::make_shared<Place>();
  bool held_ = true;
};

}  // namespace tarnby::test
