#include "app/junk/scan_view_controller.h"

#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "app/parts/layouts.h"
#include "app/parts/notifications.h"
#include "files/bytes.h"
#include "leftovers/remainders.h"
#include "text/localization.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds flicker_interval{30};
constexpr milliseconds flag_interval{500};
constexpr milliseconds until_logs{2000};
constexpr milliseconds until_remainders{4000};
constexpr milliseconds until_browsers{7000};
constexpr milliseconds until_trash{8000};
constexpr milliseconds until_mails{1500};
constexpr milliseconds until_complete{2800};
constexpr milliseconds until_pages{1500};
constexpr int path_width = 640;

using Files = std::vector<Url>;

const Files* files_of(const std::shared_ptr<CleanerItem>& item) {
  return item ? &item->files : nullptr;
}

// Until its flag is set the scan still writes what belongs to it, so nothing of it is read before.
bool apps_are_ready(const Cleaner& cleaner) {
  return cleaner.apps_junk_search_complete;
}
bool media_is_ready(const Cleaner& cleaner) {
  return cleaner.media_search_coomplete;
}

constexpr const char* wait = english("Wait...");
constexpr const char* clean = english("In \"%@\" everything is clean");

}  // namespace

const ScanViewController::Flicker ScanViewController::caches = {
    [](const Cleaner& cleaner) -> const Files* { return files_of(cleaner.apps_caches_item); },
    &Cleaner::apps_caches_item,
    apps_are_ready,
    nullptr,
    "",
    "Caches"};
const ScanViewController::Flicker ScanViewController::logs = {
    [](const Cleaner& cleaner) -> const Files* { return files_of(cleaner.apps_logs_item); },
    &Cleaner::apps_logs_item,
    apps_are_ready,
    clean,
    english("Applications logs"),
    "Logs"};
// The applications that were looked through for what removed ones have left.
const ScanViewController::Flicker ScanViewController::remainders = {
    [](const Cleaner& cleaner) -> const Files* { return &cleaner.remainders().installedApplications; },
    &Cleaner::apps_remainders_item,
    apps_are_ready,
    wait,
    "",
    "Remainders"};
const ScanViewController::Flicker ScanViewController::browsers = {
    [](const Cleaner& cleaner) -> const Files* { return files_of(cleaner.browser_item); },
    &Cleaner::browser_item,
    apps_are_ready,
    wait,
    "",
    "Browsers"};
const ScanViewController::Flicker ScanViewController::trash = {
    [](const Cleaner& cleaner) -> const Files* { return files_of(cleaner.trash_item); },
    &Cleaner::trash_item,
    media_is_ready,
    clean,
    english("Trash Bin"),
    "Trash"};
const ScanViewController::Flicker ScanViewController::mails = {
    [](const Cleaner& cleaner) -> const Files* { return files_of(cleaner.mails_item); },
    &Cleaner::mails_item,
    media_is_ready,
    clean,
    english("Mail attachments"),
    "Mails"};

ScanViewController::ScanViewController(AppContext& context)
    : ScanScreen(context),
      appDelegate(context.appDelegate),
      app_settings(context.settings()),
      sharedCleaner(context.sharedCleaner()) {
  const QColor quiet = theme::readable(theme::secondary, theme::wave_ground);
  scanView = new ScanView(context.clock, this);
  scanView->setAccessibleName(context.text("Scan"));
  scan_size = scanView->number();
  scan_label = new FadingLabel(context.clock, this);
  label = text_label(context.text("Looking for what can be cleaned"), theme::Type::large, theme::text, this,
                     theme::Weight::strong);
  text = text_label({}, theme::Type::detail, quiet, this);
  path = text_label({}, theme::Type::note, quiet, this);
  path->setFixedWidth(path_width);

  QVBoxLayout* layout = screen_column(this);
  layout->addStretch(6);
  layout->addWidget(label);
  layout->addSpacing(2 * theme::grid);
  layout->addWidget(scanView, 0, Qt::AlignHCenter);
  layout->addSpacing(3 * theme::grid);
  layout->addWidget(scan_label);
  layout->addWidget(path, 0, Qt::AlignHCenter);
  layout->addWidget(text);
  add_stop_button(layout);
  layout->addStretch(7);

  scan_open_anim();
  start_flicker(caches);
  after(until_logs, [this] { animation_apps_caches(); });
  after(until_remainders, [this] { animation_apps_remainders(); });
  after(until_browsers, [this] { animation_browsers(); });
  after(until_trash, [this] { animation_trash(); });
}

void ScanViewController::scan_open_anim() {
  constexpr int half_ring_ms = 8000;
  path->setText(context_.text(wait));
  text->setText(context_.text(wait));
  scanView->show_number(context_.byte_count(0));
  scanView->show_caption(context_.text("found so far"));
  show_category(english("Applications caches"));
  scanView->animate_stroke_end(0.5, half_ring_ms);
}

void ScanViewController::show_category(const char* category) {
  scan_label->show_text(context_.text("Scan in \"%@\"", {context_.text(category)}));
}

void ScanViewController::start_flicker(const Flicker& flicker) {
  every(flicker_interval, [this, &flicker, count = std::size_t{0}]() mutable { return tick(flicker, count); });
}

