#pragma once

#include <string_view>
#include <vector>

#include "app/parts/screen.h"
#include "engine/clients.h"
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

  AppSettings& app_settings;
  Cleaner& sharedCleaner;
  PushButton* done_button;

  /// One browser as it is shown.
  struct Row {
    const ClientRow* browser;
    CheckButton* button;
    QLabel* size;
  };
  /// One for each browser of the engine's table.
  std::vector<Row> rows;
  // Those that have a name of their own.
  CheckButton* chrome_button;
  CheckButton* mozilla_button;
  CheckButton* safari_button;
  QLabel* chrome_size;
  QLabel* mozilla_size;
  QLabel* safari_size;

  void select_chrome();
  void select_mozilla();
  void select_safari();

 private:
  Row make_row(const ClientRow& browser);
  const Row& row_of(std::string_view type) const;
  void select(const Row& row);
};

}  // namespace tarnby
