#include "app/question.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "ui/text_label.h"

namespace tarnby {

Question ask(Screen& sheet, const QString& words, const QString& refuse, const QString& accept) {
  constexpr int words_width = 360;
  Question question = {};
  auto* layout = new QVBoxLayout(&sheet);
  layout->setContentsMargins(4 * theme::grid, 4 * theme::grid, 4 * theme::grid, 3 * theme::grid);
  layout->setSpacing(theme::grid);
  layout->addWidget(text_label(sheet.windowTitle(), theme::Type::heading, theme::text, &sheet, theme::Weight::strong));
  question.words =
      paragraph(words, theme::Type::body, theme::readable(theme::secondary, theme::sheet), words_width, &sheet);
  layout->addWidget(question.words);
  layout->addSpacing(2 * theme::grid);
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(theme::grid);
  question.refuse = new PushButton(refuse, ButtonKind::plain, &sheet);
  question.accept = new PushButton(accept, ButtonKind::accent, &sheet);
  buttons->addStretch();
  buttons->addWidget(question.refuse);
  buttons->addWidget(question.accept);
  buttons->addStretch();
  layout->addLayout(buttons);
  QObject::connect(question.refuse, &QAbstractButton::clicked, &sheet, &Screen::dismissed);
  question.accept->setFocus();
  sheet.setAccessibleDescription(words);
  return question;
}

}  // namespace tarnby
