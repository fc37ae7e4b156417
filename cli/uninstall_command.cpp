#include <algorithm>

#include "cli/commands.h"
#include "cli/json.h"
#include "cli/look_problems.h"
#include "cli/progress.h"
#include "cli/related_files.h"
#include "cli/removal_report.h"
#include "inventory/application.h"

namespace tarnby::cli {

namespace {

/// Nothing outside the granted folders is ever removed; better to say so than to leave the application and take the
/// rest.
void need_access_to(Context& context, const Url& application) {
  (void)context.bookmarks().resolve_and_access(Grant::disk);  // with a grant of the disk, what is on it may be removed
  if (context.files().granted().holds(application)) return;
  throw CommandError(no_access, "\"" + one_line(application.path()) +
                                    "\" lies in none of the folders that access was given to (\"home\", "
                                    "\"Applications\", \"macOS\"); give access to the folder that holds it, with "
                                    "--applications DIR or tarnby-cleaner-cli grant Applications DIR");
}

/// Looks for everything that a removal takes.
void find_files(Context& context, ApplicationItem& item) {
  Progress progress(context);
  progress.show("Looking for the files of " + one_line(item.label));
  item.find_removable_files(context.platform);
  item.measure_files(context.platform);
}

void show_result(Context& context, const RemovalReport& report) {
  if (context.asked.json) {
    context.out << json_line(json_answer(context.layout(), json_removal(report)));
  } else {
    print_removal(context, report);
  }
}

}  // namespace

ExitStatus run_uninstall(Context& context) {
  const Url url = application_at(context, context.asked.arguments.front());
  need_folders(context);
  need_access_to(context, url);
  need_somebody_to_ask(context);
  const LookWatch watch;
  const auto item = Application::sharedApplication().application(url);
  find_files(context, *item);
  const ExitStatus looked = tell_missed(context, watch.missed());
  const std::vector<Url> listed = item->listed_files();
  const RemovalPreview preview = preview_removal(context, listed);
  const std::int64_t counted = bytes_of(*item, preview.would_remove);
  const std::int64_t bytes = std::max<std::int64_t>(0, counted - bytes_staying(context, preview, false));
  if (context.asked.dry_run) {
    print_preview(context, preview, {counted, bytes});
    return looked;
  }
  if (!removal_is_agreed(context, preview, bytes, [&] { print_related_files(context, *item); })) {
    if (context.asked.json) show_result(context, declined_removal(context, preview));
    return done;
  }
  // What was shown goes, and nothing that a second search might find.
  const StopOnInterrupt stop;
  const RemovalReport report = run_removal(context, listed, stop, [&](const RemovalOptions& options) {
    return item->remove_found_files(context.platform, options);
  });
  show_result(context, report);
  const ExitStatus removal = status_of_removal(report);
  return removal == done ? looked : removal;
}

}  // namespace tarnby::cli
