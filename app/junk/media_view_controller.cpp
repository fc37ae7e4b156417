#include "app/junk/media_view_controller.h"

#include "app/junk/category_about.h"
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
    Category& shown = category(row.type);
    show_item(shown);
    const bool ticked = has_box(shown) && shown.size >= 1 && app_settings.boolean(row.setting);
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

bool MediaViewController::has_box(const Category& category) const {
  if (category.row->type == downloads) return false;
  return category.size >= 1 || category.row->type == large_files;
}

/// No run removes them, so there is nothing to tick.
void MediaViewController::lead_to_downloads() {
  const Category& shown = category(downloads);
  auto* show = new PushButton(context_.text("Show"), ButtonKind::link, shown.line);
  show->setAccessibleDescription(context_.text(shown.row->label));
  connect(show, &QAbstractButton::clicked, this, [this, &shown] {
    about(shown);
    post(CategoryAbout::show_downloads);
  });
  add_to_line(shown, show);
}

void MediaViewController::enable_cleanup() {
  next_button->setEnabled(!choice().lines.empty());
}

QString MediaViewController::size_text(const Category& category) const {
  if (category.row->type == large_files && category.size < 1) return context_.text("Choose…");
  if (category.row->type == downloads && category.size < 1) return {};
  return CategoryPage::size_text(category);
}

void MediaViewController::toggle(Category& category, bool on) {
  category.row->type == large_files ? clean_large_files(category, on) : CategoryPage::toggle(category, on);
}

void MediaViewController::clean_large_files(Category& category, bool on) {
  if (!on || category.size >= 1) return CategoryPage::toggle(category, on);
  category.button->setChecked(false);  // until something is chosen
  show_large_files();
  post(category.row->move);
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
  Category& shown = category(large_files);
  show_item(shown);
  shown.button->setChecked(app_settings.boolean(shown.row->setting));
  count(change);
  tell_choice();
}

}  // namespace tarnby