/// Shows one more file. The count is raised before it is used, so the first file is never shown (pinned by
/// shows_the_files_of_a_category_but_never_the_first).
bool ScanViewController::tick(const Flicker& flicker, std::size_t& count) {
  if (!flicker.is_ready(sharedCleaner)) return true;
  const Files* files = flicker.files(sharedCleaner);
  const std::size_t all = files == nullptr ? 0 : files->size();
  if (++count < all) {
    const QString shown = QString::fromStdString((*files)[count].path());
    path->setText(path->fontMetrics().elidedText(shown, Qt::ElideMiddle, path->width()));
    count_passed(flicker, static_cast<double>(count) / static_cast<double>(all));
    return true;
  }
  if (all > 0) {
    count_passed(flicker, 1);
    return false;
  }
  count = 0;
  if (flicker.empty_text != nullptr) path->setText(empty_text(flicker));
  return true;
}

/// A category that could not be looked at is never called clean.
QString ScanViewController::empty_text(const Flicker& flicker) const {
  const auto problem = sharedCleaner.problem_of(flicker.group);
  if (flicker.empty_text != clean || !problem) {
    return context_.text(flicker.empty_text, {context_.text(flicker.empty_category)});
  }
  const QString name = QString::fromStdString(problem->name).replace(u'\n', u' ');
  return context_.text(look_problem_text(*problem), {path_in_words(name)});
}

/// The figure follows without a push: it would never come to rest.
void ScanViewController::count_passed(const Flicker& flicker, double part) {
  passed_[&flicker] = part;
  if (all_is_counted_) return;
  scan_size->setText(context_.byte_count(found_so_far()));
}

std::int64_t ScanViewController::passed_bytes(bool (*is_ready)(const Cleaner&)) const {
  std::int64_t bytes = 0;
  for (const auto& [flicker, part] : passed_) {
    const auto& item = sharedCleaner.*flicker->item;
    if (item && flicker->is_ready == is_ready) {
      bytes = add_bytes(bytes, std::llround(part * static_cast<double>(item->size)));
    }
  }
  return bytes;
}

/// What two categories list is counted twice only as long as nobody knows of it.
std::int64_t ScanViewController::found_so_far() {
  const std::int64_t applications = apps_are_counted_ ? sharedCleaner.apps_junk_size : passed_bytes(apps_are_ready);
  const std::int64_t media = passed_bytes(media_is_ready);
  if (!media_is_ready(sharedCleaner)) return add_bytes(applications, media);
  return std::min(add_bytes(std::min(applications, sums().applications), media), sums().both);
}

const ScanViewController::Sums& ScanViewController::sums() {
  if (sums_) return *sums_;
  const ChosenAmount amount = sharedCleaner.junk_amount ? *sharedCleaner.junk_amount : ChosenAmount();
  std::vector<CleanerEntry> listed;
  for (const Flicker* flicker : {&caches, &logs, &remainders, &browsers})
    listed.emplace_back(sharedCleaner.*flicker->item);
  const std::int64_t applications = amount.amount(listed);
  for (const Flicker* flicker : {&trash, &mails}) listed.emplace_back(sharedCleaner.*flicker->item);
  sums_ = Sums{applications, amount.amount(listed)};
  return *sums_;
}

void ScanViewController::animation_apps_caches() {
  show_category(english("Applications logs"));
  start_flicker(logs);
}

void ScanViewController::animation_apps_remainders() {
  show_category(english("Applications remainders"));
  start_flicker(remainders);
}

void ScanViewController::animation_browsers() {
  show_category(english("Browsers"));
  start_flicker(browsers);
}

/// Looks at a flag of the scan again and again, and goes on with `next` when it is set.
void ScanViewController::once_ready(bool (*is_ready)(const Cleaner&), std::function<void()> next) {
  every(flag_interval, [this, is_ready, next = std::move(next)] {
    if (!is_ready(sharedCleaner)) return true;
    next();
    return false;
  });
}

void ScanViewController::animation_trash() {
  constexpr int rest_of_ring_ms = 2800;
  if (!sharedCleaner.apps_junk_search_complete) {
    return once_ready(apps_are_ready, [this] { animation_trash(); });
  }
  scanView->animate_stroke_end(1, rest_of_ring_ms);
  apps_are_counted_ = true;
  scanView->show_number(context_.byte_count(found_so_far()));
  show_category(english("Trash Bin"));
  start_flicker(trash);
  after(until_mails, [this] { animation_mails(); });
  after(until_complete, [this] { scan_complete(); });
}

void ScanViewController::animation_mails() {
  show_category(english("Mail attachments"));
  start_flicker(mails);
}

void ScanViewController::scan_complete() {
  if (!sharedCleaner.media_search_coomplete) {
    return once_ready(media_is_ready, [this] { scan_complete(); });
  }
  all_is_counted_ = true;
  scanView->show_number(context_.byte_count(sums().both));
  scan_label->show_text(context_.text("Scan complete..."));
  text->setText(QStringLiteral("Tarnby cleaner..."));  // the program's name is the same in every language
  after(until_pages, [&center = context_.notifications()] {
    center.post(notifications::scan_end_anim_complete);  // takes this screen away
    center.post(notifications::page_controller);
  });
}

}  // namespace tarnby
