#include "app/privacy/guide_pages.h"

#include <QHBoxLayout>
#include <QLinearGradient>
#include <QPainter>
#include <QVBoxLayout>
#include <array>

#include "app/parts/notifications.h"
#include "app/parts/screen_catalogue.h"
#include "text/localization.h"
#include "ui/drawing.h"
#include "ui/paths.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

struct PageRow {
  const char* title;
  const char* words;
};

constexpr std::array page_rows = {
    PageRow{english("Some folders need your permission"),
            english("The system keeps browser data and mail to itself until you allow a program to see them. Without "
                    "full disk access Tarnby cleaner cannot tell what is in there.")},
    PageRow{english("Open the settings"),
            english("Press “Open settings”. In the list of programs with full disk access, switch Tarnby cleaner on. "
                    "The system may ask for your password.")},
    PageRow{english("Come back and check"),
            english("Press “Check again”. When access is there this window closes by itself, and the next scan sees "
                    "everything.")},
};

constexpr int words_width = 400;
constexpr int badge = 56;
constexpr int badge_top = 40;

}  // namespace

GuidePage::GuidePage(AppContext& context, int number) : Screen(context), number_(number) {
  const PageRow& row = page_rows[static_cast<std::size_t>(number - 1)];
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(5 * theme::grid, badge_top + badge + 3 * theme::grid, 5 * theme::grid, 2 * theme::grid);
  layout->setSpacing(theme::grid);
  QLabel* title =
      text_label(context.text(row.title), theme::Type::heading, theme::light_text, this, theme::Weight::strong);
  title->setWordWrap(true);
  layout->addWidget(title);
  layout->addWidget(paragraph(context.text(row.words), theme::Type::body, theme::light_secondary, words_width, this), 0,
                    Qt::AlignHCenter);
  layout->addStretch();
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(theme::grid);
  buttons->addStretch();
  if (number > 1) {
    back_button = new PushButton(context.text("Back"), ButtonKind::light, this);
    connect(back_button, &QAbstractButton::clicked, this,
            [this] { post(notifications::navigate_back_in_privacy_full_disk); });
    buttons->addWidget(back_button);
  }
  if (number < static_cast<int>(page_rows.size())) {
    next_button = new PushButton(context.text("Next"), ButtonKind::accent, this);
    connect(next_button, &QAbstractButton::clicked, this,
            [this] { post(notifications::navigate_next_in_privacy_full_disk); });
    buttons->addWidget(next_button);
  }
  buttons->addStretch();
  layout->addLayout(buttons);
  setFocusProxy(next_button != nullptr ? next_button : back_button);  // the keyboard goes on from page to page
}

/// The page's number in a bright disc.
void GuidePage::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF disc((width() - badge) / 2.0, badge_top, badge, badge);
  QPainterPath shape;
  shape.addEllipse(disc);
  painter.fillPath(shape, ring_gradient(disc));
  painter.setFont(theme::font(theme::Type::heading, theme::Weight::strong));
  painter.setPen(theme::on_gradient);
  painter.drawText(disc, Qt::AlignCenter, context_.number(number_));
}

PrivacyFullDiskPageController::PrivacyFullDiskPageController(AppContext& context)
    : Screen(context), pages(new PageTurner(context.clock, this)) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(pages);
  for (const char* identifier : {"PrivacyFullDiskPage1", "PrivacyFullDiskPage2", "PrivacyFullDiskPage3"}) {
    pages->add_page(ScreenCatalogue::main().make(identifier, context).release());
  }
  observe(notifications::navigate_next_in_privacy_full_disk, [this] { pages->turn_to(pages->current() + 1); });
  observe(notifications::navigate_back_in_privacy_full_disk, [this] { pages->turn_to(pages->current() - 1); });
}

}  // namespace tarnby
