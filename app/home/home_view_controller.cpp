#include "app/home/home_view_controller.h"

#include <QVBoxLayout>

#include "ui/shadow_label.h"
#include "ui/text_label.h"

namespace tarnby {

HomeViewController::HomeViewController(AppContext& context) : Screen(context) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(2 * theme::grid, 2 * theme::grid, 2 * theme::grid, 2 * theme::grid);
  layout->setSpacing(0);
  layout->addStretch(10);

  search_button = new HomeView(context.text("Scan"), context.clock, this);
  search_button->setDefault(true);
  connect(search_button, &QAbstractButton::clicked, this, &HomeViewController::search);
  layout->addWidget(search_button, 0, Qt::AlignHCenter);
  layout->addSpacing(2 * theme::grid);
  layout->addWidget(new ShadowLabel(context.text("Make room on your disk"), this));
  layout->addSpacing(theme::grid);
  const QColor quiet = theme::readable(theme::secondary, theme::wave_ground);
  layout->addWidget(
      paragraph(context.text("Caches, logs, leftovers, browser data, mail attachments, installers and the Trash."),
                theme::Type::body, quiet, 640, this),
      0, Qt::AlignHCenter);
  layout->addSpacing(3 * theme::grid);
  cleaned_so_far = text_label({}, theme::Type::note, quiet, this);
  const std::int64_t total = context.platform.app_settings.integer("TotallyCleaned");
  if (total > 0) cleaned_so_far->setText(context.text("Cleaned so far: %@", {context.byte_count(total)}));
  layout->addWidget(cleaned_so_far);
  layout->addSpacing(theme::grid);
  categories_button = new PushButton(context.text("Categories"), ButtonKind::link, this);
  connect(categories_button, &QAbstractButton::clicked, this, &HomeViewController::show_categories);
  layout->addWidget(categories_button, 0, Qt::AlignHCenter);
  layout->addStretch(7);

  observe("home_end_anim", [this] { home_end_anim(); });
  entrance_ = std::make_unique<Entrance>(context.clock, this);
  entrance_->open();
  search_button->setFocus();
}

void HomeViewController::search() {
  post("smart_scan_view_controller");
}

void HomeViewController::show_categories() {
  Cleaner& cleaner = context_.sharedCleaner();
  cleaner.apps_junk_search_complete = false;  // of an earlier scan, whose results are replaced now
  cleaner.media_search_coomplete = false;
  context_.background.async([&cleaner, &platform = context_.platform] {
    platform.files.look_again();
    cleaner.clean_with_complete_handler([] {});
  });
  categories_button->setEnabled(false);
  search_button->setEnabled(false);
  post("scan_view_controller");
}

void HomeViewController::home_end_anim() {
  entrance_->close([this] { post("home_end_anim_complete"); });
}

}  // namespace tarnby
