#include "ui/spoken.h"

#include <QAbstractButton>
#include <QAccessibleWidget>
#include <QRegularExpression>
#include <QWidget>
#include <cmath>

namespace tarnby {
namespace {

/// "&Remove" as it is drawn; "&&" is a real one.
QString without_mnemonic(QString text) {
  static const QRegularExpression marked(QStringLiteral("&(.)"));
  return text.replace(marked, QStringLiteral("\\1"));
}

class SpokenWidget : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
  explicit SpokenWidget(QWidget* widget) : QAccessibleWidget(widget) {}

  QAccessible::Role role() const override { return spoken().role; }

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    const QAccessible::State own = spoken().state;
    state.checkable = own.checkable;
    state.checked = own.checked;
    state.checkStateMixed = own.checkStateMixed;
    state.expandable = own.expandable;
    state.expanded = own.expanded;
    state.collapsed = own.collapsed;
    state.readOnly = own.readOnly;
    state.busy = own.busy;
    return state;
  }

  QString text(QAccessible::Text kind) const override {
    if (kind == QAccessible::Value) return spoken().text;
    QString own = QAccessibleWidget::text(kind);
    if (!own.isEmpty()) return own;
    if (kind == QAccessible::Name && button() != nullptr) return without_mnemonic(button()->text());
    // Readers that never ask for the value hear it as the description.
    return kind == QAccessible::Description ? spoken().text : QString();
  }

  void* interface_cast(QAccessible::InterfaceType kind) override {
    if (kind == QAccessible::ValueInterface) {
      return spoken().part ? static_cast<QAccessibleValueInterface*>(this) : nullptr;
    }
    return QAccessibleWidget::interface_cast(kind);
  }

  QStringList actionNames() const override {
    QStringList names = QAccessibleWidget::actionNames();
    if (button() != nullptr && button()->isEnabled()) names.prepend(pressAction());
    return names;
  }

  void doAction(const QString& name) override {
    if (name != pressAction()) return QAccessibleWidget::doAction(name);
    // Answers the reader before the click is done, which may open a dialog and wait there.
    if (button() != nullptr) button()->animateClick();
  }

  QVariant currentValue() const override { return static_cast<int>(std::lround(spoken().part.value_or(0) * 100)); }
  void setCurrentValue(const QVariant&) override {}  // it shows, it is not set
  QVariant minimumValue() const override { return 0; }
  QVariant maximumValue() const override { return 100; }
  QVariant minimumStepSize() const override { return 1; }

 private:
  Spoken spoken() const {
    const auto* speaks = dynamic_cast<const Speaks*>(widget());
    return speaks == nullptr ? Spoken() : speaks->spoken();  // a widget that is being destroyed says nothing any more
  }
  QAbstractButton* button() const { return qobject_cast<QAbstractButton*>(widget()); }
};

QAccessibleInterface* make_spoken(const QString&, QObject* object) {
  return dynamic_cast<Speaks*>(object) == nullptr ? nullptr : new SpokenWidget(static_cast<QWidget*>(object));
}

}  // namespace

Speaks::Speaks() {
  // Asked before the toolkit's own factory only when installed after it, which is when the first widget is made.
  static const bool installed = (QAccessible::installFactory(make_spoken), true);
  (void)installed;
}

void tell_change(QWidget* widget) {
  if (!QAccessible::isActive()) return;
  QAccessibleEvent value(widget, QAccessible::DescriptionChanged);
  QAccessible::updateAccessibility(&value);
}

}  // namespace tarnby
