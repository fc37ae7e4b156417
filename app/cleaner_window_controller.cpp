#include "app/cleaner_window_controller.h"

#include <QMouseEvent>
#include <QWindow>

#include "ui/theme.h"

namespace tarnby {

namespace {

constexpr QSize usual_size(960, 640);
constexpr QSize least_size(820, 560);

}  // namespace

CleanerWindowController::CleanerWindowController(AppContext& context) {
  setWindowTitle(context.text("Tarnby cleaner"));
  resize(usual_size);
  setMinimumSize(least_size);
  setMouseTracking(true);
  QPalette colors = palette();
  colors.setColor(QPalette::Window, theme::background);
  setPalette(colors);
  content_ = new ViewController(context, this);
  setCentralWidget(content_);
}

/// Only what no control took arrives here.
void CleanerWindowController::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && windowHandle() != nullptr) windowHandle()->startSystemMove();
}

}  // namespace tarnby
