#include "app/left_list.h"

#include <algorithm>

#include "engine/entry_text.h"
#include "ui/scroller.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

/// More than anybody reads.
constexpr std::size_t most_shown = 1000;

}  // namespace

LeftList::LeftList(AppContext& context, const QSize& size, QWidget* parent) : QListWidget(parent), context_(context) {
  setAccessibleName(parent->windowTitle());
  use_scrollers(this);
  setFixedSize(size);
  setFont(theme::font(theme::Type::detail));
  setTextElideMode(Qt::ElideMiddle);
}

void LeftList::show_lines(std::size_t count, const std::function<Line(std::size_t)>& line) {
  const Url& home = context_.sharedCleaner().url_home;
  for (std::size_t at = 0; at < std::min(count, most_shown); ++at) {
    const Line shown = line(at);
    const QString path = path_in_words(QString::fromStdString(short_path(shown.url, home)));
    auto* item =
        new QListWidgetItem(shown.reason.isEmpty() ? path : context_.text("%@: %@", {path, shown.reason}), this);
    item->setToolTip(QString::fromStdString(shown.url.path()));
  }
  if (count <= most_shown) return;
  addItem(context_.plural(static_cast<std::int64_t>(count - most_shown), "and one more", "and %@ more"));
}

}  // namespace tarnby
