#pragma once

#include <memory>
#include <vector>

#include "app/parts/screen.h"
#include "ui/check_button.h"
#include "ui/push_button.h"

class QLabel;

namespace tarnby {

/// Lets a person choose which browsers take part in the category of browsers. A choice is kept, and moves that
/// browser's files into or out of the category at once.
class SelectBrowsers : public Screen {
  Q_OBJECT
 public:
  explicit SelectBrowsers(AppContext& context);

  /// One browser.
  struct Browser {
    const char* name;
    std::shared_ptr<CleanerItem> Cleaner::*item;
    const char* setting;
  };

  AppSettings& app_settings;
  Cleaner& sharedCleaner;
  CheckButton* chrome_button = nullptr;
  CheckButton* mozilla_button = nullptr;
  CheckButton* safari_button = nullptr;
  PushButton* done_button;
  QLabel* chrome_size = nullptr;
  QLabel* mozilla_size = nullptr;
  QLabel* safari_size = nullptr;

  void select_chrome();
  void select_mozilla();
  void select_safari();

 private:
  void add_row(const Browser& browser, CheckButton*& button, QLabel*& size);
  void select(const Browser& browser, bool on);
};

}  // namespace tarnby
