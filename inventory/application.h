#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "inventory/application_item.h"
#include "platform/bundle.h"

namespace tarnby {

class AppSettings;
class ApplicationDelegate;
class FileManager;
class Platform;
class Text;

/// The icon file that a bundle's Info.plist names; none when it names none, or none that is there. Any thread may call.
Image app_icon_of(const FileManager& files, const Url& bundle);

/// The inventory of installed applications. Operations run on the caller's thread and report no failure: what cannot be
/// read contributes nothing, or a fallback text. Lists are replaced whole by each run; one run at a time.
class Application {
 public:
  /// The one of this process. Any thread may call.
  static Application& sharedApplication();

  /// Resolves the stored grants "home" and "Applications" and begins to access them; without them nothing is found.
  explicit Application(Platform& platform);

  // The fields.
  AppSettings* app_settings;
  ApplicationDelegate* appDelegate;
  Url url_home;
  Url url_library;
  Url url_applications;
  std::shared_ptr<ApplicationItems> items;
  /// The same list as `items` after `installedApplications`.
  std::shared_ptr<ApplicationItems> installed_apps;
  /// Result of `unusedApplications`.
  ApplicationItems unused_apps;

  /// Fills `items` and `installed_apps` with the applications of the granted folders, sorted by label, then calls the
  /// handler with true. Applications of the operating system are left out unless the settings ask for them.
  void installedApplications(const std::function<void(bool)>& handler);

  /// Fills `unused_apps` with the applications, of those the user put on the disk, that were neither opened nor changed
  /// for thirty days, sorted by label, then calls the handler with true. Copies of one identifier are one item: the
  /// first one found, the others in its `instances`. Its `launch_date` is when that first one was last opened, or the
  /// moment of the search when it never was. Folders that applications are put in are searched, whatever the settings
  /// say.
  void unusedApplications(const std::function<void(bool)>& handler);

  /// Describes one bundle; never none, also for a bundle without an identifier.
  std::shared_ptr<ApplicationItem> application(const Url& url) const;

  /// Describes each path whose extension is exactly "app", in the order given.
  ApplicationItems dragAndDropApplications(std::span<const std::string> paths) const;

  // One value of a bundle each, named after the field of ApplicationItem that it feeds, with what that field says when
  // the bundle lacks it. They read the bundle each time and store nothing.
  std::string setLabel(const std::string& path) const;
  std::string setLabelName(const Url& url) const;
  Image setIcon(const std::string& path) const;
  Image setAppIcon(const Url& url) const;
  std::optional<std::string> setBundle(const Url& url) const;
  std::string setBundleName(const Url& url) const;
  std::string setBundleNameInfo(const Url& url) const;
  std::string setExecutableInfo(const Url& url) const;
  std::optional<std::string> setCompanyName(const Url& url) const;
  // The double "e" is the name by which callers know it.
  std::string setAppVeersion(const Url& url) const;
  std::string setLogFileName(const Url& url) const;

 private:
  std::vector<Url> candidates() const;
  void add_user_applications(std::vector<Url>& found) const;
  void add_utilities(std::vector<Url>& found, const Url& utilities) const;

  Platform& platform_;
  FileManager& files_;
  const Text& text_;
};

}  // namespace tarnby
