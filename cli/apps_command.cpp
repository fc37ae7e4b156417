#include "cli/commands.h"
#include "cli/json.h"
#include "cli/table.h"
#include "inventory/application.h"

namespace tarnby::cli {

namespace {

/// The bundle that a typed path means: the links that the person's own path leads through are resolved, the bundle
/// itself must be none.
Url application_at(const Context& context, const std::string& typed) {
  const Url path = typed_path(typed);
  const Url folder = real_folder(path.parent());
  Url url = folder.appending(path.last_path_component());
  if (!context.platform.files.is_application(url)) {
    throw CommandError(wrong_usage,
                       "\"" + one_line(typed) + "\" is not an application; give the path of a folder NAME.app");
  }
  return url;
}

}  // namespace

ExitStatus run_apps(Context& context) {
  need_folders(context);
  Application& inventory = Application::sharedApplication();
  inventory.installedApplications([](bool) {});
  if (context.asked.json) {
    Json list = Json::array();
    for (const auto& item : *inventory.items) list.push_back(json_application(*item));
    context.out << Json{{"applications", std::move(list)}}.dump() << '\n';
    return done;
  }
  if (inventory.items->empty()) {
    context.out << "No applications were found.\n";
    return done;
  }
  Table table({Table::Align::left, Table::Align::left, Table::Align::left}, 0);
  for (const auto& item : *inventory.items) {
    table.line({one_line(item->label), one_line(item->app_version), one_line(item->url.path())});
  }
  table.print(context.out);
  return done;
}

ExitStatus run_app(Context& context) {
  const Url url = application_at(context, context.asked.arguments.front());
  need_folders(context);
  const auto item = Application::sharedApplication().application(url);
  item->app_size_in_bytes = context.platform.measurer.overall_size_of_direcory(url);
  item->app_size = context.platform.text.byte_count(item->app_size_in_bytes);
  if (context.asked.json) {
    const Json result = {{"application", json_application(*item)},
                         {"app_size_in_bytes", item->app_size_in_bytes},
                         {"app_size", json_optional(item->app_size)},
                         {"optional_bundle", json_optional(item->optional_bundle)},
                         {"optional_developer_id", json_optional(item->optional_developer_id)}};
    context.out << result.dump() << '\n';
    return done;
  }
  const std::pair<const char*, std::string> lines[] = {
      {"Name", item->label},
      {"Version", item->app_version},
      {"Identifier", item->bundle.value_or("none")},
      {"Company", item->company_name.value_or("none")},
      {"Size", *item->app_size},
      {"Icon", item->app_icon ? item->app_icon.url.path() : "none"},
      {"Path", item->url.path()},
  };
  Table table({Table::Align::left, Table::Align::left}, 0);
  for (const auto& [name, value] : lines) table.line({name, one_line(value)});
  table.print(context.out);
  return done;
}

}  // namespace tarnby::cli
