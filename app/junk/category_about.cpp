#include "app/junk/category_about.h"

#include <QVBoxLayout>
#include <algorithm>

#include "app/parts/layouts.h"
#include "app/parts/overlay.h"
#include "app/parts/screen_catalogue.h"
#include "engine/categories.h"
#include "engine/cleaner.h"
#include "platform/platform.h"
#include "platform/workspace.h"
#include "ui/color_tag.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

constexpr int tag_side = 28;
constexpr int text_width = 340;

}  // namespace

CategoryAbout::CategoryAbout(AppContext& context, std::string_view type) : Screen(context), look_(look_of(type)) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(page_edge, page_edge, page_edge, page_edge);
  layout->setSpacing(theme::grid);
  layout->addWidget(new ColorTag(look_.color, this, tag_side));
  layout->addSpacing(theme::grid);
  QLabel* title = text_label(context.text(category_row(look_.type)->label), theme::Type::title, theme::text, this,
                             theme::Weight::strong);
  QLabel* words = paragraph(context.text(look_.about.text), theme::Type::detail,
                            theme::readable(theme::secondary, theme::panel_ground()), text_width, this);
  for (QLabel* label : {title, words}) {
    align_at_beginning(label, Qt::AlignTop);
    layout->addWidget(label);
  }
  setAccessibleName(title->text());
  setAccessibleDescription(words->text());
  layout->addSpacing(theme::grid);
  const AboutButton& button = look_.about.button;
  if (button.text != nullptr) {
    show_button = new PushButton(context.text(button.text), ButtonKind::plain, this);
    connect(show_button, &QAbstractButton::clicked, this, &CategoryAbout::show_category);
    layout->addWidget(show_button);
  }
  layout->addStretch();
  if (button.pressed_by != nullptr) observe(button.pressed_by, [this] { show_category(); });
}

void CategoryAbout::show_category() {
  const AboutButton& button = look_.about.button;
  if (button.notification != nullptr) return post(button.notification);
  if (button.popover != nullptr) return open_popover();
  reveal_folder();
}

/// Whether these exist is asked in the background: nothing on the main thread waits for a disk.
void CategoryAbout::reveal_folder() {
  const AboutButton& button = look_.about.button;
  Cleaner& cleaner = context_.sharedCleaner();
  const Url folder = cleaner.*button.folder;
  const auto& item = cleaner.*category_row(look_.type)->item;
  std::vector<Url> tried;
  if (button.tries_view_file) tried.push_back(folder.appending(".DS_Store"));
  if (item && !item->files.empty()) tried.push_back(item->files.front());
  tried.push_back(folder);
  look_up(
      context_.io_queue,
      [tried, &files = context_.files()] {
        const auto first = std::ranges::find_if(tried, [&](const Url& url) { return files.exists(url); });
        return first == tried.end() ? Url() : *first;
      },
      [this](const Url& found) {
        if (!found.empty()) context_.workspace.reveal({&found, 1});
      });
}

void CategoryAbout::open_popover() {
  context_.appDelegate.modalOrigin = show_button->mapToGlobal(QPoint(0, 0));
  const QPoint origin = window()->mapFromGlobal(context_.appDelegate.modalOrigin);
  Popover::present(ScreenCatalogue::main().make(look_.about.button.popover, context_), window(),
                   QRect(origin, show_button->size()), Popover::Place::below);
}

}  // namespace tarnby
