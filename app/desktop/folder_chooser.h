#pragma once

#include <QString>
#include <functional>
#include <optional>

#include "files/url.h"

class QWidget;

namespace tarnby {

/// What a folder chooser says, and where it begins.
struct FolderRequest {
  QString title;
  /// On the button that confirms.
  QString prompt;
  Url starting_folder;
};

/// Lets a person pick one folder. Main thread only.
class FolderChooser {
 public:
  using Done = std::function<void(const std::optional<Url>& folder)>;

  virtual ~FolderChooser() = default;

  /// Shows the chooser as a sheet over `over` and returns at once. `done` is called once, with nothing when the person
  /// cancelled, unless `over` goes before.
  virtual void choose(QWidget* over, const FolderRequest& request, Done done) = 0;
};

}  // namespace tarnby
