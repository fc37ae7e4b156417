#include "app/junk/select_browsers.h"

#include <QHBoxLayout>
#include <QVBoxLayout>
#include <algorithm>

#include "app/parts/notifications.h"
#include "platform/platform.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

constexpr SelectBrowsers::Browser chrome = {"Google Chrome", &Cleaner::browser_chrome_item, "GoogleChrome"};
constexpr SelectBrowsers::Browser mozilla = {"Firefox", &Cleaner::browser_mozilla_item, "Mozilla"};
constexpr SelectBrowsers::Browser safari = {"Safari", &Cleaner::browser_safari_item, "Safari"};
constexpr int row_width = 260;

}  // namespace

SelectBrowsers::SelectBrowsers(AppContext& context)
    : Screen(context), app_settings(context.settings()), sharedCleaner(context.sharedCleaner()) {
  setWindowTitle(context.text("Select browser"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(20, 20, 20, 20);
  layout->setSpacing(theme::grid);
  QLabel* title = text_label(windowTitle(), theme::Type::title, theme::text, this, theme::Weight::strong);
  align_at_beginning(title);
  layout->addWidget(title);
  add_row(chrome, chrome_button, chrome_size);
  add_row(mozilla, mozilla_button, mozilla_size);
  add_row(safari, safari_button, safari_size);
  layout->addSpacing(theme::grid);
  done_button = new PushButton(context.text("Done"), ButtonKind::accent, this);
  layout->addWidget(done_button, 0, Qt::AlignHCenter);
  connect(done_button, &QAbstractButton::clicked, this, &Screen::dismissed);
  connect(chrome_button, &QAbstractButton::clicked, this, &SelectBrowsers::select_chrome);
  connect(mozilla_button, &QAbstractButton::clicked, this, &SelectBrowsers::select_mozilla);
  connect(safari_button, &QAbstractButton::clicked, this, &SelectBrowsers::select_safari);
}

void SelectBrowsers::add_row(const Browser& browser, CheckButton*& button, QLabel*& size) {
  auto* line = new QWidget(this);
  line->setFixedWidth(static_cast<int>(row_width * std::max(1.0, theme::text_scale())));
  auto* row = new QHBoxLayout(line);
  row->setContentsMargins(0, 0, 0, 0);
  const auto& item = sharedCleaner.*browser.item;
  const std::int64_t bytes = item ? item->size : 0;
  button = new CheckButton(line, QString::fromUtf8(browser.name));
  button->setEnabled(bytes >= 1);
  button->setChecked(bytes >= 1 && app_settings.boolean(browser.setting));
  size = text_label(context_.byte_count(bytes), theme::Type::body, theme::text, line);
  row->addWidget(button);
  row->addStretch();
  row->addWidget(size);
  layout()->addWidget(line);
}

void SelectBrowsers::select_chrome() {
  select(chrome, chrome_button->isChecked());
}

void SelectBrowsers::select_mozilla() {
  select(mozilla, mozilla_button->isChecked());
}

void SelectBrowsers::select_safari() {
  select(safari, safari_button->isChecked());
}

/// Ticking adds the files and the size without a look whether they are in there: unticking has taken them out before.
void SelectBrowsers::select(const Browser& browser, bool on) {
  app_settings.set_boolean(browser.setting, on);
  const auto& chosen = sharedCleaner.*browser.item;
  auto& all = sharedCleaner.browser_item;
  if (chosen && all) {
    if (on) {
      all->files.insert(all->files.end(), chosen->files.begin(), chosen->files.end());
      all->size += chosen->size;
    } else {
      std::erase_if(all->files,
                    [&](const Url& url) { return std::ranges::find(chosen->files, url) != chosen->files.end(); });
      all->size -= chosen->size;
    }
    all->string_size = context_.platform.text.byte_count(all->size);
  }
  post(notifications::update_browsers);
}

}  // namespace tarnby
