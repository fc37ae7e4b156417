#include "inventory/application.h"

#include <algorithm>
#include <string_view>

#include "inventory/application_search.h"
#include "places/macos_home.h"
#include "platform/platform.h"

namespace tarnby {

namespace {

constexpr std::string_view no_text = "empty_string";
constexpr std::string_view no_value = "null_string";

std::string text_or(const Bundle& bundle, std::string_view key, std::string_view fallback) {
  return bundle.text(key).value_or(std::string(fallback));
}

std::string label_name_of(const Bundle& bundle) {
  std::string name = text_or(bundle, "CFBundleName", no_text);
  std::replace(name.begin(), name.end(), ' ', '_');
  return name;
}

std::string bundle_name_of(const Bundle& bundle) {
  const auto identifier = bundle.identifier();
  if (!identifier) return std::string(no_text);
  const auto dot = identifier->rfind('.');
  return dot == std::string::npos ? *identifier : identifier->substr(dot + 1);
}

std::optional<std::string> company_name_of(const Bundle& bundle) {
  auto identifier = bundle.identifier();
  if (!identifier) return {};
  const auto dot = identifier->find('.');
  if (dot == std::string::npos) return identifier;
  const auto start = dot + 1;
  return identifier->substr(start, identifier->find('.', start) - start);
}

Image app_icon_of(const Bundle& bundle) {
  std::string name = text_or(bundle, "CFBundleIconFile", "");
  // Only an extension that begins with "i" (icns, ico) is cut off, and then everything from the first dot on.
  if (name.find(".i") != std::string::npos) name.resize(name.find('.'));
  const Url image = bundle.image_resource(name);
  return image.empty() ? Image() : Image::file(image);
}

std::string app_version_of(const Bundle& bundle) {
  if (auto version = bundle.text("CFBundleShortVersionString")) return *version;
  return text_or(bundle, "CFBundleVersion", "1.0");
}

bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

/// Whether an application stays in the list when those of the operating system are left out. The rows apply in order,
/// so the last one sees identifiers of the developer tools only. Pinned by
/// Application.leaves_out_the_systems_own_applications_unless_asked_for_them.
bool is_kept(const std::string& identifier) {
  if (contains(identifier, "com.apple.iTunes")) return true;
  if (contains(identifier, "iWork")) return true;
  if (!contains(identifier, "com.apple")) return true;
  if (!contains(identifier, "com.apple.dt")) return false;
  return !contains(identifier, "com.Ildren.Corvash.Uninstaller-orvane");
}

bool is_named_application(const Url& url) {
  return is_application_name(url.last_path_component());
}

}  // namespace

Image app_icon_of(const FileManager& files, const Url& bundle) {
  return app_icon_of(Bundle(files, bundle));
}

Application& Application::sharedApplication() {
  static Application application(Platform::shared());
  return application;
}

Application::Application(Platform& platform)
    : app_settings(&platform.app_settings),
      appDelegate(platform.application_delegate),
      url_home(platform.bookmarks.resolve_and_access(Grant::home)),
      url_library(url_home.appending(macos_home::library)),
      url_applications(platform.bookmarks.resolve_and_access(Grant::applications)),
      items(std::make_shared<ApplicationItems>()),
      installed_apps(items),
      platform_(platform),
      files_(platform.files),
      text_(platform.text) {}

void Application::installedApplications(const std::function<void(bool)>& handler) {
  const bool keep_all = app_settings->integer("includeDefaultApps") == 1;
  auto found = std::make_shared<ApplicationItems>();
  for (const Url& url : candidates()) {
    if (files_.stopped_looking()) break;
    auto item = application(url);
    if (item->bundle && (keep_all || is_kept(*item->bundle))) found->push_back(std::move(item));
  }
  text_.sort_by_label(*found, [](const auto& item) -> const std::string& { return item->label; });
  items = found;
  installed_apps = found;
  handler(true);
}

std::vector<Url> Application::candidates() const {
  std::vector<Url> found;
  if (app_settings->integer("include_user_apps") == 1) add_user_applications(found);
  for (const Entry& entry : files_.list(url_applications)) {
    if (is_named_application(entry.url)) {
      found.push_back(entry.url);
    } else if (entry.url.last_path_component() == macos_home::system_applications) {
      if (app_settings->integer("includeUtilities") == 1) add_utilities(found, entry.url);
    } else {
      add_applications_in(files_, entry.url, 2, found);
    }
  }
  add_applications_in(files_, url_home.appending("Applications"), 1, found);
  return found;
}

void Application::add_user_applications(std::vector<Url>& found) const {
  const auto is_application = [](std::string_view name, EntryKind) { return is_application_name(name); };
  for (Url& url : files_.walk(url_home, Hidden::take, Packages::skip, is_application)) {
    if (!contains(url.path(), ".app/") && !contains(url.path(), ".framework/")) found.push_back(std::move(url));
  }
}

/// Applications that lie directly in Utilities are the system's own tools and are not listed; those in folders are.
void Application::add_utilities(std::vector<Url>& found, const Url& utilities) const {
  for (const Entry& entry : files_.list(utilities)) {
    if (!is_named_application(entry.url)) add_applications_in(files_, entry.url, 2, found);
  }
}

std::shared_ptr<ApplicationItem> Application::application(const Url& url) const {
  const Bundle bundle(files_, url);
  auto item = std::make_shared<ApplicationItem>();
  item->label = setLabel(url.path());
  item->label_name = label_name_of(bundle);
  item->url = url;
  item->icon = setIcon(url.path());
  item->app_icon = app_icon_of(bundle);
  item->bundle = bundle.identifier();
  item->bundle_name = bundle_name_of(bundle);
  item->bundle_name_info = text_or(bundle, "CFBundleName", no_text);
  item->executable_info = text_or(bundle, "CFBundleExecutable", no_text);
  item->company_name = company_name_of(bundle);
  item->app_version = app_version_of(bundle);
  item->log_file_name = text_or(bundle, "LogName", no_value);
  return item;
}

ApplicationItems Application::dragAndDropApplications(std::span<const std::string> paths) const {
  ApplicationItems dropped;
  for (const std::string& path : paths) {
    const Url url = Url::file(path);
    if (url.path_extension() == "app") dropped.push_back(application(url));
  }
  return dropped;
}

std::string Application::setLabel(const std::string& path) const {
  return files_.display_name(Url::file(path));
}
std::string Application::setLabelName(const Url& url) const {
  return label_name_of(Bundle(files_, url));
}
Image Application::setIcon(const std::string& path) const {
  return Image::icon_of(Url::file(path));
}
Image Application::setAppIcon(const Url& url) const {
  return app_icon_of(files_, url);
}

std::optional<std::string> Application::setBundle(const Url& url) const {
  return bundle_identifier(files_, url);
}

std::string Application::setBundleName(const Url& url) const {
  return bundle_name_of(Bundle(files_, url));
}

std::string Application::setBundleNameInfo(const Url& url) const {
  return text_or(Bundle(files_, url), "CFBundleName", no_text);
}

std::string Application::setExecutableInfo(const Url& url) const {
  return text_or(Bundle(files_, url), "CFBundleExecutable", no_text);
}

std::optional<std::string> Application::setCompanyName(const Url& url) const {
  return company_name_of(Bundle(files_, url));
}

std::string Application::setAppVeersion(const Url& url) const {
  return app_version_of(Bundle(files_, url));
}

std::string Application::setLogFileName(const Url& url) const {
  return text_or(Bundle(files_, url), "LogName", no_value);
}

}  // namespace tarnby
