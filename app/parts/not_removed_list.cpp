#include "app/parts/not_removed_list.h"

#include <QAbstractListModel>
#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QStyledItemDelegate>
#include <algorithm>
#include <cmath>

#include "app/icons/icons.h"
#include "engine/cleaner.h"
#include "engine/entry_text.h"
#include "platform/workspace.h"
#include "ui/paths.h"
#include "ui/scroller.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

constexpr int usual_row_height = 52;
constexpr int edge = 12;
constexpr int icon_side = 24;

enum Role { folder_role = Qt::UserRole, reason_role, image_role };

int scaled(int pixels) {
  return static_cast<int>(std::lround(pixels * std::max(1.0, theme::text_scale())));
}

/// Names may hold line ends.
QString one_line(const std::string& text) {
  return QString::fromStdString(text).replace(u'\n', u' ');
}

}  // namespace

class NotRemovedList::Model : public QAbstractListModel {
 public:
  Model(AppContext& context, QObject* parent) : QAbstractListModel(parent), context_(context) {}

  void set_lines(std::vector<Line> lines) {
    beginResetModel();
    lines_ = std::move(lines);
    endResetModel();
  }
  const Url& url(const QModelIndex& index) const { return lines_[static_cast<std::size_t>(index.row())].url; }

  int rowCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : static_cast<int>(lines_.size());
  }

  QVariant data(const QModelIndex& index, int role) const override {
    if (!index.isValid()) return {};
    const Line& line = lines_[static_cast<std::size_t>(index.row())];
    switch (role) {
      case Qt::DisplayRole:
        return one_line(std::string(line.url.last_path_component()));
      case folder_role:
        return path_in_words(one_line(short_path(line.url.parent(), context_.sharedCleaner().url_home)));
      case reason_role:
        return line.reason;
      case image_role:
        return QVariant::fromValue(Image::icon_of(line.url));
      case Qt::ToolTipRole:
        return path_in_words(one_line(line.url.path()));
      case Qt::AccessibleTextRole: {
        const QString path = path_in_words(one_line(short_path(line.url, context_.sharedCleaner().url_home)));
        return line.reason.isEmpty() ? path : context_.text("%@: %@", {path, line.reason});
      }
      default:
        return {};
    }
  }

 private:
  AppContext& context_;
  std::vector<Line> lines_;
};

/// Two lines a row: the name, and below it the folder, which is shortened in its middle, and the reason, which is not.
class NotRemovedList::Rows : public QStyledItemDelegate {
 public:
  Rows(Icons& icons, const NotRemovedList& list, QObject* parent)
      : QStyledItemDelegate(parent), icons_(icons), list_(list) {}

  QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override {
    return {1, scaled(usual_row_height)};
  }

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const bool handled = index == list_.handled();
    const QPainterPath ground = rounded_path(QRectF(option.rect).adjusted(4, 1, -4, -1), theme::grid);
    if (handled) painter->fillPath(ground, theme::hover);
    QRect rest = option.rect.adjusted(edge, 0, -edge, 0);
    QRect icon(0, 0, scaled(icon_side), scaled(icon_side));
    icon.moveCenter({rest.left() + icon.width() / 2, rest.center().y()});
    rest.setLeft(icon.right() + 1 + edge);
    if (handled) rest.setRight(rest.right() - list_.tools_->width() - theme::grid);
    const auto mirror = [&](const QRect& place) { return QStyle::visualRect(option.direction, option.rect, place); };
    const auto sharpness = painter->deviceTransform().m11();
    const QImage image = icons_.icon(index.data(image_role).value<Image>(), icon.width(), sharpness);
    if (!image.isNull()) painter->drawImage(mirror(icon), image);
    const int middle = rest.center().y();
    draw(*painter, mirror({rest.left(), rest.top() + 4, rest.width(), middle - rest.top() - 3}), Qt::AlignBottom,
         theme::font(theme::Type::detail), theme::text, option.direction, index.data().toString());
    draw_second(*painter, mirror({rest.left(), middle + 2, rest.width(), rest.bottom() - middle - 4}), option, index);
    painter->restore();
  }

 private:
  static void draw(QPainter& painter, const QRect& place, Qt::Alignment height, const QFont& font, const QColor& color,
                   Qt::LayoutDirection direction, const QString& text) {
    painter.setFont(font);
    painter.setPen(color);
    const auto side = direction == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft;
    painter.drawText(place, static_cast<int>(side | Qt::AlignAbsolute | height),
                     QFontMetrics(font).elidedText(text, Qt::ElideMiddle, place.width()));
  }

  static void draw_second(QPainter& painter, const QRect& place, const QStyleOptionViewItem& option,
                          const QModelIndex& index) {
    const QFont font = theme::font(theme::Type::note);
    const QFontMetrics metrics(font);
    const QString reason = index.data(reason_role).toString();
    const QString between = reason.isEmpty() ? QString() : QStringLiteral("  ·  ");
    const QString folder = metrics.elidedText(index.data(folder_role).toString(), Qt::ElideMiddle,
                                              place.width() - metrics.horizontalAdvance(between + reason));
    draw(painter, place, Qt::AlignTop, font, theme::readable(theme::secondary, theme::sheet), option.direction,
         folder + between + reason);
  }

  Icons& icons_;
  const NotRemovedList& list_;
};

