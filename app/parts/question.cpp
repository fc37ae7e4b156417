#include "app/parts/question.h"

#include <QVBoxLayout>

#include "app/parts/layouts.h"
#include "ui/text_label.h"

namespace tarnby {

Question ask(Screen& sheet, const QString& words, const QString& refuse, const QString& accept) {
  constexpr int words_width = 360;
  Question question = {};
  QVBoxLayout* layout = sheet_column(&sheet);
  question.words =
      paragraph(words, theme::Type::body, theme::readable(theme::secondary, theme::sheet), words_width, &sheet);
  layout->addWidget(question.words);
  layout->addSpacing(2 * theme::grid);
  question.refuse = new PushButton(refuse, ButtonKind::plain, &sheet);
  question.accept = new PushButton(accept, ButtonKind::accent, &sheet);
  layout->addLayout(centred_row({question.refuse, question.accept}));
  QObject::connect(question.refuse, &QAbstractButton::clicked, &sheet, &Screen::dismissed);
  question.accept->setFocus();
  sheet.setAccessibleDescription(words);
  return question;
}

}  // namespace tarnby
