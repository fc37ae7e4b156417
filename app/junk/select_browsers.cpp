#include "app/junk/select_browsers.h"

#include <QHBoxLayout>
#include <QVBoxLayout>
#include <algorithm>

#include "app/parts/layouts.h"
#include "app/parts/notifications.h"
#include "engine/cleaner.h"
#include "platform/platform.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

constexpr int row_width = 260;

}  // namespace

SelectBrowsers::SelectBrowsers(AppContext& context)
    : Screen(context), app_settings(context.settings()), sharedCleaner(context.sharedCleaner()) {
  setWindowTitle(context.text("Select browser"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(panel_gap, panel_gap, panel_gap, panel_gap);
  layout->setSpacing(theme::grid);
  QLabel* title = text_label(windowTitle(), theme::Type::title, theme::text, this, theme::Weight::strong);
  align_at_beginning(title);
  layout->addWidget(title);
  rows.reserve(browser_rows().size());  // each stays where it is
  for (const ClientRow& browser : browser_rows()) {
    const Row& row = rows.emplace_back(make_row(browser));
    connect(row.button, &QAbstractButton::clicked, this, [this, &row] { select(row); });
  }
  layout->addSpacing(theme::grid);
  done_button = new PushButton(context.text("Done"), ButtonKind::accent, this);
  layout->addWidget(done_button, 0, Qt::AlignHCenter);
  connect(done_button, &QAbstractButton::clicked, this, &Screen::dismissed);
  chrome_button = row_of("chrome").button;
  mozilla_button = row_of("mozilla").button;
  safari_button = row_of("safari").button;
  chrome_size = row_of("chrome").size;
  mozilla_size = row_of("mozilla").size;
  safari_size = row_of("safari").size;
}

SelectBrowsers::Row SelectBrowsers::make_row(const ClientRow& browser) {
  auto* line = new QWidget(this);
  line->setFixedWidth(static_cast<int>(row_width * std::max(1.0, theme::text_scale())));
  auto* layout = new QHBoxLayout(line);
  layout->setContentsMargins(0, 0, 0, 0);
  const auto& item = sharedCleaner.*browser.item;
  const std::int64_t bytes = item ? item->size : 0;
  auto* button = new CheckButton(line, QString::fromUtf8(browser.name));
  button->setEnabled(bytes >= 1);
  button->setChecked(bytes >= 1 && app_settings.boolean(browser.setting));
  QLabel* size = text_label(context_.byte_count(bytes), theme::Type::body, theme::text, line);
  layout->addWidget(button);
  layout->addStretch();
  layout->addWidget(size);
  this->layout()->addWidget(line);
  return {&browser, button, size};
}

const SelectBrowsers::Row& SelectBrowsers::row_of(std::string_view type) const {
  return *std::ranges::find_if(rows, [&](const Row& shown) { return shown.browser->type == type; });
}

void SelectBrowsers::select_chrome() {
  select(row_of("chrome"));
}

void SelectBrowsers::select_mozilla() {
  select(row_of("mozilla"));
}

void SelectBrowsers::select_safari() {
  select(row_of("safari"));
}

/// Ticking adds the files and the size without a look whether they are in there: unticking has taken them out before.
void SelectBrowsers::select(const Row& row) {
  const bool on = row.button->isChecked();
  app_settings.set_boolean(row.browser->setting, on);
  const auto& chosen = sharedCleaner.*row.browser->item;
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
