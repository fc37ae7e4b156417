#pragma once

#include "platform/workspace.h"

namespace tarnby {

/// The workspace of macOS: its file viewer, its preview panel, its information window, its openers.
class MacosWorkspace final : public Workspace {
 public:
  void reveal(std::span<const Url> entries) override;
  void preview(const Url& entry) override;
  void show_information(const Url& entry) override;
  void launch(const Url& application) override;
  /// An address without a scheme is a file among the program's own resources.
  void open_link(std::string_view address) override;
};

/// Whether the person has asked the system for less motion.
bool wants_reduced_motion();

}  // namespace tarnby
