#include "app/smart/smart_clean_view_controller.h"

#include <QHBoxLayout>
#include <QItemSelectionModel>
#include <QMenu>
#include <QVBoxLayout>
#include <algorithm>

#include "app/parts/category_look.h"
#include "app/parts/entry_menu.h"
#include "app/parts/layouts.h"
#include "app/parts/notifications.h"
#include "app/parts/overlay.h"
#include "app/parts/screen_catalogue.h"
#include "app/smart/offer_panel.h"
#include "engine/cleaner.h"
#include "engine/smart_selection.h"
#include "platform/workspace.h"
#include "ui/panel.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

constexpr int chart_panel_width = 268;
constexpr int widest_chart_panel = 360;
constexpr int chart_edge = 3 * theme::grid;

}  // namespace

SmartCleanViewController::SmartCleanViewController(AppContext& context)
    : Screen(context),
      appDelegate(context.appDelegate),
      app_settings(context.settings()),
      sharedCleaner(context.sharedCleaner()) {
  take(sharedCleaner);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  auto* panels = new QHBoxLayout;
  panels->setContentsMargins(3 * theme::grid, 3 * theme::grid, 3 * theme::grid, 2 * theme::grid);
  panels->setSpacing(panel_gap);
  panels->addWidget(chart_panel());
  panels->addWidget(outline_panel(), 1);
  layout->addLayout(panels, 1);
  layout->addWidget(bottom_bar());
  make_menu();
  update_ui();
  // Everything is ticked now, so the legend is as wide as it will ever be.
  const int wanted = chart->sizeHint().width() + 2 * chart_edge;
  chart->parentWidget()->setFixedWidth(std::clamp(wanted, chart_panel_width, widest_chart_panel));
  outlineview->setFocus();
  if (!has_entries()) say_there_is_nothing();
}

/// Nothing where groups have problems: they tell theirs.
std::optional<WhyNothing> SmartCleanViewController::why_nothing() const {
  if (!sharedCleaner.knows_places()) {
    return context_.scanned_home_is_empty ? WhyNothing::empty_home : WhyNothing::no_known_place;
  }
  const bool has_problem = std::ranges::any_of(
      outlineItems, [&](const auto& item) { return sharedCleaner.problem_of(item->type).has_value(); });
  return has_problem ? std::nullopt : std::optional(WhyNothing::everything_is_clean);
}

/// In the place of empty groups. They are there all the same, for whoever asks for what is ticked.
void SmartCleanViewController::say_there_is_nothing() {
  const auto why = why_nothing();
  if (!why) {
    app_title->show();
    return;
  }
  for (QWidget* part : {chart->parentWidget(), outlineview->parentWidget(), remove_button->parentWidget()})
    part->hide();
  auto* nothing = new NothingFound(context_, *why, this);
  app_title = nothing->title;
  auto* column = static_cast<QVBoxLayout*>(layout());
  delete column->takeAt(0);  // the row of the panels, which would keep its room though they are hidden
  column->addWidget(nothing, 1);
  connect(nothing->done_button, &QAbstractButton::clicked, back_button, &QAbstractButton::click);
  nothing->done_button->setFocus();
}

QWidget* SmartCleanViewController::chart_panel() {
  auto* panel = new Panel(this);
  auto* layout = new QVBoxLayout(panel);
  layout->setContentsMargins(chart_edge, page_edge, chart_edge, chart_edge);
  chart = new ChartView(context_.clock, panel);
  chart->setAccessibleName(context_.text("Selected, by category"));
  layout->addWidget(chart, 1);
  return panel;
}

