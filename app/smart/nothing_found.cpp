#include "app/smart/nothing_found.h"

#include <QPainter>
#include <QVBoxLayout>

#include "app/parts/category_look.h"
#include "app/parts/layouts.h"
#include "engine/categories.h"
#include "engine/cleaner.h"
#include "ui/drawing.h"
#include "ui/info_button.h"
#include "ui/paths.h"
#include "ui/qt_text.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

constexpr int mark_side = 96;
constexpr int words_width = 560;
constexpr FreeRoom around_words = {10, 9};
constexpr QColor mark_color = theme::rgb(0x7BE8DA);

/// A quiet disc with a check mark, or with an "i" where there is something to tell.
class Mark : public Drawing {
 public:
  Mark(bool checked, QWidget* parent) : Drawing(parent), checked_(checked) { setFixedSize(mark_side, mark_side); }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF disc = square(0);
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme::card);
    painter.drawEllipse(disc);
    const double inset = disc.width() / 4;
    const QRectF middle = disc.adjusted(inset, inset, -inset, -inset);
    if (!checked_) return draw_info_mark(painter, middle, theme::secondary);
    painter.strokePath(check_path(disc),
                       QPen(mark_color, disc.width() * 0.06, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  }

 private:
  bool checked_;
};

/// The colour of a category on a disc, its name below.
class CategoryMark : public Drawing {
 public:
  CategoryMark(const QColor& color, const QString& name, QWidget* parent)
      : Drawing(parent), color_(color), name_(name) {
    setFont(theme::font(theme::Type::note));
    setFixedSize(std::max(side, fontMetrics().horizontalAdvance(name)) + theme::grid,
                 side + theme::grid + fontMetrics().height());
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme::panel);
    const QPointF middle(width() / 2.0, side / 2.0);
    painter.drawEllipse(middle, side / 2.0, side / 2.0);
    painter.fillPath(rounded_path(QRectF(middle.x() - tag / 2, middle.y() - tag / 2, tag, tag), 4), color_);
    painter.setPen(theme::readable(theme::secondary, theme::background));
    painter.setFont(font());
    painter.drawText(rect(), Qt::AlignHCenter | Qt::AlignBottom, name_);
  }

 private:
  static constexpr int side = 40;
  static constexpr double tag = 12;
  QColor color_;
  QString name_;
};

QLayout* category_marks(const AppContext& context, QWidget* parent) {
  auto* row = new QHBoxLayout;
  row->setSpacing(theme::grid);
  row->addStretch();
  for (const Category& category : smart_categories()) {
    const CategoryLook& look = look_of(category.type);
    row->addWidget(new CategoryMark(look.color, context.text(look.short_name), parent));
  }
  row->addStretch();
  return row;
}

struct Words {
  QString title, words;
};

Words words_for(const AppContext& context, WhyNothing why) {
  const QString home = to_qstring(context.sharedCleaner().url_home.last_path_component());
  switch (why) {
    case WhyNothing::everything_is_clean:
      return {context.text("There is nothing to remove"),
              context.text("All seven categories were looked at. Everything is clean.")};
    case WhyNothing::empty_home:
      return {context.text("There is nothing here yet"),
              context.text("The folder “%@” is empty. There is nothing in it that could be looked at.", {home})};
    case WhyNothing::no_known_place:
      break;
  }
  return {
      context.text("There was nothing to look at"),
      context.text("The folder “%@” has none of the places where caches, logs and other leftovers are kept. If it is "
                   "not your home folder, choose that one under “%@” in the menu.",
                   {home, context.text("Folder access…")})};
}

}  // namespace

NothingFound::NothingFound(AppContext& context, WhyNothing why, QWidget* parent) : QWidget(parent) {
  const bool clean = why == WhyNothing::everything_is_clean;
  const Words said = words_for(context, why);
  title = text_label(said.title, theme::Type::large, theme::text, this, theme::Weight::strong);
  words =
      paragraph(said.words, theme::Type::body, theme::readable(theme::secondary, theme::background), words_width, this);
  done_button = new PushButton(context.text("Done"), ButtonKind::accent, this);

  QVBoxLayout* layout = screen_column(this);
  layout->addStretch(around_words.above);
  layout->addWidget(new Mark(clean, this), 0, Qt::AlignHCenter);
  layout->addSpacing(3 * theme::grid);
  layout->addWidget(title);
  layout->addWidget(words, 0, Qt::AlignHCenter);
  layout->addSpacing(3 * theme::grid);
  if (clean) layout->addLayout(category_marks(context, this));
  layout->addSpacing(4 * theme::grid);
  layout->addWidget(done_button, 0, Qt::AlignHCenter);
  layout->addStretch(around_words.below);
}

}  // namespace tarnby
