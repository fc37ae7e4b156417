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
constexpr int above_row = 4;  // between a header and the row below it
constexpr int tag_radius = 3;
constexpr int least_note_width = 3 * theme::grid;
constexpr int ground_inset = 4;  // of what a row stands on, from the sides of the view
constexpr int focus_inset = 3;
constexpr int focus_radius = 6;
constexpr double header_spacing = 0.6;  // between letters

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
  font.setLetterSpacing(QFont::AbsoluteSpacing, header_spacing);
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

QColor quiet_color() {
  return theme::readable(theme::faint, theme::panel_ground());
}

/// The side of a line on which it begins.
Qt::Alignment start_of(Qt::LayoutDirection direction) {
  return direction == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft;
}

void draw_header(QPainter& painter, Qt::LayoutDirection direction, const QModelIndex& index, const OutlineRow& row) {
  if (row.header.isEmpty()) return;
  painter.setFont(header_font());
  painter.setPen(quiet_color());
  painter.drawText(row.header.adjusted(0, 0, 0, -above_row), static_cast<int>(start_of(direction) | Qt::AlignBottom),
                   index.data(OutlineModel::header_role).toString());
}

/// Points down where the group is open, and else to where the line goes.
void draw_disclosure(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index,
                     const OutlineRow& row) {
  if (!OutlineModel::is_group(index) || !index.model()->hasChildren(index)) return;
  QRectF pointer(0, 0, pointer_side, pointer_side);
  pointer.moveCenter(QRectF(row.disclosure).center());
  const bool open = (option.state & QStyle::State_Open) != 0;
  const int closed_angle = option.direction == Qt::RightToLeft ? 180 : 0;
  painter.fillPath(pointer_path(pointer, open ? 90 : closed_angle), theme::secondary);
}

void draw_check(QPainter& painter, const QModelIndex& index, const OutlineRow& row) {
  if (row.check.isEmpty()) return;
  draw_check_box(painter, row.check, index.data(Qt::CheckStateRole).value<Qt::CheckState>());
}

void draw_tag(QPainter& painter, const QModelIndex& index, const OutlineRow& row) {
  if (row.tag.isEmpty()) return;
  painter.fillPath(rounded_path(row.tag, tag_radius), index.data(OutlineModel::color_role).value<QColor>());
}

void draw_info(QPainter& painter, const OutlineRow& row) {
  if (!row.info.isEmpty()) draw_info_mark(painter, QRectF(row.info).adjusted(1, 1, -1, -1), theme::secondary);
}

/// How a text on the line looks.
struct LineText {
  QFont font;
  QColor color;
  Qt::TextElideMode elide;
  Qt::LayoutDirection direction;
};

void draw_text(QPainter& painter, const QRect& place, const LineText& look, const QString& words) {
  painter.setFont(look.font);
  painter.setPen(look.color);
  painter.drawText(place, static_cast<int>(Qt::AlignVCenter | start_of(look.direction)),
                   QFontMetrics(look.font).elidedText(words, look.elide, place.width()));
}

void draw_label(QPainter& painter, Qt::LayoutDirection direction, const QModelIndex& index, const OutlineRow& row) {
  const QFont font = label_font(OutlineModel::is_group(index));
  draw_text(painter, row.label, {font, theme::text, Qt::ElideMiddle, direction}, index.data().toString());
}

void draw_note(QPainter& painter, Qt::LayoutDirection direction, const QModelIndex& index, const OutlineRow& row) {
  const QString note = index.data(OutlineModel::note_role).toString();
  if (note.isEmpty()) return;
  const QFont font = theme::font(theme::Type::note);
  const bool alarm = index.data(OutlineModel::alarm_role).toBool();
  // A place is understood from its beginning, and a problem is better told in part than not at all; what else is said
  // of a group is said whole.
  const bool whole = OutlineModel::is_group(index) && !alarm;
  if (row.note.width() < (whole ? QFontMetrics(font).horizontalAdvance(note) : least_note_width)) return;
  const QColor color = alarm ? theme::readable(theme::amber, theme::panel_ground()) : quiet_color();
  draw_text(painter, row.note, {font, color, alarm ? Qt::ElideMiddle : Qt::ElideRight, direction}, note);
}

void draw_size(QPainter& painter, const QModelIndex& index, const OutlineRow& row) {
  const QFont font = size_font(OutlineModel::is_group(index));
  const QFontMetricsF metrics(font);
  painter.setPen(theme::text);
  const double baseline = row.size.top() + (row.size.height() + metrics.ascent() - metrics.descent()) / 2;
  draw_figures(painter, font, {static_cast<double>(row.size.left()), baseline},
               index.data(OutlineModel::size_text_role).toString());
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
  const QRect box = ticks || tagged || !group ? take(rest, check_side, check_side) : QRect();
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
  const QPainterPath shape = rounded_path(QRectF(row.line).adjusted(ground_inset, 1, -ground_inset, -1), theme::grid);
  const bool marked = marked_row.isValid() && index == marked_row;
  if (marked || (option.state & QStyle::State_Selected) != 0) {
    painter.fillPath(shape, theme::card);
  } else if ((option.state & QStyle::State_MouseOver) != 0) {
    painter.fillPath(shape, theme::hover);
  }
  const bool keyboard = (option.state & QStyle::State_KeyboardFocusChange) != 0;
  if ((option.state & QStyle::State_HasFocus) == 0 || !keyboard) return;
  // Wholly within the row: when the keyboard moves on, the view draws this row anew and nothing beside it.
  constexpr int side = ground_inset + focus_inset;
  const QRectF ring = QRectF(row.line).adjusted(side, focus_inset, -side, -focus_inset);
  draw_focus_ring(painter, rounded_path(ring, focus_radius));
}

void OutlineRows::draw_icon(QPainter& painter, const QModelIndex& index, const OutlineRow& row) const {
  if (row.icon.isEmpty()) return;
  const double sharpness = painter.deviceTransform().m11();
  const QImage icon = icons_.icon(index.data(OutlineModel::icon_role).value<Image>(), row.icon.width(), sharpness);
  if (!icon.isNull()) painter.drawImage(row.icon, icon);
}

void OutlineRows::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
  const OutlineRow row(index, option.rect, option.direction);
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  draw_header(*painter, option.direction, index, row);
  draw_ground(*painter, option, index, row);
  draw_disclosure(*painter, option, index, row);
  draw_check(*painter, index, row);
  draw_tag(*painter, index, row);
  draw_icon(*painter, index, row);
  draw_info(*painter, row);
  draw_label(*painter, option.direction, index, row);
  draw_note(*painter, option.direction, index, row);
  draw_size(*painter, index, row);
  painter->restore();
}

}  // namespace tarnby
