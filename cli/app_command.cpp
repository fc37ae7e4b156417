#include "cli/commands.h"
#include "cli/json.h"
#include "cli/look_problems.h"
#include "cli/progress.h"
#include "cli/related_files.h"
#include "cli/table.h"
#include "inventory/application.h"

namespace tarnby::cli {

namespace {

/// The table of what the bundle tells of itself.
void print_description(Context& context, const ApplicationItem& item) {
  const std::pair<const char*, std::string> lines[] = {
      {"Name", item.label},
      {"Version", item.app_version},
      {"Identifier", item.bundle.value_or("none")},
      {"Company", item.company_name.value_or("none")},
      {"Size", *item.app_size},
      {"Icon", item.app_icon ? item.app_icon.url.path() : "none"},
      {"Path", item.url.path()},
  };
  Table table({Table::Align::left, Table::Align::left}, 0);
  for (const auto& [name, value] : lines) table.line({name, one_line(value)});
  table.print(context.out);
}

void find_files(Context& context, ApplicationItem& item) {
  Progress progress(context);
  progress.show("Looking for the files of " + one_line(item.label));
  item.getfiles(context.platform, [] {});
}

}  // namespace

ExitStatus run_app(Context& context) {
  const Url url = application_at(context, context.asked.arguments.front());
  need_folders(context);
  const LookWatch watch;
  const auto item = Application::sharedApplication().application(url);
  item->calculate_application_size_with_complete_handler(context.platform, [] {});
  // Told before the search, which rewrites the record.
  const Json application = json_application(*item);
  if (!context.asked.json) print_description(context, *item);
  find_files(context, *item);
  const ExitStatus status = tell_missed(context, watch.missed());
  if (!context.asked.json) {
    context.out << '\n';
    print_related_files(context, *item);
    return status;
  }
  const Json result = {{"application", application},
                       {"app_size_in_bytes", item->app_size_in_bytes},
                       {"app_size", json_optional(item->app_size)},
                       {"optional_bundle", json_optional(item->optional_bundle)},
                       {"optional_developer_id", json_optional(item->optional_developer_id)},
                       {"groups", json_related_files(*item)}};
  context.out << json_line(json_answer(context.layout(), result));
  return status;
}

}  // namespace tarnby::cli
