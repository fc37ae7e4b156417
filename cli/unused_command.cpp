#include "cli/commands.h"
#include "cli/json.h"
#include "cli/look_problems.h"
#include "cli/progress.h"
#include "cli/table.h"
#include "inventory/application.h"
#include "inventory/unused_applications.h"
#include "platform/platform.h"
#include "text/iso_date.h"

namespace tarnby::cli {

namespace {

Json json_unused(const ApplicationItem& item) {
  Json json = json_application(item);
  json["launch_date"] = item.launch_date ? Json(iso_date(*item.launch_date)) : Json();
  json["instances"] = json_paths(item.instances);
  return json;
}

/// An application that was never opened carries the moment of the search; one that was is unused only after weeks.
std::string last_opened(const ApplicationItem& item, Moment now) {
  if (!item.launch_date || !counts_as_unused(item.launch_date, item.launch_date, now)) return "never opened";
  return "opened " + iso_date(*item.launch_date).substr(0, 10);
}

void print_unused(Context& context, const ApplicationItems& items) {
  if (items.empty()) {
    context.out << "No unused applications were found.\n";
    return;
  }
  Table table({Table::Align::left, Table::Align::left, Table::Align::left}, 0);
  for (const auto& item : items) {
    table.line({one_line(item->label), last_opened(*item, context.platform.now()), one_line(item->url.path())});
    for (const Url& copy : item->instances) table.line({"", "another copy", one_line(copy.path())});
  }
  table.print(context.out);
}

}  // namespace

ExitStatus run_unused(Context& context) {
  need_folders(context);
  Application& inventory = Application::sharedApplication();
  const LookWatch watch;
  {
    Progress progress(context);
    progress.show("Looking for unused applications");
    inventory.unusedApplications([](bool) {});
  }
  const ExitStatus status = tell_missed(context, watch.missed());
  if (context.asked.json) {
    Json list = Json::array();
    for (const auto& item : inventory.unused_apps) list.push_back(json_unused(*item));
    context.out << json_line(json_answer(context.layout(), {{"applications", std::move(list)}}));
  } else {
    print_unused(context, inventory.unused_apps);
  }
  return status;
}

}  // namespace tarnby::cli
