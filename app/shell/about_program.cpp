#include "app/shell/about_program.h"

#include <QCoreApplication>
#include <QVBoxLayout>

#include "ui/cleaned_mark.h"
#include "ui/push_button.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

constexpr int words_width = 340;

}  // namespace

AboutProgram::AboutProgram(AppContext& context) : Screen(context) {
  setWindowTitle(context.text("About Tarnby cleaner"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(4 * theme::grid, 4 * theme::grid, 4 * theme::grid, 3 * theme::grid);
  layout->setSpacing(theme::grid);
  auto* mark = new CleanedMark(context.clock, this);
  layout->addWidget(mark, 0, Qt::AlignHCenter);
  layout->addWidget(
      text_label(QStringLiteral("Tarnby cleaner"), theme::Type::heading, theme::text, this, theme::Weight::strong));
  const QColor quiet = theme::readable(theme::secondary, theme::sheet);
  layout->addWidget(text_label(context.text("Version %@", {QCoreApplication::applicationVersion()}),
                               theme::Type::detail, quiet, this));
  layout->addWidget(paragraph(context.text("Finds what you can remove without harm to your work. It sees only the "
                                           "folders you have opened for it and sends nothing anywhere."),
                              theme::Type::body, quiet, words_width, this));
  layout->addSpacing(theme::grid);
  auto* close = new PushButton(context.text("Close"), ButtonKind::accent, this);
  connect(close, &QAbstractButton::clicked, this, &Screen::dismissed);
  layout->addWidget(close, 0, Qt::AlignHCenter);
  close->setFocus();
}

}  // namespace tarnby
