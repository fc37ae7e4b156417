#include "app/shell/view_controller.h"

#include <algorithm>
#include <chrono>

#include "app/junk/junk_scan.h"
#include "app/parts/notifications.h"
#include "leftovers/folder_grants.h"
#include "platform/platform.h"

namespace tarnby {

namespace {

using Navigation = ViewController::Navigation;
using Layer = ViewController::Layer;
constexpr auto main_catalogue = &ScreenCatalogue::main;
constexpr auto smart_catalogue = &ScreenCatalogue::smart_clean;

constexpr int swap_ms = 100;

/// For the scan that its own screen begins, since it tells of every step.
void begin_with_screen(AppContext&) {}

// What the background does, in short names that keep the table a table.
constexpr auto still = static_cast<void (BackgroundView::*)()>(nullptr);
constexpr auto to_home = &BackgroundView::animation_for_home_view;
constexpr auto to_scan = &BackgroundView::animation_for_scan_view;
constexpr auto to_page = &BackgroundView::animation_for_page_view;
constexpr auto to_delete = &BackgroundView::animation_for_delete_view;
constexpr auto to_cleaned = &BackgroundView::animation_for_cleaned_view;

// clang-format off
constexpr Navigation rows[] = {
    {notifications::sandbox_view_controller, main_catalogue, "Sandbox", Layer::overlay, still, {}},
    {notifications::home_view_controller_for_launch, main_catalogue, "Home", Layer::content, still, {}},
    {notifications::home_view_controller, main_catalogue, "Home", Layer::content, to_home, {}},
    {notifications::scan_view_controller, main_catalogue, "Scan", Layer::overlay, to_scan, notifications::home_end_anim, swap_ms, true, begin_junk_scan},
    {notifications::page_controller, main_catalogue, "PageController", Layer::content, to_page, {}},
    {notifications::delete_view_controller, main_catalogue, "Delete", Layer::content, to_delete, {}},
    {notifications::cleaned_view_controller, main_catalogue, "Cleaned", Layer::content, to_cleaned, {}},
    {notifications::smart_scan_view_controller, smart_catalogue, "SmartScan", Layer::overlay, to_scan, notifications::home_end_anim_complete, swap_ms, true, begin_with_screen},
    {notifications::smart_clean_view_controller, smart_catalogue, "SmartClean", Layer::content, to_page, notifications::scan_end_anim_complete},
    {notifications::smart_cleanup_view_controller, smart_catalogue, "SmartCleanup", Layer::content, to_delete, {}},
};
// clang-format on

const Navigation& row_of(std::string_view notification) {
  return *std::find_if(std::begin(rows), std::end(rows),
                       [&](const Navigation& row) { return row.notification == notification; });
}

QWidget* new_layer(QWidget* parent) {
  auto* layer = new QWidget(parent);
  layer->setVisible(false);
  return layer;
}

}  // namespace

std::span<const Navigation> ViewController::navigation() {
  return rows;
}

ViewController::ViewController(AppContext& context, QWidget* parent)
    : QWidget(parent),
      app_settings(context.settings()),
      smart_storyboard(ScreenCatalogue::smart_clean()),
      animationView(new BackgroundView(context.clock, this)),
      context_(context) {
  containerView = new_layer(this);
  popview = new_layer(this);
  for (const Navigation& row : rows) observe(row.notification, [this, &row] { answer(row); });

  for (const Grant grant : {Grant::home, Grant::applications}) context.platform.bookmarks.resolve_and_access(grant);
  const bool complete = FolderGrants(context.platform).access().is_complete();
  show(row_of(complete ? notifications::home_view_controller_for_launch : notifications::sandbox_view_controller), {});

  observe(notifications::sandbox_end_anim_complete, [this] { sandbox_end_anim_complete(); });
  observe(notifications::home_end_anim_complete, [this] { home_end_anim_complete(); });
  observe(notifications::scan_end_anim_complete, [this] { scan_end_anim_complete(); });
}

ViewController::~ViewController() {
  for (Screen* screen : {viewcontrollerC.get(), viewcontrollerA.get()}) {
    if (screen != nullptr) screen->retire();
  }
  for (const auto token : observed_) context_.notifications().remove_observer(token);
}

void ViewController::observe(std::string_view notification, std::function<void()> observer) {
  observed_.push_back(context_.notifications().add_observer(std::string(notification), std::move(observer)));
}

void ViewController::answer(const Navigation& row) {
  EngineTurn::Held turn;
  if (row.begin_scan != nullptr) {
    if (!context_.is_free()) return;
    turn = context_.turn.take();
    row.begin_scan(context_);
  }
  if (!row.first.empty()) context_.notifications().post(row.first);
  if (row.delay_ms == 0) return show(row, turn);
  context_.main_queue().after(std::chrono::milliseconds(row.delay_ms), [this, &row, turn, here = std::weak_ptr(here_)] {
    if (!here.expired()) show(row, turn);
  });
}

void ViewController::show(const Navigation& row, EngineTurn::Held turn) {
  std::unique_ptr<Screen> made = row.catalogue().make(row.identifier, context_);
  std::unique_ptr<Screen>& place = screen_of(row.layer);
  if (place && row.logs_removal) context_.platform.system_log("remove");
  take_away(place);
  place = std::move(made);
  if (row.layer == Layer::overlay) turn_ = std::move(turn);
  QWidget* layer = view_of(row.layer);
  place->put_into(layer);
  place->setGeometry(layer->rect());
  place->view_will_appear();
  layer->show();
  place->show();
  place->take_keyboard();
  if (row.background != nullptr) (animationView->*row.background)();
  place->view_did_appear();
}

void ViewController::clear(Layer layer) {
  take_away(screen_of(layer));
  if (layer == Layer::overlay) turn_.reset();
  view_of(layer)->hide();
}

/// The screen is often in the middle of a click on one of its own buttons, so it is deleted later.
void ViewController::take_away(std::unique_ptr<Screen>& screen) {
  if (!screen) return;
  screen->retire();
  screen->hide();
  screen.release()->deleteLater();
}

void ViewController::resizeEvent(QResizeEvent*) {
  for (QWidget* part : {static_cast<QWidget*>(animationView), containerView, popview}) part->setGeometry(rect());
  for (Screen* screen : {viewcontrollerC.get(), viewcontrollerA.get()}) {
    if (screen != nullptr) screen->setGeometry(rect());
  }
}

}  // namespace tarnby
