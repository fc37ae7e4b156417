#include "app/junk/large_files_view_controller.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QMenu>
#include <QVBoxLayout>
#include <algorithm>

#include "app/parts/entry_menu.h"
#include "app/parts/layouts.h"
#include "app/parts/notifications.h"
#include "engine/cleaner.h"
#include "platform/platform.h"
#include "platform/workspace.h"
#include "ui/panel.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

constexpr std::int64_t MB = 1'000'000;
constexpr int first_position = 1;
constexpr int last_position = 7;
constexpr QSize usual_size(768, 576);
constexpr int window_edge = 3 * theme::grid;

}  // namespace

std::int64_t large_file_size_at_index(int position) {
  switch (position) {
    case 2:
      return 50 * MB;
    case 3:
      return 100 * MB;
    case 4:
      return 500 * MB;
    case 5:
      return 1000 * MB;
    case 6:
    case 7:  // the last step is the one before it once more
      return 2000 * MB;
    default:
      return 10 * MB;
  }
}

LargeFilesViewController::LargeFilesViewController(AppContext& context)
    : Screen(context), app_settings(context.settings()) {
  setWindowTitle(context.text("Large files"));
  build();
  context.large_files_are_known ? show_known() : search();
}

/// As large as it is pleasant to look through, in a window of any size.
QSize LargeFilesViewController::sizeHint() const {
  const QSize room = window()->size() - QSize(2 * window_edge, 2 * window_edge);
  return usual_size.boundedTo(room).expandedTo(minimumSizeHint());
}

void LargeFilesViewController::build() {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(window_edge, panel_gap, window_edge, 2 * theme::grid);
  layout->setSpacing(close_gap);
  layout->addLayout(heading());
  make_slider();
  layout->addWidget(slider);
  layout->addWidget(list(), 1);
  layout->addLayout(bottom_line());
  show_selection();
}

QLayout* LargeFilesViewController::heading() {
  const QColor quiet = theme::readable(theme::secondary, theme::sheet);
  QLabel* title = text_label(windowTitle(), theme::Type::heading, theme::text, this, theme::Weight::strong);
  least_size_label = text_label({}, theme::Type::detail, theme::text, this);
  const QString words = context_.text(
      "Everything in the home folder but single files in Downloads, caches and logs. A row says when another category "
      "lists it, too.");
  QLabel* about = text_label(words, theme::Type::note, quiet, this);
  about->setWordWrap(true);
  overall_larges_label = text_label({}, theme::Type::heading, theme::text, this, theme::Weight::strong);
  count_label = text_label({}, theme::Type::note, quiet, this);
  setAccessibleDescription(words);
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(2 * theme::grid);
  grid->setVerticalSpacing(2);
  grid->setColumnStretch(0, 1);
  int row = 0;
  for (QLabel* label : {title, least_size_label, about}) {
    align_at_beginning(label);
    grid->addWidget(label, row++, 0, 1, label == about ? 2 : 1);
  }
  grid->addWidget(overall_larges_label, 0, 1, Qt::AlignRight);
  grid->addWidget(count_label, 1, 1, Qt::AlignRight);
  return grid;
}

void LargeFilesViewController::make_slider() {
  slider = new StepSlider(this);
  QStringList names;
  for (int position = first_position; position <= last_position; ++position) {
    const QString name = context_.byte_count(large_file_size_at_index(position));
    names << (names.contains(name) ? QString() : name);
  }
  slider->set_stops(names);
  slider->setAccessibleName(context_.text("Least size"));
  slider->setEnabled(false);
  connect(slider, &QSlider::valueChanged, this, &LargeFilesViewController::larges_file);
}

/// The groups, or what stands in their place, one over the other.
QWidget* LargeFilesViewController::list() {
  auto* panel = new Panel(this);
  auto* layers = new QGridLayout(panel);
  layers->setContentsMargins(0, theme::grid, 0, theme::grid);
  layers->addWidget(make_outline(panel), 0, 0);
  nothing_label = text_label({}, theme::Type::title, theme::readable(theme::secondary, theme::sheet), panel);
  nothing_label->setWordWrap(true);
  nothing_label->hide();
  layers->addWidget(nothing_label, 0, 0);
  progress = new PulseView(context_.clock, panel);
  progress->setAccessibleName(context_.text("Searching…"));
  progress->hide();
  layers->addWidget(progress, 0, 0, Qt::AlignCenter);
  return panel;
}

