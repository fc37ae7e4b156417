#include "app/scheduler/preferences_view_controller.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "app/parts/layouts.h"
#include "app/scheduler/scheduler.h"
#include "platform/login_items.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

constexpr int words_width = 320;

}  // namespace

PreferencesViewController::PreferencesViewController(AppContext& context)
    : Screen(context), app_settings(context.settings()) {
  setWindowTitle(context.text("Preferences"));
  QVBoxLayout* layout = sheet_column(this);
  layout->setSpacing(2 * theme::grid);

  ask_button =
      add_switch(context.text("Ask before removing"), context.text("Shows how much is removed and what, every time."),
                 !app_settings.boolean("SkipWarning"));
  connect(ask_button, &QAbstractButton::clicked, this, &PreferencesViewController::ask_before_removing);
  if (context.login_items().is_installed(scheduler_identifier)) {
    scheduler_button = add_switch(context.text("Scheduler"),
                                  context.text("Starts when you log in and reminds you when it is time to clean."),
                                  app_settings.boolean("Scheduler"));
    connect(scheduler_button, &QAbstractButton::clicked, this, &PreferencesViewController::enable_scheduler);
  }

  close_button = new PushButton(context.text("Close"), ButtonKind::plain, this);
  connect(close_button, &QAbstractButton::clicked, this, &Screen::dismissed);
  layout->addWidget(close_button, 0, Qt::AlignHCenter);
  ask_button->setFocus();
}

/// A row with a name, what it does, and a switch.
SwitchButton* PreferencesViewController::add_switch(const QString& name, const QString& told, bool on) {
  auto* row = new QHBoxLayout;
  row->setSpacing(3 * theme::grid);
  auto* words = new QVBoxLayout;
  words->setSpacing(theme::grid / 2);
  QLabel* title = text_label(name, theme::Type::body, theme::text, this, theme::Weight::strong);
  QLabel* explanation =
      paragraph(told, theme::Type::detail, theme::readable(theme::secondary, theme::sheet), words_width, this);
  for (QLabel* label : {title, explanation}) {
    label->setAlignment(Qt::AlignLeading | Qt::AlignTop);
    words->addWidget(label);
  }
  row->addLayout(words, 1);
  auto* button = new SwitchButton(context_.clock, this);
  button->setAccessibleName(name);
  button->setAccessibleDescription(told);
  if (on) button->setChecked(true);
  row->addWidget(button, 0, Qt::AlignVCenter);
  static_cast<QVBoxLayout*>(layout())->addLayout(row);
  return button;
}

void PreferencesViewController::ask_before_removing() {
  app_settings.set_boolean("SkipWarning", !ask_button->isChecked());
  context_.flush_settings();
}

void PreferencesViewController::enable_scheduler() {
  tarnby::enable_scheduler(context_, scheduler_button->isChecked(), window());
}

}  // namespace tarnby
