#include "app/smart/about_panel.h"

#include <QPainter>
#include <QVBoxLayout>

#include "app/parts/category_look.h"
#include "engine/categories.h"
#include "ui/paths.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

constexpr int tag = 28;
constexpr int edge = 20;
constexpr int text_width = 280;

}  // namespace

AboutPanel::AboutPanel(AppContext& context, std::string_view type) : Screen(context), type_(type) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(edge, edge + tag + edge / 2, edge, edge);
  layout->setSpacing(theme::grid);
  QLabel* title =
      text_label(context.text(category_row(type)->label), theme::Type::title, theme::text, this, theme::Weight::strong);
  QLabel* words = paragraph(context.text(look_of(type).about.text), theme::Type::detail,
                            theme::readable(theme::secondary, theme::sheet), text_width, this);
  for (QLabel* label : {title, words}) {
    align_at_beginning(label, Qt::AlignTop);
    layout->addWidget(label);
  }
  setAccessibleName(title->text());
  setAccessibleDescription(words->text());
}

void AboutPanel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const int left = layoutDirection() == Qt::RightToLeft ? width() - edge - tag : edge;
  painter.fillPath(rounded_path(QRectF(left, edge, tag, tag), 7), look_of(type_).color);
}

}  // namespace tarnby
