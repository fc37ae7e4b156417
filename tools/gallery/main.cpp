// Draws every screen and every widget in their states into pictures, to be looked at:  gallery FOLDER [PART-OF-A-NAME]
// Each comes as NAME.png, in the sharpness of a 1.5x and a 2x display, and once with larger texts; screens also in
// longer texts, mirrored, and in two languages. Needs no display.
#include <QApplication>
#include <QDir>
#include <QImage>
#include <QPainter>
#include <cstdio>

#include "app/desktop/desktop_look.h"
#include "tools/gallery/board.h"
#include "tools/gallery/languages.h"
#include "tools/gallery/stage.h"
#include "ui/changing_label.h"
#include "ui/theme.h"

namespace tarnby {
namespace {

struct Variant {
  const char* suffix;
  double sharpness;
  double board_text_scale;
  double screen_text_scale;
  /// Of the screens alone; English without it.
  Localization (*language)() = nullptr;
  Qt::LayoutDirection direction = Qt::LeftToRight;
};

Localization german() {
  return in_language("de");
}
Localization japanese() {
  return in_language("ja");
}

constexpr Variant variants[] = {
    {"", 1, 1, 1},
    {"@1.5x", 1.5, 1, 1},
    {"@2x", 2, 1, 1},
    {"-large-text", 1, 2, 1.25},
    {"-pseudo", 1, 1, 1, in_pseudo_language},
    {"-german", 1, 1, 1, german},
    {"-japanese", 1, 1, 1, japanese},
    {"-rtl", 1, 1, 1, nullptr, Qt::RightToLeft},
};

QString file_name(const char* name, const Variant& variant) {
  return QString::fromUtf8(name) + QString::fromUtf8(variant.suffix) + QStringLiteral(".png");
}

/// Only one widget has the focus at a time, so each that wants it is drawn once more over the board.
void draw_focused(QWidget* ground, QPainter& painter) {
  for (QWidget* widget : ground->findChildren<QWidget*>(QStringLiteral("focus"))) {
    widget->setFocus(Qt::TabFocusReason);
    widget->render(&painter, widget->mapTo(ground, QPoint()));
  }
}

QImage drawn(QWidget* ground, double sharpness) {
  QImage image(ground->size() * sharpness, QImage::Format_RGB32);
  image.setDevicePixelRatio(sharpness);
  QPainter painter(&image);
  ground->render(&painter);
  draw_focused(ground, painter);
  return image;
}

bool save(QWidget* ground, const QString& path, double sharpness) {
  if (drawn(ground, sharpness).save(path)) return true;
  std::fprintf(stderr, "gallery: cannot write %s\n", qPrintable(path));
  return false;
}

bool draw_board(const BoardRow& row, const Variant& variant, const QDir& folder) {
  theme::set_text_scale(variant.board_text_scale);
  QApplication::setLayoutDirection(variant.direction);
  Board board;
  row.fill(board);
  board.show();
  const auto change = [&](const char* name, const char* text) {
    auto* label = board.ground()->findChild<ChangingLabel*>(QString::fromUtf8(name));
    if (label != nullptr) label->show_text(QString::fromUtf8(text));
  };
  change("changing_number", "9.87 GB");
  board.clock().pass(100);
  change("changing_line", "Scan in “Mails”");
  board.clock().pass(50);
  return save(board.ground(), folder.filePath(file_name(row.name, variant)), variant.sharpness);
}

bool draw_stage(const StageRow& row, const Variant& variant, const QDir& folder) {
  theme::set_text_scale(variant.screen_text_scale);
  QApplication::setLayoutDirection(variant.direction);
  Stage stage(variant.language == nullptr ? Localization() : variant.language());
  row.fill(stage);
  stage.pass(100);
  drawn(stage.window(), variant.sharpness);  // asks for the icons
  stage.context().icons.finish();
  return save(stage.window(), folder.filePath(file_name(row.name, variant)), variant.sharpness);
}

bool draw_all(const QDir& folder, std::string_view part) {
  for (const Variant& variant : variants) {
    for (const StageRow& row : screen_stages()) {
      if (std::string_view(row.name).find(part) == std::string_view::npos) continue;
      if (!draw_stage(row, variant, folder)) return false;
    }
    for (const BoardRow& row : component_boards()) {
      if (variant.language != nullptr) break;
      if (std::string_view(row.name).find(part) == std::string_view::npos) continue;
      if (!draw_board(row, variant, folder)) return false;
    }
  }
  return true;
}

}  // namespace
}  // namespace tarnby

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  if (argc < 2 || argc > 3 || !QDir().mkpath(QString::fromLocal8Bit(argv[1]))) {
    std::fprintf(stderr,
                 "usage: gallery FOLDER [PART-OF-A-NAME]\n"
                 "draws every screen and widget in their states into pictures there\n");
    return 2;
  }
  tarnby::apply_desktop_look();
  return tarnby::draw_all(QDir(QString::fromLocal8Bit(argv[1])), argc > 2 ? argv[2] : "") ? 0 : 1;
}
