#include "app/parts/screen_catalogue.h"

#include <QtGlobal>
#include <algorithm>

#include "app/access/sandbox_view_controller.h"
#include "app/cleaned/cleaned_view_controller.h"
#include "app/cleaned/download_uninstaller_orvane.h"
#include "app/cleaned/rate_on_app_store.h"
#include "app/home/home_view_controller.h"
#include "app/junk/applications_view_controller.h"
#include "app/junk/category_about.h"
#include "app/junk/delete_view_controller.h"
#include "app/junk/large_files_view_controller.h"
#include "app/junk/media_view_controller.h"
#include "app/junk/page_controllers.h"
#include "app/junk/scan_view_controller.h"
#include "app/junk/select_browsers.h"
#include "app/privacy/guide_pages.h"
#include "app/scheduler/enable_scheduler_view_controller.h"
#include "app/scheduler/preferences_view_controller.h"
#include "app/smart/about_panel.h"
#include "app/smart/smart_clean_view_controller.h"
#include "app/smart/smart_cleanup_view_controller.h"
#include "app/smart/smart_scan_view_controller.h"
#include "app/smart/warning_cleanup_view_controller.h"

namespace tarnby {

namespace {

template <class Controller>
std::unique_ptr<Screen> make(AppContext& context) {
  return std::make_unique<Controller>(context);
}

/// A panel that tells about one category.
template <class Panel, const auto& type>
std::unique_ptr<Screen> make_about(AppContext& context) {
  return std::make_unique<Panel>(context, type);
}

template <int number>
std::unique_ptr<Screen> make_guide_page(AppContext& context) {
  return std::make_unique<GuidePage>(context, number);
}

constexpr char caches[] = "caches";
constexpr char logs[] = "logs";
constexpr char remainders[] = "remainders";
constexpr char browsers[] = "browsers";
constexpr char mails[] = "mails";
constexpr char installs[] = "installs";
constexpr char trash[] = "trash";
constexpr char downloads[] = "downloads";
constexpr char large_files[] = "large-files";

// clang-format off
constexpr ScreenRow main_rows[] = {
    {"Sandbox", make<SandboxViewController>},
    {"Home", make<HomeViewController>},
    {"Scan", make<ScanViewController>},
    {"PageController", make<PageController>},
    {"ApplicationsJunk", make<ApplicationsViewController>},
    {"MediaJunk", make<MediaViewController>},
    {"Delete", make<DeleteViewController>},
    {"Cleaned", make<CleanedViewController>},
    {"ApplicationsPageController", make<ApplicationsPageController>},
    {"MediaPageController", make<MediaPageController>},
    {"AboutCaches", make_about<CategoryAbout, caches>},
    {"AboutLogs", make_about<CategoryAbout, logs>},
    {"AboutRemainders", make_about<CategoryAbout, remainders>},
    {"AboutBrowsers", make_about<CategoryAbout, browsers>},
    {"AboutDownloads", make_about<CategoryAbout, downloads>},
    {"AboutTrash", make_about<CategoryAbout, trash>},
    {"AboutMails", make_about<CategoryAbout, mails>},
    {"AboutLargeFiles", make_about<CategoryAbout, large_files>},
    {"LargeFiles", make<LargeFilesViewController>},
    {"SelectBrowsers", make<SelectBrowsers>},
    {"DownloadUninstallerOrvane", make<UninstallerOrvaneViewcontroller>},
    {"EnableScheduler", make<EnableSchedulerViewController>},
    {"Preferences", make<PreferencesViewController>},
    {"PrivacyFullDiskPage1", make_guide_page<1>},
    {"PrivacyFullDiskPage2", make_guide_page<2>},
    {"PrivacyFullDiskPage3", make_guide_page<3>},
    {"RateOnAppStore", make<RateOnAppStore>},
};

constexpr ScreenRow smart_clean_rows[] = {
    {"AboutCaches", make_about<AboutPanel, caches>},
    {"AboutLogs", make_about<AboutPanel, logs>},
    {"AboutRemainders", make_about<AboutPanel, remainders>},
    {"AboutBrowsers", make_about<AboutPanel, browsers>},
    {"AboutMails", make_about<AboutPanel, mails>},
    {"AboutInstalls", make_about<AboutPanel, installs>},
    {"AboutTrash", make_about<AboutPanel, trash>},
    {"SmartScan", make<SmartScanViewController>},
    {"SmartClean", make<SmartCleanViewController>},
    {"SmartCleanup", make<SmartCleanupViewController>},
    {"WarningCleanup", make<WarningCleanupViewController>},
};
// clang-format on

}  // namespace

const ScreenCatalogue& ScreenCatalogue::main() {
  static const ScreenCatalogue catalogue("main", main_rows);
  return catalogue;
}

const ScreenCatalogue& ScreenCatalogue::smart_clean() {
  static const ScreenCatalogue catalogue("SmartClean", smart_clean_rows);
  return catalogue;
}

std::unique_ptr<Screen> ScreenCatalogue::make(std::string_view identifier, AppContext& context) const {
  const auto row = std::find_if(rows_.begin(), rows_.end(),
                                [&](const ScreenRow& candidate) { return candidate.identifier == identifier; });
  if (row == rows_.end()) {
    qFatal("The catalogue %.*s has no screen %.*s.", static_cast<int>(name_.size()), name_.data(),
           static_cast<int>(identifier.size()), identifier.data());
  }
  return row->make(context);
}

}  // namespace tarnby
