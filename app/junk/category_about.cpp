#include "app/junk/category_about.h"

#include <QVBoxLayout>
#include <algorithm>

#include "app/junk/junk_rows.h"
#include "app/parts/category_look.h"
#include "app/parts/notifications.h"
#include "app/parts/overlay.h"
#include "app/parts/screen_catalogue.h"
#include "platform/platform.h"
#include "ui/color_tag.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

constexpr int tag_side = 28;
constexpr int text_width = 340;

/// What the button of a panel does.
struct ShowRow {
  std::string_view type;
  const char* text;
  /// The category's folder, whose contents the file viewer shows; null where the button does something else.
  Url Cleaner::*folder;
  /// Begins with the hidden file that keeps a folder's look, so that the viewer opens the folder itself.
  bool tries_view_file;
};

constexpr ShowRow show_rows[] = {
    {"caches", english("Show"), &Cleaner::url_caches, true},
    {"logs", english("Show"), &Cleaner::url_logs, true},
    {"trash", english("Show"), &Cleaner::url_trash, true},
    {"downloads", english("Show"), &Cleaner::url_downloads, true},
    {"mails", english("Show"), &Cleaner::url_mails, false},
    {"large-files", english("Choose…"), nullptr, false},
    {"browsers", english("Choose browsers…"), nullptr, false},
};

const ShowRow* show_row(std::string_view type) {
  const auto* row = std::ranges::find(show_rows, type, &ShowRow::type);
  return row == std::end(show_rows) ? nullptr : row;
}

}  // namespace

CategoryAbout::CategoryAbout(AppContext& context, std::string_view type) : Screen(context), type_(type) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(28, 28, 28, 28);
  layout->setSpacing(theme::grid);
  layout->addWidget(new ColorTag(look_of(type).color, this, tag_side));
  layout->addSpacing(theme::grid);
  QLabel* title =
      text_label(context.text(junk_row(type).label), theme::Type::title, theme::text, this, theme::Weight::strong);
  QLabel* words = paragraph(context.text(look_of(type).about_text), theme::Type::detail,
                            theme::readable(theme::secondary, theme::panel_ground()), text_width, this);
  for (QLabel* label : {title, words}) {
    align_at_beginning(label, Qt::AlignTop);
    layout->addWidget(label);
  }
  setAccessibleName(title->text());
  setAccessibleDescription(words->text());
  layout->addSpacing(theme::grid);
  if (const ShowRow* row = show_row(type)) {
    show_button = new PushButton(context.text(row->text), ButtonKind::plain, this);
    connect(show_button, &QAbstractButton::clicked, this, &CategoryAbout::show_category);
    layout->addWidget(show_button);
  }
  layout->addStretch();
  if (type == "downloads") observe(show_downloads, [this] { show_category(); });
}

void CategoryAbout::show_category() {
  if (type_ == "large-files") return post(notifications::show_large_files);
  if (type_ == "browsers") return select_browsers();
  reveal_folder();
}

/// Whether these exist is asked in the background: nothing on the main thread waits for a disk.
void CategoryAbout::reveal_folder() {
  const ShowRow& row = *show_row(type_);
  Cleaner& cleaner = context_.sharedCleaner();
  const Url folder = cleaner.*row.folder;
  const auto& item = cleaner.*junk_row(type_).item;
  std::vector<Url> tried;
  if (row.tries_view_file) tried.push_back(folder.appending(".DS_Store"));
  if (item && !item->files.empty()) tried.push_back(item->files.front());
  tried.push_back(folder);
  auto found = std::make_shared<Url>();
  const auto reveal = while_here([this, found] {
    if (!found->empty()) context_.workspace.reveal({found.get(), 1});
  });
  context_.io_queue.async([tried, found, reveal, &platform = context_.platform] {
    const auto first = std::ranges::find_if(tried, [&](const Url& url) { return platform.files.exists(url); });
    if (first != tried.end()) *found = *first;
    platform.main_queue.async(reveal);
  });
}

void CategoryAbout::select_browsers() {
  context_.appDelegate.modalOrigin = show_button->mapToGlobal(QPoint(0, 0));
  const QPoint origin = window()->mapFromGlobal(context_.appDelegate.modalOrigin);
  Popover::present(ScreenCatalogue::main().make("SelectBrowsers", context_), window(),
                   QRect(origin, show_button->size()), Popover::Place::below);
}

}  // namespace tarnby
