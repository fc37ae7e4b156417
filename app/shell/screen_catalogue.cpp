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
#include "app/parts/category_look.h"
#include "app/privacy/guide_pages.h"
#include "app/scheduler/enable_scheduler_view_controller.h"
#include "app/scheduler/preferences_view_controller.h"
#include "app/smart/about_panel.h"
#include "app/smart/smart_clean_view_controller.h"
#include "app/smart/smart_cleanup_view_controller.h"
#include "app/smart/smart_scan_view_controller.h"
#include "app/smart/warning_cleanup_view_controller.h"
#include "engine/categories.h"

namespace tarnby {

namespace {

template <class Controller>
std::unique_ptr<Screen> make(AppContext& context) {
  return std::make_unique<Controller>(context);
}

/// The panel that tells about a category.
template <class Panel>
ScreenRow about_row(const CategoryLook& look) {
  return {look.about.identifier,
          [type = look.type](AppContext& context) { return std::make_unique<Panel>(context, type); }};
}

template <int number>
std::unique_ptr<Screen> make_guide_page(AppContext& context) {
  return std::make_unique<GuidePage>(context, number);
}

std::vector<ScreenRow> main_rows() {
  std::vector<ScreenRow> rows = {
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
  for (const CategoryLook& look : category_looks()) {
    if (look.page != JunkPage::none) rows.push_back(about_row<CategoryAbout>(look));
  }
  return rows;
}

std::vector<ScreenRow> smart_clean_rows() {
  std::vector<ScreenRow> rows = {
      {"SmartScan", make<SmartScanViewController>},
      {"SmartClean", make<SmartCleanViewController>},
      {"SmartCleanup", make<SmartCleanupViewController>},
      {"WarningCleanup", make<WarningCleanupViewController>},
  };
  for (const Category& category : smart_categories()) rows.push_back(about_row<AboutPanel>(look_of(category.type)));
  return rows;
}

}  // namespace

const ScreenCatalogue& ScreenCatalogue::main() {
  static const ScreenCatalogue catalogue("main", main_rows());
  return catalogue;
}

const ScreenCatalogue& ScreenCatalogue::smart_clean() {
  static const ScreenCatalogue catalogue("SmartClean", smart_clean_rows());
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
