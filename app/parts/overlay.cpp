#include "app/parts/overlay.h"

#include <QKeyEvent>
#include <QPainter>
#include <algorithm>

#include "ui/paths.h"
#include "ui/theme.h"

namespace tarnby {

namespace {

constexpr QColor dimming = QColor(0x1E, 0x1F, 0x26, 120);
constexpr int pointer = 9;  // how far a popover's tip stands out

void draw_card(QPainter& painter, const QPainterPath& shape) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillPath(shape, theme::sheet);
  painter.strokePath(shape, QPen(theme::track, 1));
}

}  // namespace

Overlay::Overlay(std::unique_ptr<Screen> content, QWidget* window) : QWidget(window), content_(content.release()) {
  content_->put_into(this);
  setFocusPolicy(Qt::StrongFocus);
  setAccessibleName(content_->windowTitle().isEmpty() ? content_->accessibleName() : content_->windowTitle());
  setAccessibleDescription(content_->accessibleDescription());
  window->installEventFilter(this);
  connect(content_, &Screen::dismissed, this, &Overlay::close_overlay);
  setVisible(false);
}

Overlay::~Overlay() {
  content_->retire();
}

void Overlay::open() {
  focus_before_ = window()->focusWidget();
  setGeometry(parentWidget()->rect());
  content_->adjustSize();
  place_content();
  content_->view_will_appear();
  show();
  raise();
  // However it was opened: what Enter would press has to be seen.
  if (!content_->take_keyboard(Qt::ShortcutFocusReason)) setFocus();
  content_->view_did_appear();
}

void Overlay::close_overlay() {
  if (!isVisible()) return;
  const QWidget* keyboard = window()->focusWidget();
  const bool held_keyboard = keyboard == nullptr || holds(keyboard);
  // What was opened above it gives the keyboard back to what is below it.
  for (auto* above : parentWidget()->findChildren<Overlay*>(QString(), Qt::FindDirectChildrenOnly)) {
    if (holds(above->focus_before_)) above->focus_before_ = focus_before_;
  }
  hide();
  content_->retire();
  if (focus_before_ && held_keyboard) focus_before_->setFocus(Qt::PopupFocusReason);
  deleteLater();  // one of its own buttons may be in the middle of its click
}

bool Overlay::holds(const QWidget* widget) const {
  return widget == this || isAncestorOf(widget);
}

bool Overlay::eventFilter(QObject* watched, QEvent* event) {
  if (watched == parent() && event->type() == QEvent::Resize) {
    setGeometry(parentWidget()->rect());
    content_->adjustSize();  // some are as large as the window allows
    place_content();
  }
  return QWidget::eventFilter(watched, event);
}

void Overlay::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) content_->escaped();
  event->accept();  // keys do not reach what lies below
}

void Overlay::mousePressEvent(QMouseEvent* event) {
  if (!content_->geometry().contains(event->position().toPoint())) pressed_beside();
  event->accept();
}

/// Round and round within the content.
bool Overlay::focusNextPrevChild(bool next) {
  QList<QWidget*> stops;
  for (QWidget* widget : content_->findChildren<QWidget*>()) {
    if ((widget->focusPolicy() & Qt::TabFocus) != 0 && widget->isVisible() && widget->isEnabled()) stops << widget;
  }
  if (stops.isEmpty()) return true;
  const auto at = stops.indexOf(window()->focusWidget());
  const auto to = at < 0 ? (next ? 0 : stops.size() - 1) : (at + (next ? 1 : stops.size() - 1)) % stops.size();
  stops[to]->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
  return true;
}

Sheet* Sheet::present(std::unique_ptr<Screen> content, QWidget* window) {
  auto* sheet = new Sheet(std::move(content), window);
  sheet->open();
  return sheet;
}

void Sheet::place_content() {
  const QSize size = content().size();
  content().move((width() - size.width()) / 2, std::max(0, (height() - size.height()) / 2));
}

void Sheet::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), dimming);
  draw_card(painter, rounded_path(QRectF(content().geometry()).adjusted(0.5, 0.5, -0.5, -0.5), theme::panel_radius));
}

Popover* Popover::present(std::unique_ptr<Screen> content, QWidget* window, const QRect& anchor, Place place) {
  auto* popover = new Popover(std::move(content), window);
  popover->anchor_ = anchor;
  popover->place_ = place;
  popover->open();
  return popover;
}

void Popover::place_content() {
  const QSize size = content().size();
  const QPoint wanted = place_ == Place::beside ? place_beside(size) : place_below(size);
  content().move(std::clamp(wanted.x(), 0, std::max(0, width() - size.width())),
                 std::clamp(wanted.y(), 0, std::max(0, height() - size.height())));
}

/// Behind what it points to in reading direction, or before it when there is no room.
QPoint Popover::place_beside(QSize size) const {
  const int on_the_left = anchor_.left() - pointer - size.width();
  const int on_the_right = anchor_.right() + 1 + pointer;
  const bool fits_right = on_the_right + size.width() <= width();
  const bool goes_left = isRightToLeft() ? on_the_left >= 0 : !fits_right;
  return {goes_left ? on_the_left : on_the_right, anchor_.center().y() - 2 * theme::panel_radius};
}

/// From where that begins in reading direction; above it when there is no room.
QPoint Popover::place_below(QSize size) const {
  const int under = anchor_.bottom() + 1 + pointer;
  const int above = anchor_.top() - pointer - size.height();
  return {isRightToLeft() ? anchor_.right() + 1 - size.width() : anchor_.left(),
          under + size.height() <= height() ? under : above};
}

void Popover::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QRectF card = QRectF(content().geometry()).adjusted(0.5, 0.5, -0.5, -0.5);
  const bool below = place_ == Place::below;
  // Along the edge that the tip stands out of, and across it.
  const double first = below ? card.left() : card.top();
  const double last = below ? card.right() : card.bottom();
  const double least = first + theme::panel_radius + pointer;
  const double wanted = (below ? anchor_.center().x() : anchor_.center().y()) + 0.5;
  const double middle = std::clamp<double>(wanted, least, std::max(least, last - theme::panel_radius - pointer));
  const bool at_beginning = below ? content().y() > anchor_.y() : content().x() > anchor_.x();
  const double edge =
      at_beginning ? (below ? card.top() : card.left()) + 1 : (below ? card.bottom() : card.right()) - 1;
  const double tip = at_beginning ? edge - 1 - pointer : edge + 1 + pointer;
  const auto at = [below](double across, double along) {
    return below ? QPointF(along, across) : QPointF(across, along);
  };
  QPainterPath point(at(edge, middle - pointer));
  point.lineTo(at(tip, middle));
  point.lineTo(at(edge, middle + pointer));
  point.closeSubpath();
  draw_card(painter, rounded_path(card, theme::panel_radius).united(point));
}

}  // namespace tarnby
