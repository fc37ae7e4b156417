#include "app/parts/outline_rows.h"

#include <QApplication>
#include <QFontMetrics>
#include <QPainter>
#include <QStyle>
#include <algorithm>
#include <cmath>

#include "app/icons/icons.h"
#include "app/parts/outline_model.h"
#include "ui/button_look.h"
#include "ui/check_button.h"
#include "ui/figures.h"
#include "ui/info_button.h"
#include "ui/paths.h"
#include "ui/theme.h"

namespace tarnby {

namespace {

constexpr int edge = 12;
constexpr int gap = 8;
constexpr int disclosure_width = 20;
constexpr int pointer_side = 8;
constexpr int tag_side = 10;
constexpr int icon_side = 20;
constexpr int info_side = 18;
constexpr int entry_indent = 64;
constexpr int usual_header_height = 30;

int scaled(int pixels) {
  return static_cast<int>(std::lround(pixels * std::max(1.0, theme::text_scale())));
}

QFont label_font(bool group) {
  return group ? theme::font(theme::Type::body, theme::Weight::strong) : theme::font(theme::Type::detail);
}

QFont size_font(bool group) {
  return theme::font(group ? theme::Type::body : theme::Type::detail);
}

QFont header_font() {
  QFont font = theme::font(theme::Type::tiny);
  font.setCapitalization(QFont::AllUppercase);
  font.setLetterSpacing(QFont::AbsoluteSpacing, 0.6);
  return font;
}

bool has_header(const QModelIndex& index) {
  return OutlineModel::is_group(index) && !index.data(OutlineModel::header_role).toString().isEmpty();
}

/// Takes `width` from the left of what is left of a line.
QRect take(QRect& rest, int width, int height) {
  const QRect taken(rest.left(), rest.top() + (rest.height() - height) / 2, std::max(0, width), height);
  rest.setLeft(std::min(rest.right() + 1, taken.right() + 1 + gap));
  return taken;
}

}  // namespace

int OutlineRow::height_of(const QModelIndex& index) {
  if (!OutlineModel::is_group(index)) return scaled(theme::file_row_height);
  return scaled(theme::row_height) + (has_header(index) ? scaled(usual_header_height) : 0);
}

OutlineRow::OutlineRow(const QModelIndex& index, const QRect& rect, Qt::LayoutDirection direction) : line(rect) {
  const bool group = OutlineModel::is_group(index);
  if (has_header(index)) {
    header = QRect(rect.left() + edge + gap, rect.top(), rect.width() - 2 * edge, scaled(usual_header_height));
    line.setTop(header.bottom() + 1);
  }
  QRect rest = line.adjusted(edge, 0, -2 * edge, 0);
  const auto check_side = static_cast<int>(check_box_side());
  const QFontMetrics sizes(size_font(group));
  const int size_width =
      static_cast<int>(std::ceil(figures_width(size_font(group), index.data(OutlineModel::size_text_role).toString())));
  size = QRect(rest.right() + 1 - size_width, line.top(), size_width, line.height());
  rest.setRight(size.left() - 1 - gap);
  if (group) {
    disclosure = take(rest, disclosure_width, disclosure_width);
  } else {
    rest.setLeft(rest.left() + entry_indent - edge);
  }
  const bool ticks = index.data(Qt::CheckStateRole).isValid();
  const bool tagged = index.data(OutlineModel::color_role).isValid();
  // Without a box the rest stays where it is in the rows that have one.
  const QRect box = ticks || tagged ? take(rest, check_side, check_side) : QRect();
  if (ticks) check = box;
  if (tagged) tag = take(rest, tag_side, tag_side);
  if (index.data(OutlineModel::icon_role).isValid()) icon = take(rest, scaled(icon_side), scaled(icon_side));
  const int wanted = QFontMetrics(label_font(group)).horizontalAdvance(index.data().toString()) + 2;
  const bool tells = index.data(OutlineModel::about_role).toBool();
  // A long name leaves room for what tells it from another one.
  const bool noted = !group && !index.data(OutlineModel::note_role).toString().isEmpty();
  const int beside = tells ? info_side + gap : noted ? rest.width() / 3 : 0;
  label = take(rest, std::min(wanted, rest.width() - beside), line.height());
  if (tells) info = take(rest, info_side, info_side);
  note = rest;
  for (QRect* part : {&header, &disclosure, &check, &tag, &icon, &label, &info, &note, &size}) {
    *part = QStyle::visualRect(direction, rect, *part);
  }
}

OutlineRow::Part OutlineRow::part_at(const QPoint& point) const {
  // A finger or an unsteady hand needs more room than what is drawn.
  constexpr int near = 6;
  const auto hit = [&](const QRect& part) {
    return !part.isEmpty() && part.adjusted(-near, -near, near, near).contains(point);
  };
  if (hit(check)) return Part::check;
  if (hit(disclosure)) return Part::disclosure;
  return hit(info) ? Part::info : Part::none;
}

QSize OutlineRows::sizeHint(const QStyleOptionViewItem& /*option*/, const QModelIndex& index) const {
  return {1, OutlineRow::height_of(index)};
}

void OutlineRows::draw_ground(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index,
                              const OutlineRow& row) const {
  const QPainterPath shape = rounded_path(QRectF(row.line).adjusted(4, 1, -4, -1), theme::grid);
  const bool marked = marked_row.isValid() && index == marked_row;
  if (marked || (option.state & QStyle::State_Selected) != 0) {
    painter.fillPath(shape, theme::card);
  } else if ((option.state & QStyle::State_MouseOver) != 0) {
    painter.fillPath(shape, theme::hover);
  }
  const bool keyboard = (option.state & QStyle::State_KeyboardFocusChange) != 0;
  if ((option.state & QStyle::State_HasFocus) == 0 || !keyboard) return;
  // Wholly within the row: when the keyboard moves on, the view draws this row anew and nothing beside it.
  constexpr int inset = 3;
  draw_focus_ring(painter, rounded_path(QRectF(row.line).adjusted(4 + inset, inset, -4 - inset, -inset), 6));
}

void OutlineRows::draw_icon(QPainter& painter, const QModelIndex& index, const OutlineRow& row) const {
  if (row.icon.isEmpty()) return;
  const double sharpness = painter.deviceTransform().m11();
  const QImage icon = icons_.icon(index.data(OutlineModel::icon_role).value<Image>(), row.icon.width(), sharpness);
  if (!icon.isNull()) painter.drawImage(row.icon, icon);
}

void OutlineRows::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
  const bool group = OutlineModel::is_group(index);
  const OutlineRow row(index, option.rect, option.direction);
  const auto start = Qt::AlignVCenter | (option.direction == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft);
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  const QColor quiet = theme::readable(theme::faint, theme::panel_ground());
  if (!row.header.isEmpty()) {
    painter->setFont(header_font());
    painter->setPen(quiet);
    painter->drawText(row.header.adjusted(0, 0, 0, -4), static_cast<int>(start & ~Qt::AlignVCenter) | Qt::AlignBottom,
                      index.data(OutlineModel::header_role).toString());
  }
  draw_ground(*painter, option, index, row);
  if (group && index.model()->hasChildren(index)) {
    QRectF pointer(0, 0, pointer_side, pointer_side);
    pointer.moveCenter(QRectF(row.disclosure).center());
    const bool open = (option.state & QStyle::State_Open) != 0;
    painter->fillPath(pointer_path(pointer, open                                  ? 90
                                            : option.direction == Qt::RightToLeft ? 180
                                                                                  : 0),
                      theme::secondary);
  }
  if (!row.check.isEmpty()) {
    draw_check_box(*painter, row.check, index.data(Qt::CheckStateRole).value<Qt::CheckState>());
  }
  if (!row.tag.isEmpty()) {
    painter->fillPath(rounded_path(row.tag, 3), index.data(OutlineModel::color_role).value<QColor>());
  }
  draw_icon(*painter, index, row);
  if (!row.info.isEmpty()) draw_info_mark(*painter, QRectF(row.info).adjusted(1, 1, -1, -1), theme::secondary);
  const auto text = [&](const QRect& place, const QFont& font, const QColor& color, const QString& words,
                        Qt::TextElideMode elide) {
    painter->setFont(font);
    painter->setPen(color);
    painter->drawText(place, static_cast<int>(start), QFontMetrics(font).elidedText(words, elide, place.width()));
  };
  text(row.label, label_font(group), theme::text, index.data().toString(), Qt::ElideMiddle);
  const QString note = index.data(OutlineModel::note_role).toString();
  const QFont notes = theme::font(theme::Type::note);
  const bool alarm = index.data(OutlineModel::alarm_role).toBool();
  // A place is understood from its beginning, and a problem is better told in part than not at all; what else is said
  // of a group is said whole.
  const int least = group && !alarm ? QFontMetrics(notes).horizontalAdvance(note) : 3 * theme::grid;
  if (!note.isEmpty() && row.note.width() >= least) {
    const QColor color = alarm ? theme::readable(theme::amber, theme::panel_ground()) : quiet;
    text(row.note, notes, color, note, alarm ? Qt::ElideMiddle : Qt::ElideRight);
  }
  const QFont sizes = size_font(group);
  const QFontMetricsF metrics(sizes);
  painter->setPen(theme::text);
  const double baseline = row.size.top() + (row.size.height() + metrics.ascent() - metrics.descent()) / 2;
  draw_figures(*painter, sizes, {static_cast<double>(row.size.left()), baseline},
               index.data(OutlineModel::size_text_role).toString());
  painter->restore();
}

}  // namespace tarnby
