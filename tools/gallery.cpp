// Draws every widget in its states into pictures, to be looked at:  gallery FOLDER
// Each sheet comes as NAME.png, in the sharpness of a 1.5x and a 2x display, and once with texts of twice the size.
#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QScrollArea>
#include <array>
#include <cstdio>
#include <functional>
#include <memory>

#include "tests/support/hand_animation_clock.h"
#include "ui/background_view.h"
#include "ui/changing_label.h"
#include "ui/chart_view.h"
#include "ui/check_button.h"
#include "ui/cleaned_mark.h"
#include "ui/dash_view.h"
#include "ui/disclosure_button.h"
#include "ui/home_view.h"
#include "ui/info_button.h"
#include "ui/progress_view.h"
#include "ui/pulse_view.h"
#include "ui/push_button.h"
#include "ui/scan_views.h"
#include "ui/scroller.h"
#include "ui/shadow_label.h"
#include "ui/space_view.h"
#include "ui/switch_button.h"
#include "ui/theme.h"

namespace tarnby {
namespace {

using test::HandAnimationClock;

/// A sheet of widgets, each with a word on its state below.
class Sheet {
 public:
  Sheet() : ground_(std::make_unique<QWidget>()), grid_(new QGridLayout(ground_.get())) {
    QPalette colors = ground_->palette();
    colors.setColor(QPalette::Window, theme::background);
    ground_->setPalette(colors);
    ground_->setAutoFillBackground(true);
    grid_->setSpacing(2 * theme::grid);
    grid_->setContentsMargins(24, 24, 24, 24);
  }

  HandAnimationClock& clock() { return clock_; }
  QWidget* ground() { return ground_.get(); }

  /// Puts `widget` into the next cell; a row has `columns_` of them.
  template <class Widget>
  Widget* add(Widget* widget, const QString& state) {
    const int row = 2 * (count_ / columns_);
    const int column = count_++ % columns_;
    grid_->addWidget(widget, row, column, Qt::AlignCenter);
    auto* words = new QLabel(state, ground());
    words->setFont(theme::font(theme::Type::tiny));
    QPalette colors = words->palette();
    colors.setColor(QPalette::WindowText, theme::secondary);
    words->setPalette(colors);
    grid_->addWidget(words, row + 1, column, Qt::AlignHCenter | Qt::AlignTop);
    return widget;
  }

  void set_columns(int columns) { columns_ = columns; }
  void show() {
    ground_->resize(grid_->sizeHint());
    ground_->show();
    QApplication::setActiveWindow(ground_.get());
    ground_->setFocus();  // or the first button would have it
    QApplication::processEvents();
  }

