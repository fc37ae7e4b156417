#include "app/cleaned/left_panel.h"

#include <QVBoxLayout>

#include "app/layouts.h"
#include "app/left_list.h"
#include "ui/push_button.h"

namespace tarnby {

namespace {

constexpr QSize list_size(560, 260);

}  // namespace

LeftPanel::LeftPanel(AppContext& context) : Screen(context) {
  setWindowTitle(context.text("These are still there"));
  QVBoxLayout* layout = wide_sheet_column(this);
  auto* list = new LeftList(context, list_size, this);
  const auto& left = context.removal.left;
  list->show_lines(left.size(), [&](std::size_t at) -> LeftList::Line {
    return {left[at].url, context.text(left_reason_text(left[at].reason))};
  });
  layout->addWidget(list);
  auto* close = new PushButton(context.text("Close"), ButtonKind::accent, this);
  connect(close, &QAbstractButton::clicked, this, &Screen::dismissed);
  layout->addWidget(close, 0, Qt::AlignHCenter);
  close->setFocus();
}

}  // namespace tarnby
