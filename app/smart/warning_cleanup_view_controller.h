#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "app/parts/screen.h"
#include "ui/check_button.h"
#include "ui/push_button.h"

class QLayout;
class QVBoxLayout;

namespace tarnby {

/// What somebody is about to remove, as they are asked about it.
struct RemovalQuestion {
  /// One category of it.
  struct Line {
    /// How it looks.
    std::string_view type;
    /// In English; its translation is shown.
    std::string label;
    std::size_t entries;
    /// Bytes.
    std::int64_t size;
  };
  std::vector<Line> lines;
  /// Bytes; what two categories list is counted once.
  std::int64_t bytes = 0;

  std::size_t entries() const;
  /// Bytes by which the sizes of the lines are more than `bytes`.
  std::int64_t counted_again() const;
};

/// What tells people of such bytes; empty where there are none.
QString counted_once_text(const AppContext& context, std::int64_t counted_again);

/// Asks once more before anything is removed, and says how much and what. Its answers stay in the settings.
class WarningCleanupViewController : public Screen {
  Q_OBJECT
 public:
  explicit WarningCleanupViewController(AppContext& context);

  PushButton* cleanup_button = nullptr;
  PushButton* cancel_button = nullptr;
  CheckButton* dont_show_button = nullptr;

  /// Goes on with the removal.
  void cleanup();
  /// Does not ask again from now on.
  void dont_show();

  /// Fills the sheet; once, and before it is shown.
  void show_question(const RemovalQuestion& question);

 Q_SIGNALS:
  void confirmed();

 private:
  void add_lines(QVBoxLayout* layout, const RemovalQuestion& question);
  void add_consequences(QVBoxLayout* layout, const RemovalQuestion& question);
  QLayout* buttons(const QString& size);
};

/// Asks before a removal, over the window of that screen; `remove` runs when the person agrees, or at once where they
/// do not want to be asked.
/// @return the sheet that asks, null when none does.
Screen* ask_before_removal(AppContext& context, const RemovalQuestion& question, Screen& screen,
                           const std::function<void()>& remove);

}  // namespace tarnby
