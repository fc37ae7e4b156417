#include "app/cleaned/left_panel.h"

#include <QListWidget>
#include <QVBoxLayout>

#include "engine/entry_text.h"
#include "ui/push_button.h"
#include "ui/scroller.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

constexpr QSize list_size(560, 260);
/// More than anybody reads; the rest is counted.
constexpr std::size_t most_shown = 1000;

}  // namespace

LeftPanel::LeftPanel(AppContext& context) : Screen(context) {
  setWindowTitle(context.text("These are still there"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(3 * theme::grid, 3 * theme::grid, 3 * theme::grid, 3 * theme::grid);
  layout->setSpacing(theme::grid);
  layout->addWidget(text_label(windowTitle(), theme::Type::heading, theme::text, this, theme::Weight::strong));

  auto* list = new QListWidget(this);
  list->setAccessibleName(windowTitle());
  use_scrollers(list);
  list->setFixedSize(list_size);
  list->setFont(theme::font(theme::Type::detail));
  list->setTextElideMode(Qt::ElideMiddle);
  const auto& left = context.removal.left;
  const Url& home = context.sharedCleaner().url_home;
  for (std::size_t at = 0; at < std::min(left.size(), most_shown); ++at) {
    const QString reason = context.text(left[at].reason.c_str());
    auto* item = new QListWidgetItem(
        context.text("%@: %@", {path_in_words(QString::fromStdString(short_path(left[at].url, home))), reason}), list);
    item->setToolTip(QString::fromStdString(left[at].url.path()));
  }
  if (left.size() > most_shown) {
    const auto more = static_cast<std::int64_t>(left.size() - most_shown);
    list->addItem(context.plural(more, "and one more", "and %@ more"));
  }
  layout->addWidget(list);
  auto* close = new PushButton(context.text("Close"), ButtonKind::accent, this);
  connect(close, &QAbstractButton::clicked, this, &Screen::dismissed);
  layout->addWidget(close, 0, Qt::AlignHCenter);
  close->setFocus();
}

}  // namespace tarnby
