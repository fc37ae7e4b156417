#include "app/junk/download_helper.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QVBoxLayout>

#include "app/links.h"
#include "engine/entry_text.h"
#include "ui/scroller.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

constexpr QSize list_size(520, 180);
constexpr std::size_t most_shown = 1000;

}  // namespace

DownloadHelper::DownloadHelper(AppContext& context, HandOff& hand_off) : Screen(context), hand_off_(hand_off) {
  setWindowTitle(context.text("Some files could not be removed"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(3 * theme::grid, 3 * theme::grid, 3 * theme::grid, 3 * theme::grid);
  layout->setSpacing(theme::grid);
  layout->addWidget(text_label(windowTitle(), theme::Type::heading, theme::text, this, theme::Weight::strong));
  layout->addWidget(paragraph(context.text("They belong to the system or to somebody else. The helper can remove them "
                                           "with your permission."),
                              theme::Type::body, theme::readable(theme::secondary, theme::sheet), list_size.width(),
                              this));
  auto* list = new QListWidget(this);
  list->setAccessibleName(windowTitle());
  use_scrollers(list);
  list->setFixedSize(list_size);
  list->setTextElideMode(Qt::ElideMiddle);
  const Cleaner& cleaner = context.sharedCleaner();
  for (std::size_t at = 0; at < std::min(cleaner.remainder_urls.size(), most_shown); ++at) {
    const std::string path = short_path(cleaner.remainder_urls[at], cleaner.url_home);
    list->addItem(path_in_words(QString::fromStdString(path)));
  }
  layout->addWidget(list);
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(theme::grid);
  cancel_button = new PushButton(context.text("Go on"), ButtonKind::plain, this);
  show_button = new PushButton(context.text("Show in file viewer"), ButtonKind::plain, this);
  download_button = new PushButton(context.text("Get the helper"), ButtonKind::accent, this);
  buttons->addStretch();
  for (PushButton* button : {cancel_button, show_button, download_button}) buttons->addWidget(button);
  buttons->addStretch();
  layout->addLayout(buttons);
  connect(cancel_button, &QAbstractButton::clicked, this, &DownloadHelper::cancel);
  connect(show_button, &QAbstractButton::clicked, this, &DownloadHelper::show_in_finder);
  connect(download_button, &QAbstractButton::clicked, this, &DownloadHelper::download);
  cancel_button->setFocus();
}

void DownloadHelper::cancel() {
  Q_EMIT dismissed();
  hand_off_.cancel();
}

void DownloadHelper::show_in_finder() {
  context_.workspace.reveal(context_.sharedCleaner().remainder_urls);
}

void DownloadHelper::download() {
  context_.workspace.open_link(links::helper_page);
}

}  // namespace tarnby
