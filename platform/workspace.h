#pragma once

#include <span>
#include <string_view>

#include "files/url.h"

namespace tarnby {

/// What a person's desktop does with a file or an address. Each call returns at once; what the desktop cannot do does
/// not happen, or happens in the nearest way it can. Main thread only.
class Workspace {
 public:
  virtual ~Workspace() = default;

  /// Shows the entries, selected, in the file viewer.
  virtual void reveal(std::span<const Url> entries) = 0;
  /// Opens the preview panel on an entry; a panel that is open shows the new one.
  virtual void preview(const Url& entry) = 0;
  /// Opens the window that tells what is known of an entry.
  virtual void show_information(const Url& entry) = 0;
  /// Starts an application, as a click on it would.
  virtual void launch(const Url& application) = 0;
  /// Opens a web or settings address.
  virtual void open_link(std::string_view address) = 0;
};

}  // namespace tarnby
