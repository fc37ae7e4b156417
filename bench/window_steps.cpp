// How promptly the window answers under load, in the real window with the real engine:
//   window_steps FOLDER [FILES [LOGS]]      makes its homes in FOLDER and keeps them
// First the ring while a home of that many files is scanned, beside the same window at rest; then the outline with a
// group of that many entries, beside the same steps with a hundred. Milliseconds, and the ratio of the two.

#include <fcntl.h>
#include <unistd.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QScrollBar>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "app/desktop/folder_chooser.h"
#include "app/parts/app_context.h"
#include "app/shell/cleaner_window_controller.h"
#include "app/shell/qt_main_queue.h"
#include "app/smart/smart_clean_view_controller.h"
#include "app/smart/smart_scan_view_controller.h"
#include "bench/grants.h"
#include "engine/cleaner.h"
#include "platform/platform.h"
#include "platform/workspace.h"
#include "ui/home_view.h"
#include "ui/motion.h"

namespace tarnby {
namespace {

namespace fs = std::filesystem;

struct NoFolderChooser final : FolderChooser {
  void choose(QWidget*, const FolderRequest&, Done done) override { done(std::nullopt); }
};

struct NoWorkspace final : Workspace {
  void open_link(std::string_view) override {}
  void reveal(std::span<const Url>) override {}
  void preview(const Url&) override {}
  void show_information(const Url&) override {}
  void launch(const Url&) override {}
};

/// This user, as whoever the home is named after: else the window would ask for another one.
Session session_of(const bench::Home& home) {
  Session session = current_session();
  session.user_name = fs::path(home.home).filename();
  return session;
}

/// The program around its window, with grants of its own and settings that are nowhere.
class OpenWindow {
 public:
  explicit OpenWindow(const bench::Home& home)
      : platform_(session_of(home), bench::granted_settings(home), main_queue_) {
    window_ = std::make_unique<CleanerWindowController>(context_);
    window_->load();
    clock_.start();
    window_->show();
  }
  ~OpenWindow() {
    platform_.files.stop_looking();
    background_.finish();
    window_.reset();
  }

  NotificationCenter& notifications() { return platform_.notifications; }
  template <class Part>
  Part* part() {
    return window_->findChild<Part*>();
  }
  /// Lets the window live until it has such a part.
  template <class Part>
  Part* wait_for() {
    while (part<Part>() == nullptr) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return part<Part>();
  }

 private:
  QtMainQueue main_queue_;
  Platform platform_;
  Application inventory_{platform_};
  Cache cache_{platform_, inventory_};
  Remainders remainders_{platform_, cache_};
  Cleaner cleaner_{platform_, cache_, remainders_};
  TimerClock clock_;
  BackgroundQueue io_queue_;
  BackgroundQueue background_;
  AppDelegate delegate_{platform_.app_settings, [] {}};
  NoWorkspace workspace_;
  NoFolderChooser folder_chooser_;
  AppContext context_{platform_, clock_,     delegate_,       background_,
                      io_queue_, workspace_, folder_chooser_, [this]() -> Cleaner& { return cleaner_; }};
  std::unique_ptr<CleanerWindowController> window_;
};

double ms_of(const QElapsedTimer& since) {
  return static_cast<double>(since.nsecsElapsed()) / 1e6;  // NOLINT: nanoseconds
}

/// How long this thread has waited for a processor, in milliseconds; 0 where the system does not tell.
double waited_for_processor() {
  std::ifstream file("/proc/thread-self/schedstat");
  double ran = 0;
  double waited = 0;
  file >> ran >> waited;
  return waited / 1e6;  // NOLINT: nanoseconds
}

/// Has a widget drawn sixty times a second, as its animations do, and notes when each frame comes.
class Frames : public QObject {
 public:
  explicit Frames(QWidget* drawn) : drawn_(drawn) {
    drawn->installEventFilter(this);
    beat_.setTimerType(Qt::PreciseTimer);
    connect(&beat_, &QTimer::timeout, drawn, [drawn] { drawn->update(); });
    constexpr int beat_ms = 16;
    beat_.start(beat_ms);
    since_.start();
  }

  struct Gap {
    double ms = 0;
    /// The part of it in which the thread could have run, had a processor been free.
    double waited_ms = 0;
    bool operator<(const Gap& other) const { return ms < other.ms; }
  };

  std::size_t count() const { return gaps_.size(); }
  /// The first is none: it tells when the drawing began.
  Gap longest() const { return gaps_.size() < 2 ? Gap() : *std::max_element(gaps_.begin() + 1, gaps_.end()); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched == drawn_ && event->type() == QEvent::Paint) {
      const double waited = waited_for_processor();
      gaps_.push_back({ms_of(since_), waited - waited_});
      waited_ = waited;
      since_.restart();
    }
    return false;
  }

