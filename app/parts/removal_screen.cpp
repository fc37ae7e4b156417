#include "app/parts/removal_screen.h"

#include <QKeyEvent>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "app/parts/layouts.h"
#include "app/parts/notifications.h"
#include "app/parts/stop_removal.h"
#include "ui/motion.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

constexpr std::chrono::milliseconds interval{50};  // as often as anybody can read
constexpr std::chrono::milliseconds last_stretch{motion::push_ms};

/// How much of what was asked for is gone; never all of it before the removal is over.
double part_gone(const RemovalRun& removal) {
  constexpr double most = 0.99;
  const bool by_bytes = removal.asked_bytes > 0;
  const auto gone = static_cast<double>(by_bytes ? removal.progress.bytes : removal.progress.listed);
  const auto asked = by_bytes ? static_cast<double>(removal.asked_bytes) : static_cast<double>(removal.asked_entries);
  return asked > 0 ? std::min(gone / asked, most) : 0;
}

}  // namespace

RemovalScreen::RemovalScreen(AppContext& context, Milliseconds ring_time) : Screen(context), ring_time_(ring_time) {
  const QColor quiet = theme::readable(theme::secondary, theme::wave_ground);
  ring_ = new DeleteView(context.clock, this);
  ring_->setAccessibleName(context.text("Removal"));
  line_ = new FadingLabel(context.clock, this);
  entries_label = text_label({}, theme::Type::body, quiet, this);
  stop_button = new PushButton(context.text("Stop"), ButtonKind::shaded, this);
  stop_button->setToolTip(QStringLiteral("Esc"));
  stop_button->setAccessibleDescription(context.text("What is gone stays gone; everything else stays where it is."));
  keep_place_when_hidden(stop_button);
  connect(stop_button, &QAbstractButton::clicked, this, &RemovalScreen::stop);

  QVBoxLayout* layout = screen_column(this);
  layout->addStretch(around_ring.above);
  layout->addWidget(ring_, 0, Qt::AlignHCenter);
  layout->addSpacing(4 * theme::grid);
  layout->addWidget(line_);
  layout->addWidget(entries_label);
  layout->addSpacing(2 * theme::grid);
  layout->addWidget(stop_button, 0, Qt::AlignHCenter);
  below_ = new QVBoxLayout;
  layout->addLayout(below_);
  layout->addStretch(around_ring.below);
  stop_button->setFocus();
}

void RemovalScreen::start(RemovalRequest request) {
  start_removal(context_, std::move(request));
  context_.may_close = [this](QWidget&) { return may_close(); };
  observe(RemovalRun::removal_changed, [this] {
    if (!context_.removal.running) finish();
  });
  show_progress();
  every(interval, [this] {
    passed_ += interval;
    if (!over_) follow();
    return !over_;
  });
}

/// The ring runs at its own pace where the removal is faster, and never before it.
void RemovalScreen::follow() {
  const double paced = (passed_ + interval) / std::chrono::duration<double, std::milli>(ring_time_);
  const double gone = part_gone(context_.removal);
  ring_->animate_stroke_end(motion::reduced() ? gone : std::min(gone, paced), static_cast<int>(interval.count()));
  show_progress();
}

void RemovalScreen::show_progress() {
  const RemovalRun& removal = context_.removal;
  // At once: a number that is pushed away before it has come cannot be read.
  ring_->number()->setText(context_.byte_count(removal.progress.bytes));
  ring_->show_caption(context_.text("removed of %@", {context_.byte_count(removal.asked_bytes)}));
  entries_label->setText(
      context_.plural(removal.progress.entries, "One file or folder is gone", "%@ files and folders are gone"));
}

void RemovalScreen::finish() {
  if (std::exchange(over_, true)) return;
  show_progress();
  stop_button->setVisible(false);
  removal_is_over();
  if (context_.removal.stopped) return post(notifications::cleaned_view_controller);
  ring_->animate_stroke_end(1, static_cast<int>(std::max(last_stretch, ring_time_ - passed_).count()));
  for (const Work& work : std::exchange(waiting_, {})) work();
}

void RemovalScreen::when_over(Milliseconds earliest, Work work) {
  after(earliest, [this, work = std::move(work)] {
    if (over_) return work();
    waiting_.push_back(work);
  });
}

void RemovalScreen::stop() {
  if (over_ || context_.removal.stopped) return;
  context_.removal.stop();
  stop_button->setEnabled(false);
  line_->show_text(context_.text("Stopping…"));
}

void RemovalScreen::keyPressEvent(QKeyEvent* event) {
  event->key() == Qt::Key_Escape ? stop() : Screen::keyPressEvent(event);
}

bool RemovalScreen::may_close() {
  if (over_ || context_.removal.stopped) return over_;
  if (question_ && question_->isVisible()) return false;
  auto question = std::make_unique<StopRemoval>(context_);
  connect(question.get(), &StopRemoval::stop_asked, this, &RemovalScreen::stop);
  question_ = question.get();
  present_sheet(std::move(question));
  return false;
}

void RemovalScreen::will_retire() {
  context_.may_close = [](QWidget&) { return true; };
}

}  // namespace tarnby
