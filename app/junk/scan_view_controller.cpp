#include "app/junk/scan_view_controller.h"

#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "app/parts/layouts.h"
#include "app/parts/notifications.h"
#include "engine/cleaner.h"
#include "files/bytes.h"
#include "text/localization.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds flicker_interval{30};
constexpr milliseconds flag_interval{500};
constexpr milliseconds until_trash{8000};
constexpr milliseconds until_complete{2800};
constexpr milliseconds until_pages{1500};
constexpr int path_width = 640;
constexpr FreeRoom around_scan = {6, 7};  // more is said above the ring

constexpr const char* wait = english("Wait...");
constexpr const char* clean = english("In \"%@\" everything is clean");

}  // namespace

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
  layout->addStretch(around_scan.above);
  layout->addWidget(label);
  layout->addSpacing(2 * theme::grid);
  layout->addWidget(scanView, 0, Qt::AlignHCenter);
  layout->addSpacing(3 * theme::grid);
  layout->addWidget(scan_label);
  layout->addWidget(path, 0, Qt::AlignHCenter);
  layout->addWidget(text);
  add_stop_button(layout);
  layout->addStretch(around_scan.below);

  scan_open_anim();
  show_page(applications_rows());
  after(until_trash, [this] { animation_trash(); });
}

void ScanViewController::scan_open_anim() {
  constexpr int half_ring_ms = 8000;
  path->setText(context_.text(wait));
  text->setText(context_.text(wait));
  scanView->show_number(context_.byte_count(0));
  scanView->show_caption(context_.text("found so far"));
  scanView->animate_stroke_end(0.5, half_ring_ms);
}

void ScanViewController::show_page(std::span<const JunkRow> rows) {
  for (const JunkRow& row : rows) {
    const auto& begins = row.look.scan.begins;
    if (!begins) continue;
    if (*begins == milliseconds(0)) {
      show_category(row);
    } else {
      after(*begins, [this, &row] { show_category(row); });
    }
  }
}

void ScanViewController::show_category(const JunkRow& row) {
  scan_label->show_text(context_.text("Scan in \"%@\"", {context_.text(row.category.label)}));
  every(flicker_interval, [this, &row, count = std::size_t{0}]() mutable { return tick(row, count); });
}

/// Shows one more file. The count is raised before it is used, so the first file is never shown (pinned by
/// shows_the_files_of_a_category_but_never_the_first).
bool ScanViewController::tick(const JunkRow& row, std::size_t& count) {
  if (!is_ready(row.look.page)) return true;
  const std::vector<Url>* files = locations(row);
  const std::size_t all = files == nullptr ? 0 : files->size();
  if (++count < all) {
    const QString shown = QString::fromStdString((*files)[count].path());
    path->setText(path->fontMetrics().elidedText(shown, Qt::ElideMiddle, path->width()));
    count_passed(row, static_cast<double>(count) / static_cast<double>(all));
    return true;
  }
  if (all > 0) {
    count_passed(row, 1);
    return false;
  }
  count = 0;
  if (row.look.scan.empty != JunkScanStep::Empty::untold) path->setText(empty_text(row));
  return true;
}

const std::vector<Url>* ScanViewController::locations(const JunkRow& row) const {
  if (row.look.scan.locations != nullptr) return &row.look.scan.locations(sharedCleaner);
  const auto& item = sharedCleaner.*row.category.item;
  return item ? &item->files : nullptr;
}

/// A category that could not be looked at is never called clean.
QString ScanViewController::empty_text(const JunkRow& row) const {
  if (row.look.scan.empty == JunkScanStep::Empty::wait) return context_.text(wait);
  const auto problem = sharedCleaner.problem_of(row.category.setting);
  if (!problem) return context_.text(clean, {context_.text(row.category.label)});
  const QString name = QString::fromStdString(problem->name).replace(u'\n', u' ');
  return context_.text(look_problem_text(*problem), {path_in_words(name)});
}

/// The figure follows without a push: it would never come to rest.
void ScanViewController::count_passed(const JunkRow& row, double part) {
  passed_[&row] = part;
  if (all_is_counted_) return;
  scan_size->setText(context_.byte_count(found_so_far()));
}

std::int64_t ScanViewController::passed_bytes(JunkPage page) const {
  std::int64_t bytes = 0;
  for (const auto& [row, part] : passed_) {
    const auto& item = sharedCleaner.*row->category.item;
    if (item && row->look.page == page) {
      bytes = add_bytes(bytes, std::llround(part * static_cast<double>(item->size)));
    }
  }
  return bytes;
}

/// What two categories list is counted twice only as long as nobody knows of it.
std::int64_t ScanViewController::found_so_far() {
  const std::int64_t applications =
      apps_are_counted_ ? sharedCleaner.apps_junk_size : passed_bytes(JunkPage::applications);
  const std::int64_t media = passed_bytes(JunkPage::media);
  if (!is_ready(JunkPage::media)) return add_bytes(applications, media);
  return std::min(add_bytes(std::min(applications, sums().applications), media), sums().both);
}

const ScanViewController::Sums& ScanViewController::sums() {
  if (sums_) return *sums_;
  const ChosenAmount amount = sharedCleaner.junk_amount ? *sharedCleaner.junk_amount : ChosenAmount();
  std::vector<CleanerEntry> listed;
  const auto with = [&](std::span<const JunkRow> rows) {
    for (const JunkRow& row : rows) {
      if (row.look.scan.begins) listed.emplace_back(sharedCleaner.*row.category.item);
    }
    return amount.amount(listed);
  };
  const std::int64_t applications = with(applications_rows());
  sums_ = Sums{applications, with(media_rows())};
  return *sums_;
}

bool ScanViewController::is_ready(JunkPage page) const {
  return page == JunkPage::applications ? sharedCleaner.apps_junk_search_complete
                                        : sharedCleaner.media_search_coomplete;
}

/// Looks at a flag of the scan again and again, and goes on with `next` when it is set.
void ScanViewController::once_ready(JunkPage page, Work next) {
  every(flag_interval, [this, page, next = std::move(next)] {
    if (!is_ready(page)) return true;
    next();
    return false;
  });
}

void ScanViewController::animation_trash() {
  constexpr int rest_of_ring_ms = 2800;
  if (!is_ready(JunkPage::applications)) return once_ready(JunkPage::applications, [this] { animation_trash(); });
  scanView->animate_stroke_end(1, rest_of_ring_ms);
  apps_are_counted_ = true;
  scanView->show_number(context_.byte_count(found_so_far()));
  show_page(media_rows());
  after(until_complete, [this] { scan_complete(); });
}

void ScanViewController::scan_complete() {
  if (!is_ready(JunkPage::media)) return once_ready(JunkPage::media, [this] { scan_complete(); });
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
