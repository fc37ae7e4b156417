#pragma once

#include <QAccessible>
#include <QString>
#include <optional>

class QWidget;

namespace tarnby {

/// What a screen reader is told of a widget beside its accessible name.
struct Spoken {
  QAccessible::Role role = QAccessible::Graphic;
  /// What the drawing shows, in words.
  QString text = {};
  /// For what can be told as a part of a whole, 0 to 1.
  std::optional<double> part = std::nullopt;
  /// States beyond those that every widget has (enabled, focused and so on).
  QAccessible::State state = {};
};

/// A widget that draws itself and so has to say itself what it shows. Inherited beside the widget class; buttons among
/// them are pressed by the action "Press".
class Speaks {
 public:
  Speaks();
  Speaks(const Speaks&) = delete;
  Speaks& operator=(const Speaks&) = delete;
  virtual ~Speaks() = default;

  virtual Spoken spoken() const = 0;
};

/// Tells screen readers that what `widget` says has changed.
void tell_change(QWidget* widget);

}  // namespace tarnby