NotRemovedList::NotRemovedList(AppContext& context, const QSize& size, QWidget* parent)
    : QListView(parent), context_(context), model_(new Model(context, this)), tools_(new QWidget(viewport())) {
  setAccessibleName(parent->windowTitle());
  use_scrollers(this);
  setFixedSize(size);
  setModel(model_);
  setItemDelegate(new Rows(context.icons, *this, this));
  setUniformItemSizes(true);
  setMouseTracking(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  verticalScrollBar()->setSingleStep(theme::file_row_height);
  connect(&context.icons, &Icons::arrived, viewport(), qOverload<>(&QWidget::update));

  auto* row = new QHBoxLayout(tools_);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(theme::grid);
  show_button = new PushButton(context.text("Show"), ButtonKind::plain, tools_);
  copy_button = new PushButton(context.text("Copy path"), ButtonKind::plain, tools_);
  for (PushButton* button : {show_button, copy_button}) row->addWidget(button);
  connect(show_button, &QAbstractButton::clicked, this, &NotRemovedList::show_entry);
  connect(copy_button, &QAbstractButton::clicked, this, &NotRemovedList::copy_path);
  tools_->hide();
}

NotRemovedList::~NotRemovedList() = default;

void NotRemovedList::show_lines(std::vector<Line> lines) {
  model_->set_lines(std::move(lines));
  constexpr int least_rows = 3;
  setFixedHeight(std::min(height(), std::max(least_rows, model_->rowCount()) * scaled(usual_row_height)));
  if (model_->rowCount() > 0) setCurrentIndex(model_->index(0));
  place_tools();
}

QModelIndex NotRemovedList::handled() const {
  return pointed_.isValid() ? QModelIndex(pointed_) : currentIndex();
}

void NotRemovedList::place_tools() {
  const QModelIndex row = handled();
  tools_->setVisible(row.isValid());
  viewport()->update();
  if (!row.isValid()) return;
  tools_->adjustSize();
  const QRect place = visualRect(row);
  const QRect wanted(place.right() - edge - tools_->width(), place.center().y() - tools_->height() / 2, tools_->width(),
                     tools_->height());
  tools_->setGeometry(QStyle::visualRect(layoutDirection(), place, wanted));
}

void NotRemovedList::show_entry() {
  if (handled().isValid()) context_.workspace.reveal({&model_->url(handled()), 1});
}

void NotRemovedList::copy_path() {
  if (handled().isValid()) QGuiApplication::clipboard()->setText(QString::fromStdString(model_->url(handled()).path()));
}

void NotRemovedList::keyPressEvent(QKeyEvent* event) {
  pointed_ = QModelIndex();
  place_tools();
  event->matches(QKeySequence::Copy) ? copy_path() : QListView::keyPressEvent(event);
}

void NotRemovedList::contextMenuEvent(QContextMenuEvent* event) {
  if (!handled().isValid()) return;
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  connect(menu->addAction(context_.text("Show in file viewer")), &QAction::triggered, this,
          &NotRemovedList::show_entry);
  connect(menu->addAction(context_.text("Copy path")), &QAction::triggered, this, &NotRemovedList::copy_path);
  const bool keyboard = event->reason() == QContextMenuEvent::Keyboard;
  menu->popup(keyboard ? viewport()->mapToGlobal(visualRect(handled()).center()) : event->globalPos());
}

void NotRemovedList::mouseMoveEvent(QMouseEvent* event) {
  pointed_ = indexAt(event->position().toPoint());
  place_tools();
  QListView::mouseMoveEvent(event);
}

bool NotRemovedList::viewportEvent(QEvent* event) {
  if (event->type() == QEvent::Leave) {
    pointed_ = QModelIndex();
    place_tools();
  }
  return QListView::viewportEvent(event);
}

void NotRemovedList::scrollContentsBy(int dx, int dy) {
  QListView::scrollContentsBy(dx, dy);
  place_tools();
}

void NotRemovedList::resizeEvent(QResizeEvent* event) {
  QListView::resizeEvent(event);
  place_tools();
}

void NotRemovedList::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QListView::currentChanged(current, previous);
  place_tools();
}

}  // namespace tarnby
