#include "app/junk/applications_view_controller.h"

#include "app/parts/notifications.h"
#include "text/localization.h"

namespace tarnby {

ApplicationsViewController::ApplicationsViewController(AppContext& context)
    : CategoryPage(context, {english("Applications junk"), applications_rows(), "ApplicationsPageController",
                             ButtonKind::accent, english("Media junk")}) {
  for (const JunkRow& row : applications_rows()) {
    ShownCategory& shown = category(row.category.type);
    show_item(shown);
    const bool ticked = shown.size >= 1 && app_settings.boolean(row.category.setting);
    shown.button->setChecked(ticked);
    if (ticked) count(shown.size);
  }
  update_ui();
  connect(next_button, &QAbstractButton::clicked, this, &ApplicationsViewController::to_media_junk);
  connect(back_button, &QAbstractButton::clicked, this, &ApplicationsViewController::back);
  observe(notifications::update_browsers, [this] { update_browsers(); });
}

void ApplicationsViewController::to_media_junk() {
  post(notifications::navigate_forward);
}

void ApplicationsViewController::back() {
  post(notifications::home_view_controller);
}

void ApplicationsViewController::update_browsers() {
  ShownCategory& browsers = category("browsers");
  const std::int64_t before = browsers.size;
  show_item(browsers);
  if (browsers.button->isChecked()) count(browsers.size - before);
  tell_choice();
}

}  // namespace tarnby
