#include "app/parts/removal_run.h"

#include <algorithm>
#include <utility>

#include "app/parts/app_context.h"
#include "app/parts/look_up.h"
#include "engine/chosen_amount.h"
#include "engine/cleaner.h"
#include "platform/platform.h"

namespace tarnby {

namespace {

/// The order in which whatever lies inside a folder follows it at once.
bool stands_before(const Url& one, const Url& other) {
  const auto rank = [](char c) { return c == '/' ? 0 : static_cast<unsigned char>(c) + 1; };
  return std::ranges::lexicographical_compare(one.path(), other.path(), {}, rank, rank);
}

/// Bytes of what was left; what lies inside something else that was left is counted with that.
std::int64_t bytes_of(Measurer& measurer, const std::vector<LeftEntry>& left) {
  std::vector<Url> urls;
  urls.reserve(left.size());
  for (const LeftEntry& entry : left) urls.push_back(entry.url);
  std::ranges::sort(urls, stands_before);
  std::vector<Url> outermost;
  for (const Url& url : urls) {
    if (outermost.empty() || !url.is_within(outermost.back())) outermost.push_back(url);
  }
  return measurer.overall_size_of_files(outermost);
}

/// In the background, from beginning to end.
RemovalOutcome run(AppContext& context, Cleaner& cleaner, const RemovalRequest& request) {
  Platform& platform = context.platform;
  RemovalRun& removal = context.removal;
  RemovalOutcome outcome;
  const auto space = [&] { return disk_space(platform.files.granted(), cleaner.url_home); };
  outcome.space_before = space();
  const std::vector<Removal> results =
      request.remove({.stop = &removal.stopped, .stop_now = &removal.stopped, .progress = &removal.progress});
  outcome.space_after = space();
  context.begin_looking();  // a scan that was given up may have stopped it
  outcome.left = left_of(platform.files, request.files, results);
  outcome.left_bytes = bytes_of(platform.measurer, outcome.left);
  outcome.cleaned = cleaned_amount(cleaner.layout(), cleaner.wasCleaned, platform.measurer, outcome.left, results);
  return outcome;
}

void count_outcome(AppContext& context) {
  RemovalRun& removal = context.removal;
  context.sharedCleaner().wasCleaned = removal.untaken->cleaned;
  removal.outcome = std::move(*std::exchange(removal.untaken, nullptr));
  removal.running = false;
}

}  // namespace

void start_removal(AppContext& context, RemovalRequest request) {
  RemovalRun& removal = context.removal;
  removal.running = true;
  removal.counted = false;
  removal.left_unsure = false;
  removal.stopped = context.ending.load();
  removal.asked_entries = request.files.size();
  removal.asked_bytes = request.bytes;
  for (auto* count : {&removal.progress.entries, &removal.progress.listed, &removal.progress.bytes}) *count = 0;
  removal.outcome = {};
  // Nobody replaces the engine's lists meanwhile: that takes another scan, which waits behind this removal.
  context.background.async([&context, &cleaner = context.sharedCleaner(), request = std::move(request)] {
    context.removal.untaken = std::make_unique<RemovalOutcome>(run(context, cleaner, request));
    context.main_queue().async([&context] {
      count_outcome(context);
      context.notifications().post(RemovalRun::removal_changed);
    });
  });
}

void count_removal(AppContext& context) {
  std::int64_t& cleaned = context.sharedCleaner().wasCleaned;
  context.settings().add_integer("TotallyCleaned", std::exchange(cleaned, 0));
  context.removal.counted = true;
  context.flush_settings();
}

void count_unseen_removal(AppContext& context) {
  if (context.removal.untaken) count_outcome(context);
  if (!context.removal.counted) count_removal(context);
}

void look_again_at_left(AppContext& context) {
  struct Still {
    std::vector<LeftEntry> left;
    std::int64_t bytes;
  };
  look_up(
      context.io_queue, context.main_queue(),
      [&context, left = context.removal.outcome.left] {
        Still still{left, 0};
        std::erase_if(still.left, [&](const LeftEntry& entry) { return !context.files().exists(entry.url); });
        still.bytes = bytes_of(context.measurer(), still.left);
        return still;
      },
      [&context](const Still& still) {
        RemovalRun& removal = context.removal;
        if (removal.running) return;  // another one
        removal.left_unsure = false;
        removal.outcome.left = still.left;
        removal.outcome.left_bytes = still.bytes;
        context.notifications().post(RemovalRun::removal_changed);
      });
}

}  // namespace tarnby
