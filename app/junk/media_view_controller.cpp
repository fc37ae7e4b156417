#include "app/junk/media_view_controller.h"

#include "app/parts/notifications.h"
#include "app/parts/screen_catalogue.h"
#include "text/localization.h"

namespace tarnby {

namespace {

constexpr std::string_view downloads = "downloads";
constexpr std::string_view large_files = "large-files";

}  // namespace

MediaViewController::MediaViewController(AppContext& context)
    : CategoryPage(context, {english("Media junk"), media_rows(), "MediaPageController", ButtonKind::destructive,
                             english("Clean")}) {
  for (const JunkRow& row : media_rows()) {
    ShownCategory& shown = category(row.category.type);
    show_item(shown);
    const bool ticked = has_box(shown) && shown.size >= 1 && app_settings.boolean(row.category.setting);
    shown.button->setChecked(ticked);
    if (ticked) count(shown.size);
  }
  lead_to_downloads();
  update_ui();
  observe(choice_changed, [this] { enable_cleanup(); });
  enable_cleanup();
  connect(next_button, &QAbstractButton::clicked, this, &MediaViewController::cleanup);
  connect(back_button, &QAbstractButton::clicked, this, &MediaViewController::to_apps_junk);
  observe(notifications::show_large_files, [this] { show_large_files(); });
  observe_number(notifications::update_ui_with_large_files_item_size,
                 [this](std::int64_t change) { update_ui_with_large_files_item_size(change); });
}

bool MediaViewController::has_box(const ShownCategory& shown) const {
  if (!shown.category->is_removed) return false;
  return shown.size >= 1 || shown.category->type == large_files;
}

/// No run removes them, so there is nothing to tick.
void MediaViewController::lead_to_downloads() {
  const ShownCategory& shown = category(downloads);
  auto* show = new PushButton(context_.text("Show"), ButtonKind::link, shown.line);
  show->setAccessibleDescription(context_.text(shown.category->label));
  connect(show, &QAbstractButton::clicked, this, [this, &shown] {
    about(shown);
    post(shown.look->about.button.pressed_by);
  });
  add_to_line(shown, show);
}

void MediaViewController::enable_cleanup() {
  next_button->setEnabled(!choice().lines.empty());
}

QString MediaViewController::size_text(const ShownCategory& shown) const {
  if (shown.category->type == large_files && shown.size < 1) return context_.text("Choose…");
  if (shown.category->type == downloads && shown.size < 1) return {};
  return CategoryPage::size_text(shown);
}

void MediaViewController::toggle(ShownCategory& shown, bool on) {
  shown.category->type == large_files ? clean_large_files(shown, on) : CategoryPage::toggle(shown, on);
}

void MediaViewController::clean_large_files(ShownCategory& shown, bool on) {
  if (!on || shown.size >= 1) return CategoryPage::toggle(shown, on);
  shown.button->setChecked(false);  // until something is chosen
  show_large_files();
  post(shown.look->move);
}

void MediaViewController::to_apps_junk() {
  post(notifications::navigate_back);
}

void MediaViewController::cleanup() {
  ask_before_removal(context_, choice(), *this, [this] { post(notifications::delete_view_controller); });
}

void MediaViewController::show_large_files() {
  present_sheet(ScreenCatalogue::main().make("LargeFiles", context_));
}

void MediaViewController::update_ui_with_large_files_item_size(std::int64_t change) {
  ShownCategory& shown = category(large_files);
  show_item(shown);
  shown.button->setChecked(app_settings.boolean(shown.category->setting));
  count(change);
  tell_choice();
}

}  // namespace tarnby