QWidget* SmartCleanViewController::outline_panel() {
  auto* panel = new Panel(this);
  auto* layout = new QVBoxLayout(panel);
  layout->setContentsMargins(0, theme::grid, 0, theme::grid);
  layout->setSpacing(0);
  app_title = text_label(context_.text("Nothing was found, but not everything could be looked at."), theme::Type::title,
                         theme::text, panel, theme::Weight::strong);
  app_title->setContentsMargins(theme::grid, 2 * theme::grid, theme::grid, theme::grid);
  app_title->hide();
  layout->addWidget(app_title);
  outlineview = new OutlineView(context_.icons, panel);
  outlineview->setAccessibleName(context_.text("What can be removed"));
  model_ = new SmartOutlineModel(context_, *this, outlineview);
  outlineview->setModel(model_);
  for (std::size_t group = 0; group < count(); ++group) {
    outlineview->setRowHidden(static_cast<int>(group), {}, model_->is_hidden(group));
  }
  layout->addWidget(outlineview, 1);

  connect(model_, &SmartOutlineModel::tick_asked, this, [this](const QModelIndex& index, bool on) {
    SmartOutlineModel::is_group(index) ? select_smart_outline_item(index, on) : select_item(index, on);
  });
  connect(outlineview, &OutlineView::about_asked, this, &SmartCleanViewController::about_item);
  connect(outlineview, &OutlineView::disclosure_asked, this, &SmartCleanViewController::show_items);
  connect(outlineview, &OutlineView::menu_asked, this, &SmartCleanViewController::open_menu);
  connect(outlineview, &OutlineView::preview_asked, this, [this](const QModelIndex& entry) {
    selectedRow = entry;
    quick_look_item();
  });
  connect(outlineview->selectionModel(), &QItemSelectionModel::currentChanged, this, [this](const QModelIndex& index) {
    if (!SmartOutlineModel::is_group(index)) return;
    post("smart_clean_about_" + outlineItems[SmartOutlineModel::group_of(index)]->type);
  });
  return panel;
}

QWidget* SmartCleanViewController::bottom_bar() {
  auto* bar = new Bar(this);
  auto* layout = new QHBoxLayout(bar);
  layout->setContentsMargins(3 * theme::grid, 2 * theme::grid, 3 * theme::grid, 2 * theme::grid);
  layout->setSpacing(2 * theme::grid);
  layout->addWidget(text_label(context_.text("Selected"), theme::Type::body,
                               theme::readable(theme::secondary, theme::panel_ground()), bar));
  size = new NumberLabel(context_.clock, bar);
  size->setFont(theme::font(theme::Type::heading, theme::Weight::strong));
  size->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  layout->addWidget(size);
  counted_once = text_label({}, theme::Type::note, theme::readable(theme::secondary, theme::panel_ground()), bar);
  counted_once->setWordWrap(true);
  align_at_beginning(counted_once);
  layout->addWidget(counted_once, 1);
  back_button = new PushButton(context_.text("Back"), ButtonKind::plain, bar);
  remove_button = new PushButton(context_.text("Remove"), ButtonKind::destructive, bar);
  layout->addWidget(back_button);
  layout->addWidget(remove_button);
  connect(back_button, &QAbstractButton::clicked, this, [this] { post(notifications::home_view_controller); });
  connect(remove_button, &QAbstractButton::clicked, this, &SmartCleanViewController::ask_and_remove);
  return bar;
}

void SmartCleanViewController::make_menu() {
  cleanItemMenu = make_entry_menu(
      context_, this, {[this] { show_item_in_finder(); }, [this] { quick_look_item(); }, [this] { get_item_info(); }});
  connect(cleanItemMenu, &QMenu::aboutToHide, this, &SmartCleanViewController::menuDidClose);
}

void SmartCleanViewController::select_smart_outline_item(const QModelIndex& group, bool on) {
  const std::size_t at = SmartOutlineModel::group_of(group);
  on ? select_group(at) : unselect_group(at);
  model_->group_changed(at);
  update_ui();
}

void SmartCleanViewController::select_item(const QModelIndex& entry, bool on) {
  const std::size_t group = SmartOutlineModel::group_of(entry);
  const auto position = static_cast<std::size_t>(entry.row());
  on ? select_entry(group, position) : unselect_entry(group, position);
  model_->group_changed(group);
  update_ui();
}

