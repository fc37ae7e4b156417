#include "app/scheduler/preferences_view_controller.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "app/layouts.h"
#include "app/scheduler/scheduler.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

constexpr int words_width = 320;

}  // namespace

PreferencesViewController::PreferencesViewController(AppContext& context)
    : Screen(context), app_settings(context.platform.app_settings) {
  setWindowTitle(context.text("Preferences"));
  QVBoxLayout* layout = sheet_column(this);
  layout->setSpacing(2 * theme::grid);

  auto* row = new QHBoxLayout;
  row->setSpacing(3 * theme::grid);
  auto* words = new QVBoxLayout;
  words->setSpacing(4);
  QLabel* name = text_label(context.text("Scheduler"), theme::Type::body, theme::text, this, theme::Weight::strong);
  QLabel* told = paragraph(context.text("Starts when you log in and reminds you when it is time to clean."),
                           theme::Type::detail, theme::readable(theme::secondary, theme::sheet), words_width, this);
  for (QLabel* label : {name, told}) {
    label->setAlignment(Qt::AlignLeading | Qt::AlignTop);
    words->addWidget(label);
  }
  row->addLayout(words, 1);
  scheduler_button = new SwitchButton(context.clock, this);
  scheduler_button->setAccessibleName(name->text());
  scheduler_button->setAccessibleDescription(told->text());
  if (app_settings.boolean("Scheduler")) scheduler_button->setChecked(true);
  connect(scheduler_button, &QAbstractButton::clicked, this, &PreferencesViewController::enable_scheduler);
  row->addWidget(scheduler_button, 0, Qt::AlignVCenter);
  layout->addLayout(row);

  close_button = new PushButton(context.text("Close"), ButtonKind::plain, this);
  connect(close_button, &QAbstractButton::clicked, this, &Screen::dismissed);
  layout->addWidget(close_button, 0, Qt::AlignHCenter);
  scheduler_button->setFocus();
}

void PreferencesViewController::enable_scheduler() {
  tarnby::enable_scheduler(context_, scheduler_button->isChecked(), window());
}

}  // namespace tarnby
