#include "cli/commands.h"
#include "cli/json.h"
#include "cli/look_problems.h"
#include "cli/table.h"
#include "inventory/application.h"

namespace tarnby::cli {

ExitStatus run_apps(Context& context) {
  need_folders(context);
  Application& inventory = Application::sharedApplication();
  const LookWatch watch;
  inventory.installedApplications([](bool) {});
  const ExitStatus status = tell_missed(context, watch.missed());
  if (context.asked.json) {
    Json list = Json::array();
    for (const auto& item : *inventory.items) list.push_back(json_application(*item));
    context.out << json_line(json_answer(context.layout(), {{"applications", std::move(list)}}));
    return status;
  }
  if (inventory.items->empty()) {
    context.out << "No applications were found.\n";
    return status;
  }
  Table table({Table::Align::left, Table::Align::left, Table::Align::left}, 0);
  for (const auto& item : *inventory.items) {
    table.line({one_line(item->label), one_line(item->app_version), one_line(item->url.path())});
  }
  table.print(context.out);
  return status;
}

}  // namespace tarnby::cli