void SmartCleanViewController::update_ui() {
  update_junk();
  const QString ticked_size = context_.byte_count(static_cast<std::int64_t>(smart_junk));
  size->show_text(ticked_size);
  counted_once->setText(counted_once_text(context_, question().counted_again()));
  std::vector<ChartSegment> segments;
  for (std::size_t group = 0; group < count(); ++group) {
    if (ticked(group) == Ticked::none) continue;
    const SmartOutlineItem& item = *outlineItems[group];
    const std::int64_t bytes = size_shown(group);
    segments.push_back({context_.text(item.label.c_str()), look_of(item.type).color, static_cast<double>(bytes),
                        context_.byte_count(bytes)});
  }
  chart->set_segments(std::move(segments));
  chart->show_total(ticked_size, context_.text("selected"));
  remove_button->setEnabled(ticked_entries() > 0);
  outlineview->viewport()->update();
}

/// What is told about a group, or why an entry is offered.
std::unique_ptr<Screen> SmartCleanViewController::about_of(const QModelIndex& row) {
  if (const CleanerEntry* entry = model_->entry_at(row)) {
    return std::make_unique<OfferPanel>(context_, *std::get<std::shared_ptr<OfferedItem>>(*entry));
  }
  const auto& item = *outlineItems[SmartOutlineModel::group_of(row)];
  return ScreenCatalogue::smart_clean().make(look_of(item.type).about.identifier, context_);
}

void SmartCleanViewController::about_item(const QModelIndex& row) {
  const QRect mark = outlineview->info_place(row);
  const QRect anchor(outlineview->viewport()->mapTo(window(), mark.topLeft()), mark.size());
  appDelegate.activePopover = Popover::present(about_of(row), window(), anchor);
}

void SmartCleanViewController::show_items(const QModelIndex& group) {
  outlineview->setExpanded(group, !outlineview->isExpanded(group));
}

void SmartCleanViewController::open_menu(const QModelIndex& entry, const QPoint& at) {
  selectedRow = entry;
  outlineview->mark_row(entry);
  cleanItemMenu->popup(at);
}

void SmartCleanViewController::menuDidClose() {
  outlineview->mark_row({});
}

Url SmartCleanViewController::location_of(const QModelIndex& entry) const {
  const CleanerEntry* record = model_->entry_at(entry);
  const auto urls = record == nullptr ? std::span<const Url>() : locations_of(*record);
  return urls.empty() ? Url() : urls.front();
}

void SmartCleanViewController::show_item_in_finder() {
  const Url url = location_of(selectedRow);
  if (!url.empty()) context_.workspace.reveal({&url, 1});
}

void SmartCleanViewController::quick_look_item() {
  preview_url = location_of(selectedRow);
  if (!preview_url.empty()) context_.workspace.preview(preview_url);
}

void SmartCleanViewController::get_item_info() {
  const Url url = location_of(selectedRow);
  if (!url.empty()) context_.workspace.show_information(url);
}

void SmartCleanViewController::ask_and_remove() {
  if (ticked_entries() == 0) return remove();
  sheet_view_controller = ask_before_removal(context_, question(), *this, [this] { remove(); });
}

RemovalQuestion SmartCleanViewController::question() const {
  RemovalQuestion question{{}, static_cast<std::int64_t>(smart_junk)};
  for (std::size_t group = 0; group < count(); ++group) {
    if (ticked(group) == Ticked::none) continue;
    const SmartOutlineItem& item = *outlineItems[group];
    question.lines.push_back({item.type, item.label, ticked_entries(group), size_shown(group)});
  }
  return question;
}

void SmartCleanViewController::remove() {
  sharedCleaner.files = ticked_locations();
  sharedCleaner.wasCleaned = static_cast<std::int64_t>(smart_junk);
  post(notifications::smart_cleanup_view_controller);
}

}  // namespace tarnby
