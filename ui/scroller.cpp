#include "ui/scroller.h"

#include <QAbstractScrollArea>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionSlider>

#include "ui/paths.h"
#include "ui/theme.h"

namespace tarnby {
namespace {

constexpr int thickness = 12;  // of which a slim line in the middle is drawn
constexpr QColor resting = QColor(0xFF, 0xFF, 0xFF, 90);
constexpr QColor grabbed = QColor(0xFF, 0xFF, 0xFF, 150);

}  // namespace

Scroller::Scroller(Qt::Orientation orientation, QWidget* parent) : QScrollBar(orientation, parent) {
  setAttribute(Qt::WA_Hover);
  // A style sheet is what takes the arrows out of where clicks go, whatever style the desktop has; drawing is done
  // below.
  setStyleSheet(
      QStringLiteral("QScrollBar{background:transparent;border:none;margin:0}"
                     "QScrollBar:vertical{width:%1px}QScrollBar:horizontal{height:%1px}"
                     "QScrollBar::handle:vertical{min-height:32px}QScrollBar::handle:horizontal{min-width:32px}"
                     "QScrollBar::add-line,QScrollBar::sub-line{width:0;height:0}")
          .arg(thickness));
}

QSize Scroller::sizeHint() const {
  const int length = QScrollBar::sizeHint().height();
  return orientation() == Qt::Vertical ? QSize(thickness, length) : QSize(length, thickness);
}

QRectF Scroller::handle() const {
  QStyleOptionSlider option;
  initStyleOption(&option);
  return style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
}

void Scroller::paintEvent(QPaintEvent*) {
  if (minimum() == maximum()) return;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const bool wide = underMouse() || isSliderDown();
  const double spare = wide ? 2 : 3.5;
  const QRectF bar =
      orientation() == Qt::Vertical ? handle().adjusted(spare, 2, -spare, -2) : handle().adjusted(2, spare, -2, -spare);
  painter.fillPath(rounded_path(bar, thickness), wide ? grabbed : resting);
}

void use_scrollers(QAbstractScrollArea* area) {
  area->setVerticalScrollBar(new Scroller(Qt::Vertical, area));
  area->setHorizontalScrollBar(new Scroller(Qt::Horizontal, area));
  area->setFrameShape(QFrame::NoFrame);
  area->viewport()->setAutoFillBackground(false);
  QPalette palette = area->palette();
  palette.setColor(QPalette::Base, Qt::transparent);
  palette.setColor(QPalette::Window, Qt::transparent);
  area->setPalette(palette);
}

}  // namespace tarnby
