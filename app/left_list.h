#pragma once

#include <QListWidget>
#include <functional>

#include "app/app_context.h"

namespace tarnby {

/// A list of entries that are still there: their paths as a person would write them, the whole path as a tool tip. Of
/// very many the first are shown and the rest is counted. Main thread.
class LeftList : public QListWidget {
  Q_OBJECT
 public:
  struct Line {
    Url url;
    /// Why it is still there; may be empty.
    QString reason;
  };

  /// @param parent its window title says what the list is.
  LeftList(AppContext& context, const QSize& size, QWidget* parent);

  /// @param line gives the line at a place below `count`; asked only for those that are shown.
  void show_lines(std::size_t count, const std::function<Line(std::size_t)>& line);

 private:
  AppContext& context_;
};

}  // namespace tarnby