QWidget* LargeFilesViewController::make_outline(QWidget* parent) {
  outlineview = new OutlineView(context_.icons, parent);
  outlineview->setAccessibleName(windowTitle());
  model_ = new LargeFilesModel(context_, outline_items, ticked_, outlineview);
  outlineview->setModel(model_);
  connect(model_, &OutlineModel::tick_asked, this, [this](const QModelIndex& row, bool on) {
    OutlineModel::is_group(row) ? select_group(row, on) : select_file(row, on);
  });
  connect(outlineview, &OutlineView::preview_asked, this, &LargeFilesViewController::preview);
  connect(outlineview, &OutlineView::disclosure_asked, this,
          [this](const QModelIndex& group) { outlineview->setExpanded(group, !outlineview->isExpanded(group)); });
  make_menu();
  return outlineview;
}

void LargeFilesViewController::make_menu() {
  const auto show_information = [this] {
    const auto record = model_->file_at(menu_row_);
    if (record) context_.workspace.show_information(record->url_file);
  };
  file_menu = make_entry_menu(
      context_, this, {[this] { show_in_finder(menu_row_); }, [this] { preview(menu_row_); }, show_information});
  connect(outlineview, &OutlineView::menu_asked, this, [this](const QModelIndex& file, const QPoint& at) {
    menu_row_ = file;
    outlineview->mark_row(file);
    file_menu->popup(at);
  });
  connect(file_menu, &QMenu::aboutToHide, this, [this] { outlineview->mark_row({}); });
}

QLayout* LargeFilesViewController::bottom_line() {
  auto* bottom = new QHBoxLayout;
  bottom->setSpacing(2 * theme::grid);
  selected_larges_label = text_label({}, theme::Type::body, theme::text, this, theme::Weight::strong);
  chosen_label = text_label({}, theme::Type::note, theme::readable(theme::secondary, theme::sheet), this);
  cancel_button = new PushButton(context_.text("Cancel"), ButtonKind::plain, this);
  submitt_button = new PushButton(context_.text("Add to cleanup"), ButtonKind::accent, this);
  submitt_button->setEnabled(false);
  connect(cancel_button, &QAbstractButton::clicked, this, &LargeFilesViewController::cancel);
  connect(submitt_button, &QAbstractButton::clicked, this, &LargeFilesViewController::submit);
  bottom->addWidget(selected_larges_label);
  bottom->addWidget(chosen_label, 1, Qt::AlignLeft | Qt::AlignVCenter);
  bottom->addWidget(cancel_button);
  bottom->addWidget(submitt_button);
  return bottom;
}

/// Whether something is known is asked again behind what still runs in the background, which may be the end of a search
/// that was given up.
void LargeFilesViewController::search() {
  searching_ = true;
  progress->show();
  progress->set_pulsing(true);
  overall_larges_label->setText(context_.text("Searching…"));
  cancel_button->setText(context_.text("Stop"));
  cancel_button->setFocus();
  look_up(
      context_.background,
      [&cleaner = context_.sharedCleaner(), &context = context_, given_up = given_up_] {
        if (cleaner.totalLargeFilesSize <= 0 && context.begin_looking() && !*given_up) {
          cleaner.search_large_files_with_complete_handler([](const auto&, const auto&, std::int64_t) {});
          if (*given_up) {
            cleaner.outlineItems.clear();
            cleaner.largeFiles.clear();
            cleaner.totalLargeFilesSize = 0;
          }
        }
        Details details;
        if (!*given_up) details.also_listed = also_listed(cleaner, cleaner.largeFiles);
        return details;
      },
      [this](const Details& details) {
        show_found();
        show_details(details);
      });
}

void LargeFilesViewController::will_retire() {
  if (!searching_) return;
  *given_up_ = true;
  context_.files().stop_looking();
}

void LargeFilesViewController::show_found() {
  searching_ = false;
  progress->set_pulsing(false);
  progress->hide();
  cancel_button->setText(context_.text("Cancel"));
  cancel_button->updateGeometry();
  show_known();
}

void LargeFilesViewController::show_known() {
  const Cleaner& cleaner = context_.sharedCleaner();
  const bool known_before = std::exchange(context_.large_files_are_known, cleaner.totalLargeFilesSize > 0);
  founded_files = cleaner.largeFiles;
  slider->setEnabled(!founded_files.empty());
  show_files(large_file_size_at_index(slider->value()));
  founded_files.empty() ? cancel_button->setFocus() : outlineview->setFocus();
  if (known_before) look_again();
}

/// What an earlier search has found may be gone, removed by us or by somebody else.
void LargeFilesViewController::look_again() {
  look_up(
      context_.io_queue,
      [&cleaner = context_.sharedCleaner(), &files = context_.files(), founded = founded_files] {
        std::vector<Url> urls;
        urls.reserve(founded.size());
        for (const auto& file : founded) urls.push_back(file->url_file);
        const std::vector<Status> statuses = files.statuses(urls);
        Details details;
        for (std::size_t at = 0; at < founded.size(); ++at) {
          if (statuses[at].kind == EntryKind::none) details.gone.insert(founded[at].get());
        }
        details.also_listed = also_listed(cleaner, founded);
        return details;
      },
      [this](const Details& details) { show_details(details); });
}

