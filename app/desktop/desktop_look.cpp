#include "app/desktop/desktop_look.h"

#include <QApplication>
#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QProxyStyle>
#include <QSettings>
#include <QStandardPaths>
#include <array>

#include "ui/motion.h"
#include "ui/theme.h"

namespace tarnby {

namespace {

/// Fusion, but for the arrow that a menu bar shows when it is too narrow. The toolkit reads that one from a picture
/// file, whether it is shown or not, and to read any picture file it loads every plugin for pictures there is: a tenth
/// of the time until the window is seen.
class WindowStyle final : public QProxyStyle {
 public:
  WindowStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

  QIcon standardIcon(StandardPixmap which, const QStyleOption* option, const QWidget* widget) const override {
    if (which != SP_ToolBarHorizontalExtensionButton) return QProxyStyle::standardIcon(which, option, widget);
    constexpr int side = 16;
    constexpr int sharpness = 2;
    QPixmap arrows(side * sharpness, side * sharpness);
    arrows.setDevicePixelRatio(sharpness);
    arrows.fill(Qt::transparent);
    QPainter painter(&arrows);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(theme::text, 1.5));
    if (QGuiApplication::isRightToLeft()) {
      painter.translate(side, 0);
      painter.scale(-1, 1);
    }
    for (const double x : {4.0, 8.0}) painter.drawPolyline(QPolygonF({{x, 4}, {x + 4, 8}, {x, 12}}));
    return arrows;
  }
};

QPalette dark_palette() {
  QPalette colors;
  const QColor deep = theme::rgb(0x33353E);
  colors.setColor(QPalette::Window, theme::sheet);
  colors.setColor(QPalette::WindowText, theme::text);
  colors.setColor(QPalette::Base, deep);
  colors.setColor(QPalette::AlternateBase, theme::sheet);
  colors.setColor(QPalette::Text, theme::text);
  colors.setColor(QPalette::PlaceholderText, theme::faint);
  colors.setColor(QPalette::Button, theme::background);
  colors.setColor(QPalette::ButtonText, theme::text);
  colors.setColor(QPalette::BrightText, theme::text);
  colors.setColor(QPalette::Highlight, theme::accent);
  colors.setColor(QPalette::HighlightedText, theme::on_accent);
  colors.setColor(QPalette::Link, theme::gradient_start);
  colors.setColor(QPalette::ToolTipBase, deep);
  colors.setColor(QPalette::ToolTipText, theme::text);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    colors.setColor(QPalette::Disabled, role, theme::faint);
  }
  return colors;
}

/// One desktop's file in which a person asks for less motion.
struct MotionFile {
  const char* path;  // below the configuration folder
  const char* key;
  const char* still;  // the value that means no motion
};

// GTK: settings.ini; KDE: kdeglobals, a factor on every duration.
constexpr std::array motion_files = {
    MotionFile{"gtk-4.0/settings.ini", "Settings/gtk-enable-animations", "false"},
    MotionFile{"gtk-3.0/settings.ini", "Settings/gtk-enable-animations", "false"},
    MotionFile{"gtk-4.0/settings.ini", "Settings/gtk-enable-animations", "0"},
    MotionFile{"gtk-3.0/settings.ini", "Settings/gtk-enable-animations", "0"},
    MotionFile{"kdeglobals", "KDE/AnimationDurationFactor", "0"},
};

bool files_ask_for_stillness() {
  for (const MotionFile& row : motion_files) {
    const QString path = QStandardPaths::locate(QStandardPaths::GenericConfigLocation, QString::fromLatin1(row.path));
    if (path.isEmpty()) continue;
    const QVariant value = QSettings(path, QSettings::IniFormat).value(QLatin1String(row.key));
    if (value.toString() == QLatin1String(row.still)) return true;
  }
  return false;
}

}  // namespace

void apply_desktop_look() {
  QApplication::setStyle(new WindowStyle);  // which the application owns
  QApplication::setPalette(dark_palette());
  QApplication::setFont(theme::font(theme::Type::detail));
  motion::set_reduced(files_ask_for_stillness());
}

}  // namespace tarnby
