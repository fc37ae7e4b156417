#include "cli/smart_scan_run.h"

#include <exception>
#include <string_view>

#include "cli/progress.h"
#include "files/bytes.h"

namespace tarnby::cli {

namespace {

void show_progress(Context& context, Progress& progress, std::string_view label, std::int64_t found) {
  progress.show("Scan in \"" + std::string(label) + "\"  " + context.text().byte_count(found) + " found so far");
}

}  // namespace

std::vector<std::string> run_smart_scan(Context& context, Cleaner& cleaner) {
  std::vector<std::string> posted;
  std::vector<NotificationCenter::Token> tokens;
  NotificationCenter& center = context.notifications();
  Progress progress(context);
  show_progress(context, progress, smart_categories().front().label, 0);
  std::int64_t found = 0;
  const Category* finished = &smart_categories().front();
  for (const Category& category : smart_categories().subspan(1)) {
    std::string name = std::string(category.smart.notification);
    tokens.push_back(center.add_observer(name, [&, name, finished] {
      // The group of a finished category may be read while the scan goes on; the lists and totals still change.
      found = add_bytes(found, (cleaner.*finished->smart.outline)->size);
      posted.push_back(name);
      show_progress(context, progress, category.label, found);
    }));
    finished = &category;
  }
  std::exception_ptr failure;
  {
    BackgroundQueue background;
    background.async([&] {
      try {
        cleaner.smart_clean_with_complete_handler([] {});
      } catch (...) {  // no memory; told on the main thread, as of every command
        failure = std::current_exception();
      }
      context.main_queue.quit();
    });
    context.main_queue.run();
  }
  for (const auto token : tokens) center.remove_observer(token);
  if (failure) std::rethrow_exception(failure);
  return posted;
}

}  // namespace tarnby::cli