void LargeFilesViewController::show_details(const Details& details) {
  model_->show_also_listed(details.also_listed);
  if (details.gone.empty()) return;
  for (const auto& file : LargeFileList(selected_files)) {
    if (details.gone.contains(file.get())) note_tick(file, false);
  }
  std::erase_if(founded_files, [&](const auto& file) { return details.gone.contains(file.get()); });
  show_files(large_file_size_at_index(slider->value()));
  show_selection();
}

void LargeFilesViewController::show_files(std::int64_t least) {
  LargeFileSelection kept = large_files_of_at_least(least, founded_files);
  const auto count = static_cast<std::int64_t>(kept.files.size());
  model_->reload([&] { outline_items = std::move(kept.rows); });
  least_size_label->setText(context_.text("At least %@", {context_.byte_count(least)}));
  overall_larges_label->setText(context_.byte_count(kept.total));
  count_label->setText(count == 0 ? QString() : context_.plural(count, "in one file", "in %@ files"));
  nothing_label->setText(nothing_text(least));
  nothing_label->setVisible(count == 0);
  outlineview->setVisible(count > 0);
  outlineview->expandAll();
}

/// A home that was not seen as a whole is not told to have nothing.
QString LargeFilesViewController::nothing_text(std::int64_t least) const {
  const auto problem = context_.sharedCleaner().problem_of("LargeFiles");
  if (problem) return context_.text(look_problem_text(*problem), {QString::fromStdString(problem->name)});
  return context_.text("Nothing here is as large as %@", {context_.byte_count(least)});
}

void LargeFilesViewController::larges_file() {
  selected_files.clear();
  ticked_.clear();
  overall_selected_size = 0;
  show_files(large_file_size_at_index(slider->value()));
  show_selection();
}

void LargeFilesViewController::select_file(const QModelIndex& file, bool on) {
  const auto record = model_->file_at(file);
  if (!record || on == ticked_.contains(record.get())) return;
  note_tick(record, on);
  model_->group_changed(OutlineModel::group_of(file));
  show_selection();
}

void LargeFilesViewController::select_group(const QModelIndex& group, bool on) {
  for (const auto& file : outline_items[OutlineModel::group_of(group)]->items) {
    if (on != ticked_.contains(file.get())) note_tick(file, on);
  }
  model_->group_changed(OutlineModel::group_of(group));
  show_selection();
}

void LargeFilesViewController::note_tick(const std::shared_ptr<LargeFile>& file, bool on) {
  const auto size = static_cast<std::uint64_t>(file->size);
  if (on) {
    selected_files.push_back(file);
    ticked_.insert(file.get());
    overall_selected_size += size;
  } else {
    std::erase(selected_files, file);
    ticked_.erase(file.get());
    overall_selected_size -= size;
  }
}

void LargeFilesViewController::show_selection() {
  const QString size = context_.byte_count(static_cast<std::int64_t>(overall_selected_size));
  selected_larges_label->setText(context_.text("Selected: %@", {size}));
  submitt_button->setEnabled(!selected_files.empty());
  const auto& chosen = context_.sharedCleaner().large_files_item;
  const bool chosen_before = chosen && !chosen->files.empty();
  chosen_label->setText(!chosen_before ? QString()
                                       : context_.text("Chosen before: %@. A new choice takes its place.",
                                                       {context_.byte_count(chosen->size)}));
  outlineview->viewport()->update();
}

void LargeFilesViewController::show_in_finder(const QModelIndex& file) {
  if (const auto record = model_->file_at(file)) context_.workspace.reveal({&record->url_file, 1});
}

void LargeFilesViewController::preview(const QModelIndex& file) {
  if (const auto record = model_->file_at(file)) context_.workspace.preview(record->url_file);
}

void LargeFilesViewController::submit() {
  if (selected_files.empty()) return cancel();
  Cleaner& cleaner = context_.sharedCleaner();
  const std::int64_t before = cleaner.large_files_item ? cleaner.large_files_item->size : 0;
  const bool was = app_settings.boolean("LargeFiles");
  auto item = std::make_shared<CleanerItem>();
  for (const auto& file : selected_files) item->files.push_back(file->url_file);
  item->size = static_cast<std::int64_t>(overall_selected_size);
  item->string_size = context_.platform.text.byte_count(item->size);
  const std::int64_t size = item->size;
  cleaner.large_files_item = std::move(item);
  app_settings.set_boolean("LargeFiles", true);
  context_.flush_settings();
  post_number(notifications::update_ui_with_large_files_item_size, was ? size - before : size);
  Q_EMIT dismissed();
}

}  // namespace tarnby
