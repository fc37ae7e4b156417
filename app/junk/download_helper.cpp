#include "app/junk/download_helper.h"

#include <QVBoxLayout>
#include <unordered_map>

#include "app/parts/layouts.h"
#include "app/parts/links.h"
#include "app/parts/not_removed_list.h"
#include "engine/cleaner.h"
#include "platform/workspace.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

constexpr QSize list_size(560, 208);  // whole rows

std::unordered_map<std::string_view, LeftReason> reasons_of(const std::vector<LeftEntry>& left) {
  std::unordered_map<std::string_view, LeftReason> reasons;
  for (const LeftEntry& entry : left) reasons.emplace(entry.url.path(), entry.reason);
  return reasons;
}

}  // namespace

DownloadHelper::DownloadHelper(AppContext& context, HandOff& hand_off) : Screen(context), hand_off_(hand_off) {
  setWindowTitle(context.text("Some files could not be removed"));
  QVBoxLayout* layout = wide_sheet_column(this);
  const bool has_helper = !links::helper_page.empty();
  layout->addWidget(paragraph(has_helper ? context.text("They belong to the system or to somebody else. The helper can "
                                                        "remove them with your permission.")
                                         : context.text("They stay where they are. The reason stands beside each."),
                              theme::Type::body, theme::readable(theme::secondary, theme::sheet), list_size.width(),
                              this));
  auto* list = new NotRemovedList(context, list_size, this);
  std::vector<NotRemovedList::Line> lines;
  const auto reasons = reasons_of(context.removal.outcome.left);
  for (const Url& url : context.sharedCleaner().remainder_urls) {
    const auto reason = reasons.find(url.path());
    lines.push_back({url, reason == reasons.end() ? QString() : context.text(left_reason_text(reason->second))});
  }
  list->show_lines(std::move(lines));
  layout->addWidget(list);
  cancel_button = new PushButton(context.text("Go on"), ButtonKind::plain, this);
  show_button = new PushButton(context.text("Show in file viewer"), ButtonKind::plain, this);
  download_button = new PushButton(context.text("Get the helper"), ButtonKind::accent, this);
  layout->addLayout(centred_row({cancel_button, show_button, download_button}));
  download_button->setVisible(has_helper);
  connect(cancel_button, &QAbstractButton::clicked, this, &DownloadHelper::cancel);
  connect(show_button, &QAbstractButton::clicked, this, &DownloadHelper::show_in_finder);
  connect(download_button, &QAbstractButton::clicked, this, &DownloadHelper::download);
  cancel_button->setFocus();
}

void DownloadHelper::cancel() {
  Q_EMIT dismissed();
  hand_off_.cancel();
}

void DownloadHelper::show_in_finder() {
  context_.workspace.reveal(context_.sharedCleaner().remainder_urls);
}

void DownloadHelper::download() {
  context_.workspace.open_link(links::helper_page);
}

}  // namespace tarnby
