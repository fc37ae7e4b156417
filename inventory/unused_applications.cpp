#include "inventory/unused_applications.h"

#include <algorithm>
#include <unordered_map>

#include "inventory/application.h"
#include "inventory/application_search.h"
#include "platform/platform.h"

namespace tarnby {

namespace {

constexpr std::int64_t unused_after_days = 30;

/// Applications of the system are never called unused, its developer tools included, nor is what lies inside another
/// bundle, whatever the case of its extension.
bool may_be_unused(const FileManager& files, const Url& application) {
  const auto identifier = bundle_identifier(files, application);
  if (!identifier || identifier->find("com.apple") != std::string::npos) return false;
  const FoldedText path(application.path());
  return !path.contains(FoldedText(".app/")) && !path.contains(FoldedText(".framework/"));
}

/// Adds another copy, which may have been found on two ways.
void add_copy(ApplicationItem& item, const Url& copy) {
  const bool is_known =
      copy == item.url || std::find(item.instances.begin(), item.instances.end(), copy) != item.instances.end();
  if (!is_known) item.instances.push_back(copy);
}

}  // namespace

bool counts_as_unused(std::optional<Moment> used, std::optional<Moment> changed, Moment now) {
  if (!changed || days_between(*changed, now) < unused_after_days) return false;
  return !used || days_between(*used, now) >= unused_after_days;
}

void Application::unusedApplications(const std::function<void(bool)>& handler) {
  unused_apps = {};
  const Moment now = platform_.now();
  ApplicationItems found;
  std::unordered_map<std::string, std::shared_ptr<ApplicationItem>> by_bundle;
  for (const Url& url : applications_of_the_user(files_, url_applications, url_home)) {
    if (files_.stopped_looking()) break;
    if (!may_be_unused(files_, url)) continue;
    const auto used = platform_.metadata.last_used_date(url);
    if (!counts_as_unused(used, platform_.metadata.content_change_date(url), now)) continue;
    auto item = application(url);
    item->launch_date = used.value_or(now);
    if (!item->bundle) continue;  // gone meanwhile
    const auto [known, is_first] = by_bundle.try_emplace(*item->bundle, item);
    if (is_first) {
      found.push_back(std::move(item));
    } else {
      add_copy(*known->second, url);
    }
  }
  text_.sort_by_label(found, [](const auto& item) -> const std::string& { return item->label; });
  unused_apps = std::move(found);
  handler(true);
}

}  // namespace tarnby
