#include "app/cleaned/not_removed_panel.h"

#include <QVBoxLayout>

#include "app/parts/layouts.h"
#include "ui/push_button.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

constexpr QSize list_size(640, 312);  // whole rows

}  // namespace

NotRemovedPanel::NotRemovedPanel(AppContext& context) : Screen(context) {
  const RemovalOutcome& outcome = context.removal.outcome;
  const auto count = static_cast<std::int64_t>(outcome.left.size());
  setWindowTitle(context.plural(count, "One entry was left", "%@ entries were left"));
  QVBoxLayout* layout = wide_sheet_column(this);
  layout->addWidget(
      text_label(context.text("%@ still there. Nothing else was touched.", {context.byte_count(outcome.left_bytes)}),
                 theme::Type::body, theme::readable(theme::secondary, theme::sheet), this));
  layout->addSpacing(theme::grid);
  list = new NotRemovedList(context, list_size, this);
  std::vector<NotRemovedList::Line> lines;
  for (const LeftEntry& left : outcome.left) lines.push_back({left.url, context.text(left_reason_text(left.reason))});
  list->show_lines(std::move(lines));
  layout->addWidget(list);
  layout->addSpacing(theme::grid);
  auto* close = new PushButton(context.text("Close"), ButtonKind::accent, this);
  connect(close, &QAbstractButton::clicked, this, &Screen::dismissed);
  layout->addWidget(close, 0, Qt::AlignHCenter);
  close->setFocus();
}

}  // namespace tarnby