 private:
  QObject* drawn_;
  QTimer beat_;
  QElapsedTimer since_;
  double waited_ = 0;
  std::vector<Gap> gaps_;
};

void measure_ring(const bench::Home& home) {
  OpenWindow open(home);
  const Frames at_rest(open.wait_for<HomeView>());
  QElapsedTimer since;
  since.start();
  constexpr int rest_ms = 2000;
  while (since.elapsed() < rest_ms) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
  for (int round = 0; round < 3; ++round) {  // NOLINT: the first with whatever is not in the caches
    open.notifications().post("smart_scan_view_controller");
    const Frames scanning(open.wait_for<ScanView>());
    since.restart();
    open.wait_for<SmartCleanViewController>();
    const double seconds = ms_of(since) / 1000;  // NOLINT: milliseconds
    const Frames::Gap gap = scanning.longest();
    const Frames::Gap rest = at_rest.longest();
    std::printf(
        "ring     scan of %.2f s, %zu frames, longest gap %5.1f ms, %5.1f of it waiting for a processor   "
        "at rest %.1f, %.1f   ratio %.2f\n",
        seconds, scanning.count(), gap.ms, gap.waited_ms, rest.ms, rest.waited_ms, gap.ms / rest.ms);
    open.notifications().post("home_view_controller");
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QApplication::processEvents();
  }
}

/// A home of nothing but logs, each an entry of its own.
bench::Home make_logs(const std::string& folder, std::size_t logs) {
  const fs::path top = fs::path(folder) / ("logs-" + std::to_string(logs));
  const fs::path place = top / "user" / "Library" / "Logs";
  if (!fs::exists(top / "finished")) {
    fs::remove_all(top);
    fs::create_directories(place);
    fs::create_directories(top / "Applications" / "Any.app");
    for (std::size_t at = 0; at < logs; ++at) {
      std::ofstream(place / ("tool " + std::to_string(at * 7919 % logs) + ".log")) << std::string(at % 4000 + 1, '.');
    }
    std::ofstream(top / "finished") << logs << '\n';
  }
  return {(top / "user").string(), (top / "Applications").string(), {}};
}

struct Step {
  std::string_view name;
  double longest_ms;
};

/// What a person waits for at each step: until what was asked for has been drawn.
class Steps {
 public:
  void take(const char* name, QWidget* drawn, const std::function<void()>& step) {
    QElapsedTimer since;
    since.start();
    step();
    QApplication::sendPostedEvents();
    drawn->repaint();
    note(name, ms_of(since));
    QApplication::processEvents();
  }

  void note(const char* name, double took) {
    const auto same = std::find_if(steps_.begin(), steps_.end(), [&](const Step& at) { return at.name == name; });
    if (same == steps_.end()) {
      steps_.push_back({name, took});
    } else {
      same->longest_ms = std::max(same->longest_ms, took);
    }
  }

  const std::vector<Step>& all() const { return steps_; }

 private:
  std::vector<Step> steps_;
};

std::vector<Step> measure_outline(const bench::Home& home) {
  motion::set_reduced(true);  // a moving picture of the opening would be timed instead of the opening
  OpenWindow open(home);
  open.notifications().post("smart_scan_view_controller");
  Steps steps;
  while (open.part<SmartCleanViewController>() == nullptr) {
    QElapsedTimer turn;
    turn.start();
    QApplication::processEvents();
    if (open.part<SmartCleanViewController>() != nullptr) steps.note("show", ms_of(turn));
    usleep(100);  // NOLINT: leaves the processor to the scan
  }
  auto* screen = open.part<SmartCleanViewController>();
  OutlineView* outline = screen->outlineview;
  QWidget* drawn = outline->viewport();
  QScrollBar* bar = outline->verticalScrollBar();
  const QModelIndex logs = outline->model()->index(1, 0);
  const QModelIndex middle = outline->model()->index(outline->model()->rowCount(logs) / 2, 0, logs);
  QApplication::processEvents();

  steps.take("draw", drawn, [] {});
  steps.take("open", drawn, [&] { screen->show_items(logs); });
  constexpr int turns = 200;
  for (int at = 0; at <= turns; ++at) {
    steps.take("scroll", drawn, [&] { bar->setValue(static_cast<int>(std::int64_t{bar->maximum()} * at / turns)); });
  }
  for (int at = 0; at < turns; ++at) steps.take("wheel", drawn, [&] { bar->setValue(bar->value() - 90); });
  steps.take("go to one", drawn, [&] { outline->setCurrentIndex(middle); });
  for (int at = 0; at < 10; ++at) {  // NOLINT: some
    steps.take("untick one", drawn, [&] { screen->select_item(middle, false); });
    steps.take("tick one", drawn, [&] { screen->select_item(middle, true); });
    steps.take("untick all", drawn, [&] { screen->select_smart_outline_item(logs, false); });
    steps.take("tick all", drawn, [&] { screen->select_smart_outline_item(logs, true); });
  }
  steps.take("type in vain", drawn, [&] { outline->keyboardSearch(QStringLiteral("nothing")); });
  steps.take("close", drawn, [&] { screen->show_items(logs); });
  return steps.all();
}

void compare_outlines(const std::string& folder, std::size_t many) {
  constexpr std::size_t few = 100;
  const std::vector<Step> with_few = measure_outline(make_logs(folder, few));
  const std::vector<Step> with_many = measure_outline(make_logs(folder, many));
  for (std::size_t at = 0; at < with_many.size(); ++at) {
    std::printf("outline  %-15.*s %zu entries %7.1f ms   %zu entries %5.1f ms   ratio %.1f\n",
                static_cast<int>(with_many[at].name.size()), with_many[at].name.data(), many, with_many[at].longest_ms,
                few, with_few[at].longest_ms, with_many[at].longest_ms / with_few[at].longest_ms);
  }
}

}  // namespace
}  // namespace tarnby

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  if (argc < 2) {
    std::fprintf(stderr, "usage: window_steps FOLDER [FILES [LOGS]]   (makes its homes in FOLDER and keeps them)\n");
    return 2;
  }
  const std::size_t files = argc > 2 ? std::strtoul(argv[2], nullptr, 10) : 1'000'000;
  const std::size_t logs = argc > 3 ? std::strtoul(argv[3], nullptr, 10) : 200'000;
  tarnby::measure_ring(tarnby::bench::make_home(argv[1], files));
  tarnby::compare_outlines(argv[1], logs);
  return 0;
}
