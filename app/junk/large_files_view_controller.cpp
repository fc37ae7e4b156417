#include "app/junk/large_files_view_controller.h"

#include <QHBoxLayout>
#include <QMenu>
#include <QSlider>
#include <QVBoxLayout>
#include <algorithm>

#include "app/entry_menu.h"
#include "app/layouts.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

constexpr std::int64_t MB = 1'000'000;
constexpr int first_position = 1;
constexpr int last_position = 7;

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
    case 7:  // the same again, which is meant
      return 2000 * MB;
    default:
      return 10 * MB;
  }
}

LargeFilesViewController::LargeFilesViewController(AppContext& context)
    : Screen(context), app_settings(context.platform.app_settings) {
  setWindowTitle(context.text("Large files"));
  build();
  start_search();
}

void LargeFilesViewController::build() {
  QVBoxLayout* layout = wide_sheet_column(this);
  layout->addLayout(size_line());
  layout->addWidget(outline());
  layout->addLayout(bottom_line());
  show_selection();
}

QLayout* LargeFilesViewController::size_line() {
  auto* line = new QHBoxLayout;
  least_size_label = text_label({}, theme::Type::detail, theme::readable(theme::secondary, theme::sheet), this);
  least_size_label->setText(
      context_.text("At least %@", {context_.byte_count(large_file_size_at_index(first_position))}));
  slider = new QSlider(Qt::Horizontal, this);
  slider->setRange(first_position, last_position);
  slider->setPageStep(1);
  slider->setTickPosition(QSlider::TicksBelow);
  slider->setTickInterval(1);
  slider->setAccessibleName(context_.text("Least size"));
  slider->setEnabled(false);
  connect(slider, &QSlider::valueChanged, this, &LargeFilesViewController::larges_file);
  overall_larges_label = text_label(context_.text("Searching…"), theme::Type::body, theme::text, this);
  line->addWidget(least_size_label);
  line->addWidget(slider, 1);
  line->addSpacing(2 * theme::grid);
  line->addWidget(overall_larges_label);
  return line;
}

QWidget* LargeFilesViewController::outline() {
  outlineview = new OutlineView(context_.icons, this);
  outlineview->setAccessibleName(windowTitle());
  outlineview->setFixedSize(outline_size_);
  model_ = new LargeFilesModel(context_, outline_items, ticked_, outlineview);
  outlineview->setModel(model_);
  progress = new PulseView(context_.clock, outlineview);
  progress->setAccessibleName(context_.text("Searching…"));
  progress->setGeometry(QRect(QPoint(), progress->sizeHint()).translated(220, 60));
  connect(model_, &OutlineModel::tick_asked, this, &LargeFilesViewController::select_file);
  connect(outlineview, &OutlineView::preview_asked, this, &LargeFilesViewController::preview);
  make_menu();
  connect(outlineview, &OutlineView::disclosure_asked, this,
          [this](const QModelIndex& group) { outlineview->setExpanded(group, !outlineview->isExpanded(group)); });
  return outlineview;
}

void LargeFilesViewController::make_menu() {
  file_menu = make_entry_menu(context_, this,
                              {[this] { show_in_finder(menu_row_); }, [this] { preview(menu_row_); },
                               [this] {
                                 if (const auto record = model_->file_at(menu_row_)) {
                                   context_.workspace.show_information(record->url_file);
                                 }
                               }});
  connect(outlineview, &OutlineView::menu_asked, this, [this](const QModelIndex& file, const QPoint& at) {
    menu_row_ = file;
    outlineview->mark_row(file);
    file_menu->popup(at);
  });
  connect(file_menu, &QMenu::aboutToHide, this, [this] { outlineview->mark_row({}); });
}

QLayout* LargeFilesViewController::bottom_line() {
  auto* bottom = new QHBoxLayout;
  selected_larges_label = text_label({}, theme::Type::body, theme::text, this);
  cancel_button = new PushButton(context_.text("Cancel"), ButtonKind::plain, this);
  submitt_button = new PushButton(context_.text("Add to cleanup"), ButtonKind::accent, this);
  submitt_button->setEnabled(false);
  connect(cancel_button, &QAbstractButton::clicked, this, &LargeFilesViewController::cancel);
  connect(submitt_button, &QAbstractButton::clicked, this, &LargeFilesViewController::submit);
  bottom->addWidget(selected_larges_label);
  bottom->addStretch();
  bottom->addWidget(cancel_button);
  bottom->addWidget(submitt_button);
  return bottom;
}

/// What an earlier search of this launch has found is taken as it is. Whether there was one is asked behind what still
/// runs in the background, which may be the end of a search that was given up.
void LargeFilesViewController::start_search() {
  progress->set_pulsing(true);
  const auto found = while_here([this] { show_result(); });
  context_.background.async([&cleaner = context_.sharedCleaner(), &context = context_, found, given_up = given_up_] {
    if (cleaner.totalLargeFilesSize <= 0 && context.begin_looking() && !*given_up) {
      cleaner.search_large_files_with_complete_handler([](const auto&, const auto&, std::int64_t) {});
      if (*given_up) {
        cleaner.outlineItems.clear();
        cleaner.largeFiles.clear();
        cleaner.totalLargeFilesSize = 0;
      }
    }
    context.platform.main_queue.async(found);
  });
}

void LargeFilesViewController::will_retire() {
  if (!searching_) return;
  *given_up_ = true;
  context_.platform.files.stop_looking();
}

void LargeFilesViewController::show_result() {
  const Cleaner& cleaner = context_.sharedCleaner();
  searching_ = false;
  progress->set_pulsing(false);
  progress->hide();
  model_->reload([&] {
    outline_items = cleaner.outlineItems;
    founded_files = cleaner.largeFiles;
  });
  overall_larges_label->setText(context_.byte_count(cleaner.totalLargeFilesSize));
  slider->setEnabled(true);
  outlineview->expandAll();
  outlineview->setFocus();
}

void LargeFilesViewController::larges_file() {
  const std::int64_t least = large_file_size_at_index(slider->value());
  LargeFileSelection kept = large_files_of_at_least(least, founded_files);
  selected_files.clear();
  ticked_.clear();
  overall_selected_size = 0;
  model_->reload([&] { outline_items = std::move(kept.rows); });
  least_size_label->setText(context_.text("At least %@", {context_.byte_count(least)}));
  overall_larges_label->setText(context_.byte_count(kept.total));
  outlineview->expandAll();
  show_selection();
}

void LargeFilesViewController::select_file(const QModelIndex& file, bool on) {
  const auto record = model_->file_at(file);
  if (!record || on == ticked_.contains(record.get())) return;
  if (on) {
    selected_files.push_back(record);
    ticked_.insert(record.get());
    overall_selected_size += static_cast<std::uint64_t>(record->size);
  } else {
    std::erase(selected_files, record);
    ticked_.erase(record.get());
    overall_selected_size -= static_cast<std::uint64_t>(record->size);
  }
  outlineview->viewport()->update();
  show_selection();
}

void LargeFilesViewController::show_selection() {
  const QString size = context_.byte_count(static_cast<std::int64_t>(overall_selected_size));
  selected_larges_label->setText(context_.text("Selected: %@", {size}));
  submitt_button->setEnabled(!selected_files.empty());
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
  post_number("update_ui_with_large_files_item_size", was ? size - before : size);
  Q_EMIT dismissed();
}

}  // namespace tarnby
