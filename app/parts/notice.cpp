#include "app/parts/notice.h"

#include <QVBoxLayout>

#include "app/parts/layouts.h"
#include "app/parts/overlay.h"
#include "ui/push_button.h"
#include "ui/text_label.h"

namespace tarnby {

Notice::Notice(AppContext& context, const QString& title, const QString& words) : Screen(context) {
  constexpr int words_width = 400;
  setWindowTitle(title);
  setAccessibleDescription(words);
  QVBoxLayout* layout = sheet_column(this);
  layout->addWidget(
      paragraph(words, theme::Type::body, theme::readable(theme::secondary, theme::sheet), words_width, this));
  layout->addSpacing(2 * theme::grid);
  auto* close = new PushButton(context.text("Close"), ButtonKind::accent, this);
  connect(close, &QAbstractButton::clicked, this, &Screen::dismissed);
  layout->addWidget(close, 0, Qt::AlignHCenter);
  close->setFocus();
}

void Notice::present(AppContext& context, const QString& title, const QString& words, QWidget* window) {
  if (window != nullptr) Sheet::present(std::make_unique<Notice>(context, title, words), window);
}

}  // namespace tarnby