 private:
  HandAnimationClock clock_;
  std::unique_ptr<QWidget> ground_;
  QGridLayout* grid_;
  int columns_ = 5;
  int count_ = 0;
};

/// What pointer and keyboard do to a button, without either.
void point_at(QWidget* widget) {
  widget->setAttribute(Qt::WA_UnderMouse);
}

/// Only one widget has the focus, so the picture of a focused one is a sheet's last.
void focus(QWidget* widget) {
  widget->setFocus(Qt::TabFocusReason);
}

void push_buttons(Sheet& sheet) {
  struct Kind {
    ButtonKind kind;
    const char* text;
  };
  for (const Kind& row :
       {Kind{ButtonKind::plain, "Back"}, Kind{ButtonKind::accent, "Done"}, Kind{ButtonKind::destructive, "Remove"},
        Kind{ButtonKind::shaded, "Find now"}, Kind{ButtonKind::link, "Why is this needed?"}}) {
    const auto make = [&] { return new PushButton(QString::fromUtf8(row.text), row.kind, sheet.ground()); };
    sheet.add(make(), QStringLiteral("at rest"));
    point_at(sheet.add(make(), QStringLiteral("under the pointer")));
    sheet.add(make(), QStringLiteral("pressed"))->setDown(true);
    sheet.add(make(), QStringLiteral("disabled"))->setEnabled(false);
    sheet.add(make(), QStringLiteral("focused"))->setObjectName(QStringLiteral("focus"));
  }
}

void check_buttons(Sheet& sheet) {
  for (const Qt::CheckState state : {Qt::Unchecked, Qt::Checked, Qt::PartiallyChecked}) {
    const auto make = [&] {
      auto* button = new CheckButton(sheet.ground(), QStringLiteral("Applications"));
      button->setCheckState(state);
      return button;
    };
    sheet.add(make(), QStringLiteral("at rest"));
    point_at(sheet.add(make(), QStringLiteral("under the pointer")));
    sheet.add(make(), QStringLiteral("pressed"))->setDown(true);
    sheet.add(make(), QStringLiteral("disabled"))->setEnabled(false);
    sheet.add(make(), QStringLiteral("focused"))->setObjectName(QStringLiteral("focus"));
  }
}

void small_buttons(Sheet& sheet) {
  const auto states = [&](auto make) {
    sheet.add(make(), QStringLiteral("at rest"));
    point_at(sheet.add(make(), QStringLiteral("under the pointer")));
    sheet.add(make(), QStringLiteral("pressed"))->setDown(true);
    sheet.add(make(), QStringLiteral("disabled"))->setEnabled(false);
    sheet.add(make(), QStringLiteral("focused"))->setObjectName(QStringLiteral("focus"));
  };
  for (const bool on : {false, true}) {
    states([&] {
      auto* button = new SwitchButton(sheet.clock(), sheet.ground());
      button->setChecked(on);
      return button;
    });
    states([&] {
      auto* button = new DisclosureButton(QStringLiteral("Caches"), sheet.clock(), sheet.ground());
      button->setChecked(on);
      return button;
    });
  }
  states([&] { return new InfoButton(QStringLiteral("About caches"), sheet.ground()); });
}

void home(Sheet& sheet) {
  const auto make = [&] { return new HomeView(QStringLiteral("Scan"), sheet.clock(), sheet.ground()); };
  sheet.set_columns(3);
  sheet.add(make(), QStringLiteral("at rest"));
  point_at(sheet.add(make(), QStringLiteral("under the pointer")));
  sheet.add(make(), QStringLiteral("pressed"))->setDown(true);
  sheet.add(make(), QStringLiteral("disabled"))->setEnabled(false);
  sheet.add(make(), QStringLiteral("focused"))->setObjectName(QStringLiteral("focus"));
}

template <class Ring>
void add_ring(Sheet& sheet, double end, const char* number, const char* state) {
  auto* ring = sheet.add(new Ring(sheet.clock(), sheet.ground()), QString::fromUtf8(state));
  ring->set_stroke_end(end);
  ring->show_number(QString::fromUtf8(number));
  ring->show_caption(QStringLiteral("found so far"));
}

void rings(Sheet& sheet) {
  sheet.set_columns(3);
  add_ring<ScanView>(sheet, 0, "Zero KB", "scan, begins");
  add_ring<ScanView>(sheet, 0.63, "3.42 GB", "scan, 63 %");
  add_ring<ScanView>(sheet, 1, "1,234.56 GB", "scan, long number, ended");
  add_ring<SearchView>(sheet, 0, "18,311", "search");
  sheet.ground()->findChild<SearchView*>()->set_searching(true);
  add_ring<DeleteView>(sheet, 0, "6.18 GB", "removal begins");
  add_ring<DeleteView>(sheet, 0.4, "3.7 GB", "removal, 40 %");
}

std::vector<ChartSegment> segments() {
  return {{QStringLiteral("Applications caches"), theme::blue, 2910, QStringLiteral("2.91 GB")},
          {QStringLiteral("Applications logs"), theme::violet, 413, QStringLiteral("412.7 MB")},
          {QStringLiteral("Applications remainders"), theme::amber, 1020, QStringLiteral("1.02 GB")},
          {QStringLiteral("Mail attachments"), theme::pink, 680, QStringLiteral("680 MB")},
          {QStringLiteral("Installation files"), theme::orange, 896, QStringLiteral("896.2 MB")},
          {QStringLiteral("Trash Bin"), theme::silver, 264, QStringLiteral("264 MB")}};
}

void charts(Sheet& sheet) {
  const auto add = [&](std::vector<ChartSegment> values, const char* total, const char* state) {
    auto* chart = sheet.add(new ChartView(sheet.clock(), sheet.ground()), QString::fromUtf8(state));
    chart->set_segments(std::move(values));
    chart->show_total(QString::fromUtf8(total), QStringLiteral("selected"));
  };
  add(segments(), "6.18 GB", "usual");
  add({segments()[0]}, "2.91 GB", "one only");
  std::vector<ChartSegment> tiny = segments();
  for (std::size_t i = 1; i < tiny.size(); ++i) tiny[i].value = 0.001;
  add(tiny, "2.91 GB", "five tiny ones");
  add({}, "Zero KB", "none");
}

void bars(Sheet& sheet) {
  sheet.set_columns(3);
  const auto space = [&](double used, const char* used_text, const char* free_text) {
    auto* view = sheet.add(new SpaceView(sheet.clock(), sheet.ground()), QStringLiteral("space"));
    view->show_space(used, QString::fromUtf8(used_text), QString::fromUtf8(free_text));
    view->setFixedWidth(280);
  };
  space(0.62, "312 GB used", "188 GB free");
  space(0.002, "1 GB used", "499 GB free");
  space(1, "500 GB used", "Zero KB free");
  for (const double part : {0.0, 0.35, 1.0}) {
    auto* view = sheet.add(new ProgressView(sheet.clock(), sheet.ground()), QStringLiteral("progress"));
    view->set_progress(part);
    view->setFixedWidth(280);
  }
  sheet.add(new PulseView(sheet.clock(), sheet.ground()), QStringLiteral("pulse, at rest"));
  sheet.add(new PulseView(sheet.clock(), sheet.ground()), QStringLiteral("pulse"))->set_pulsing(true);
  sheet.add(new CleanedMark(sheet.clock(), sheet.ground()), QStringLiteral("cleaned"));
}

void steps(Sheet& sheet) {
  sheet.set_columns(1);
  for (const int current : {-1, 0, 3, 7}) {
    auto* view = sheet.add(new DashView(sheet.ground()), QStringLiteral("step %1").arg(current));
    view->set_steps({QStringLiteral("Caches"), QStringLiteral("Logs"), QStringLiteral("Remainders"),
                     QStringLiteral("Browsers"), QStringLiteral("Mails"), QStringLiteral("Installers"),
                     QStringLiteral("Trash")});
    view->set_current(current);
  }
}

void labels(Sheet& sheet) {
  sheet.set_columns(3);
  sheet.add(new ShadowLabel(QStringLiteral("Make room on your disk"), sheet.ground()), QStringLiteral("shadow"));
  auto* line = sheet.add(new FadingLabel(sheet.clock(), sheet.ground()), QStringLiteral("line"));
  line->show_text(QStringLiteral("Scan in “Browsers”"));
  auto* number = sheet.add(new NumberLabel(sheet.clock(), sheet.ground()), QStringLiteral("number"));
  number->show_text(QStringLiteral("3.42 GB"));
  auto* fading = sheet.add(new FadingLabel(sheet.clock(), sheet.ground()), QStringLiteral("line, changing"));
  fading->show_text(QStringLiteral("Scan in “Logs”"));
  fading->setObjectName(QStringLiteral("changing_line"));
  auto* pushing = sheet.add(new NumberLabel(sheet.clock(), sheet.ground()), QStringLiteral("number, changing"));
  pushing->show_text(QStringLiteral("3.41 GB"));
  pushing->setObjectName(QStringLiteral("changing_number"));
  auto* area = sheet.add(new QScrollArea(sheet.ground()), QStringLiteral("scroller"));
  use_scrollers(area);
  area->setFixedSize(240, 160);
  auto* tall = new QLabel(QStringLiteral("one\n\ntwo\n\nthree\n\nfour\n\nfive\n\nsix\n\nseven"));
  tall->setStyleSheet(QStringLiteral("color:white"));
  area->setWidget(tall);
  tall->setAutoFillBackground(false);
}

void backgrounds(Sheet& sheet) {
  using Change = void (BackgroundView::*)();
  struct Row {
    Change change;
    const char* name;
  };
  sheet.set_columns(2);
  for (const Row& row :
       {Row{&BackgroundView::animation_for_home_view, "home"}, Row{&BackgroundView::animation_for_scan_view, "scan"},
        Row{&BackgroundView::animation_for_page_view, "page"},
        Row{&BackgroundView::animation_for_delete_view, "delete"},
        Row{&BackgroundView::animation_for_cleaned_view, "cleaned"}}) {
    auto* view = sheet.add(new BackgroundView(sheet.clock(), sheet.ground()), QString::fromUtf8(row.name));
    view->setFixedSize(480, 320);
    (view->*row.change)();
  }
}

/// Two whole screens, to see the parts together.
void home_screen(Sheet& sheet) {
  auto* ground = sheet.add(new BackgroundView(sheet.clock(), sheet.ground()), QStringLiteral("home screen"));
  ground->setFixedSize(960, 640);
  auto* button = new HomeView(QStringLiteral("Scan"), sheet.clock(), ground);
  button->setGeometry(348, 152, 264, 264);
  auto* title = new ShadowLabel(QStringLiteral("Make room on your disk"), ground);
  title->setGeometry(0, 436, 960, 48);
}

void scan_screen(Sheet& sheet) {
  auto* ground = sheet.add(new BackgroundView(sheet.clock(), sheet.ground()), QStringLiteral("scan screen"));
  ground->setFixedSize(960, 640);
  ground->animation_for_scan_view();
  auto* ring = new ScanView(sheet.clock(), ground);
  ring->setGeometry(344, 176, 272, 272);
  ring->set_stroke_end(0.63);
  ring->show_number(QStringLiteral("3.42 GB"));
  ring->show_caption(QStringLiteral("found so far"));
  auto* line = new FadingLabel(sheet.clock(), ground);
  line->setGeometry(0, 484, 960, 40);
  line->show_text(QStringLiteral("Scan in “Browsers”"));
  auto* row = new DashView(ground);
  row->setGeometry(80, 536, 800, 24);
  row->set_steps({QStringLiteral("Caches"), QStringLiteral("Logs"), QStringLiteral("Remainders"),
                  QStringLiteral("Browsers"), QStringLiteral("Mails"), QStringLiteral("Installers"),
                  QStringLiteral("Trash")});
  row->set_current(3);
}

struct SheetRow {
  const char* name;
  void (*fill)(Sheet& sheet);
};
constexpr std::array sheets = {SheetRow{"push_buttons", push_buttons},
                               SheetRow{"check_buttons", check_buttons},
                               SheetRow{"small_buttons", small_buttons},
                               SheetRow{"home", home},
                               SheetRow{"rings", rings},
                               SheetRow{"charts", charts},
                               SheetRow{"bars", bars},
                               SheetRow{"steps", steps},
                               SheetRow{"labels", labels},
                               SheetRow{"backgrounds", backgrounds},
                               SheetRow{"home_screen", home_screen},
                               SheetRow{"scan_screen", scan_screen}};

/// Only one widget has the focus at a time, so each that wants it is drawn once more over the sheet.
void draw_focused(Sheet& sheet, QPainter& painter) {
  for (QWidget* widget : sheet.ground()->findChildren<QWidget*>(QStringLiteral("focus"))) {
    focus(widget);
    widget->render(&painter, widget->mapTo(sheet.ground(), QPoint()));
  }
}

bool save(Sheet& sheet, const QString& path, double sharpness) {
  QImage image(sheet.ground()->size() * sharpness, QImage::Format_RGB32);
  image.setDevicePixelRatio(sharpness);
  QPainter painter(&image);
  sheet.ground()->render(&painter);
  draw_focused(sheet, painter);
  painter.end();
  return image.save(path);
}

bool draw_sheet(const SheetRow& row, const QDir& folder) {
  struct Variant {
    const char* suffix;
    double sharpness;
    double text_scale;
  };
  for (const Variant& variant :
       {Variant{"", 1, 1}, Variant{"@1.5x", 1.5, 1}, Variant{"@2x", 2, 1}, Variant{"-large-text", 1, 2}}) {
    theme::set_text_scale(variant.text_scale);
    Sheet sheet;
    row.fill(sheet);
    sheet.show();
    const auto change = [&](const char* name, const char* text) {
      auto* label = sheet.ground()->findChild<ChangingLabel*>(QString::fromUtf8(name));
      if (label != nullptr) label->show_text(QString::fromUtf8(text));
    };
    change("changing_number", "9.87 GB");
    sheet.clock().pass(100);
    change("changing_line", "Scan in “Mails”");
    sheet.clock().pass(50);
    const QString name = QString::fromUtf8(row.name) + QString::fromUtf8(variant.suffix) + QStringLiteral(".png");
    if (save(sheet, folder.filePath(name), variant.sharpness)) continue;
    std::fprintf(stderr, "gallery: cannot write %s\n", qPrintable(folder.filePath(name)));
    return false;
  }
  return true;
}

}  // namespace
}  // namespace tarnby

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  if (argc != 2 || !QDir().mkpath(QString::fromLocal8Bit(argv[1]))) {
    std::fprintf(stderr, "usage: gallery FOLDER    draws every widget in its states into pictures there\n");
    return 2;
  }
  const QDir folder(QString::fromLocal8Bit(argv[1]));
  for (const tarnby::SheetRow& row : tarnby::sheets) {
    if (!tarnby::draw_sheet(row, folder)) return 1;
  }
  return 0;
}
