#include "app/smart/offer_panel.h"

#include <QDateTime>
#include <QLocale>
#include <QVBoxLayout>

#include "app/smart/offer_text.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

constexpr int edge = 20;
constexpr int text_width = 300;

QString day_of(Moment moment) {
  return QLocale().toString(QDateTime::fromSecsSinceEpoch(moment.time_since_epoch().count()).date(),
                            QLocale::LongFormat);
}

}  // namespace

OfferPanel::OfferPanel(AppContext& context, const OfferedItem& item) : Screen(context) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(edge, edge, edge, edge);
  layout->setSpacing(theme::grid);
  const QColor quiet = theme::readable(theme::secondary, theme::sheet);
  const auto add = [&](QLabel* label) {
    align_at_beginning(label, Qt::AlignTop);
    layout->addWidget(label);
    return label;
  };
  const QLabel* title = add(
      text_label(label_of_offer(context, item.offer), theme::Type::title, theme::text, this, theme::Weight::strong));
  QStringList spoken;
  const auto say = [&](const QString& sentence) {
    if (sentence.isEmpty()) return;
    add(paragraph(sentence, theme::Type::detail, quiet, text_width, this));
    spoken << sentence;
  };
  say(reason_of_offer(context, item.offer));
  say(consequence_of_offer(context, item.offer));
  if (item.changed) say(context.text("Last changed on %@", {day_of(*item.changed)}));
  setAccessibleName(title->text());
  setAccessibleDescription(spoken.join(u' '));
}

}  // namespace tarnby
