#include "app/smart/warning_cleanup_view_controller.h"

#include <QVBoxLayout>

#include "app/layouts.h"
#include "ui/text_label.h"

namespace tarnby {

WarningCleanupViewController::WarningCleanupViewController(AppContext& context) : Screen(context) {
  setWindowTitle(context.text("Remove for good?"));
  QVBoxLayout* layout = sheet_column(this);
  const QColor quiet = theme::readable(theme::secondary, theme::sheet);
  amount_ = text_label({}, theme::Type::title, theme::text, this, theme::Weight::strong);
  layout->addWidget(amount_);
  layout->addWidget(paragraph(context.text("What you have ticked is removed at once. It does not go to the Trash and "
                                           "cannot be brought back."),
                              theme::Type::body, quiet, 360, this));
  layout->addSpacing(theme::grid);
  dont_show_button = new CheckButton(this, context.text("Do not ask again"));
  connect(dont_show_button, &QAbstractButton::clicked, this, &WarningCleanupViewController::dont_show);
  layout->addWidget(dont_show_button, 0, Qt::AlignHCenter);
  layout->addSpacing(theme::grid);

  cancel_button = new PushButton(context.text("Cancel"), ButtonKind::plain, this);
  cleanup_button = new PushButton(context.text("Remove for good"), ButtonKind::destructive, this);
  layout->addLayout(centred_row({cancel_button, cleanup_button}));
  connect(cancel_button, &QAbstractButton::clicked, this, &Screen::dismissed);
  connect(cleanup_button, &QAbstractButton::clicked, this, &WarningCleanupViewController::cleanup);
  cancel_button->setFocus();  // a key pressed too soon removes nothing
}

void WarningCleanupViewController::show_amount(const QString& size, std::size_t entries) {
  amount_->setText(context_.plural(static_cast<std::int64_t>(entries), "%@ in one entry", "%@ in %@ entries", {size}));
  setAccessibleDescription(amount_->text());
}

void WarningCleanupViewController::cleanup() {
  context_.platform.app_settings.set_boolean("CleanupReady", true);
  context_.flush_settings();
  Q_EMIT confirmed();
  Q_EMIT dismissed();
}

void WarningCleanupViewController::dont_show() {
  context_.platform.app_settings.set_boolean("SkipWarning", dont_show_button->isChecked());
  context_.flush_settings();
}

}  // namespace tarnby
