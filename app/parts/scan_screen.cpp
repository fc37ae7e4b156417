#include "app/parts/scan_screen.h"

#include <QBoxLayout>
#include <QKeyEvent>

#include "app/parts/notifications.h"
#include "ui/theme.h"

namespace tarnby {

ScanScreen::ScanScreen(AppContext& context) : Screen(context) {
  stop_button = new PushButton(context.text("Stop"), ButtonKind::shaded, this);
  stop_button->setToolTip(QKeySequence(Qt::Key_Escape).toString(QKeySequence::NativeText));
  connect(stop_button, &QAbstractButton::clicked, this, &ScanScreen::stop);
}

void ScanScreen::add_stop_button(QBoxLayout* layout) {
  layout->addSpacing(3 * theme::grid);
  layout->addWidget(stop_button, 0, Qt::AlignHCenter);
  stop_button->setFocus();
}

void ScanScreen::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) return stop();
  Screen::keyPressEvent(event);
}

void ScanScreen::stop() {
  // The first takes this screen away; the centre outlives it.
  NotificationCenter& center = context_.notifications();
  center.post(notifications::scan_end_anim_complete);
  center.post(notifications::home_view_controller);
}

void ScanScreen::will_retire() {
  if (scanning()) context_.give_up_looking();
}

}  // namespace tarnby
