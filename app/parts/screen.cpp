#include "app/parts/screen.h"

#include <QApplication>
#include <algorithm>

#include "app/parts/overlay.h"

namespace tarnby {

namespace {

/// A sheet or popover, or another window: a menu, a chooser, the guide.
bool is_anything_open_over(QWidget* window) {
  const auto is_visible = [](const QWidget* widget) { return widget->isVisible(); };
  const auto overlays = window->findChildren<Overlay*>(QString(), Qt::FindDirectChildrenOnly);
  return std::ranges::any_of(overlays, is_visible) ||
         std::ranges::any_of(QApplication::topLevelWidgets(),
                             [&](const QWidget* other) { return other != window && is_visible(other); });
}

}  // namespace

Screen::Screen(AppContext& context) : context_(context) {}

Screen::~Screen() {
  retire();
}

/// A widget forgets who has the keyboard in it when it comes into another one.
void Screen::put_into(QWidget* parent) {
  first_focus_ = focusWidget();
  setParent(parent);
}

bool Screen::take_keyboard(Qt::FocusReason reason) {
  if (!first_focus_) return false;
  first_focus_->setFocus(reason);
  return true;
}

void Screen::retire() {
  if (!here_) return;
  for (Screen* part : findChildren<Screen*>()) part->retire();
  here_.reset();
  for (const auto token : observed_) context_.notifications().remove_observer(token);
  will_retire();
}

void Screen::observe(std::string notification, Work observer) {
  observed_.push_back(context_.notifications().add_observer(std::move(notification), std::move(observer)));
}

void Screen::observe_number(std::string notification, std::function<void(std::int64_t)> observer) {
  observed_.push_back(context_.notifications().add_number_observer(std::move(notification), std::move(observer)));
}

void Screen::after(std::chrono::milliseconds delay, Work work) {
  context_.main_queue().after(delay, while_here(std::move(work)));
}

void Screen::every(std::chrono::milliseconds interval, std::function<bool()> work) {
  after(interval, [this, interval, work = std::move(work)] {
    if (work()) every(interval, work);
  });
}

void Screen::offer_sheet(std::chrono::milliseconds delay, std::function<std::unique_ptr<Screen>()> make) {
  every(delay, [this, make = std::move(make)] {
    if (is_anything_open_over(window())) return true;
    present_sheet(make());
    return false;
  });
}

void Screen::present_sheet(std::unique_ptr<Screen> content) {
  Sheet::present(std::move(content), window());
}

}  // namespace tarnby
