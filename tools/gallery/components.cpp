#include <QLabel>
#include <QPainter>
#include <QScrollArea>
#include <array>

#include "tools/gallery/board.h"
#include "ui/background_view.h"
#include "ui/changing_label.h"
#include "ui/chart_view.h"
#include "ui/check_button.h"
#include "ui/cleaned_mark.h"
#include "ui/dash_view.h"
#include "ui/disclosure_button.h"
#include "ui/entry_picture.h"
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

/// What pointer and keyboard do to a button, without either.
void point_at(QWidget* widget) {
  widget->setAttribute(Qt::WA_UnderMouse);
}

void push_buttons(Board& board) {
  struct Kind {
    ButtonKind kind;
    const char* text;
  };
  for (const Kind& row :
       {Kind{ButtonKind::plain, "Back"}, Kind{ButtonKind::accent, "Done"}, Kind{ButtonKind::destructive, "Remove"},
        Kind{ButtonKind::shaded, "Find now"}, Kind{ButtonKind::link, "Why is this needed?"}}) {
    const auto make = [&] { return new PushButton(QString::fromUtf8(row.text), row.kind, board.ground()); };
    board.add(make(), QStringLiteral("at rest"));
    point_at(board.add(make(), QStringLiteral("under the pointer")));
    board.add(make(), QStringLiteral("pressed"))->setDown(true);
    board.add(make(), QStringLiteral("disabled"))->setEnabled(false);
    board.add(make(), QStringLiteral("focused"))->setObjectName(QStringLiteral("focus"));
  }
}

void check_buttons(Board& board) {
  for (const Qt::CheckState state : {Qt::Unchecked, Qt::Checked, Qt::PartiallyChecked}) {
    const auto make = [&] {
      auto* button = new CheckButton(board.ground(), QStringLiteral("Applications"));
      button->setCheckState(state);
      return button;
    };
    board.add(make(), QStringLiteral("at rest"));
    point_at(board.add(make(), QStringLiteral("under the pointer")));
    board.add(make(), QStringLiteral("pressed"))->setDown(true);
    board.add(make(), QStringLiteral("disabled"))->setEnabled(false);
    board.add(make(), QStringLiteral("focused"))->setObjectName(QStringLiteral("focus"));
  }
}

void small_buttons(Board& board) {
  const auto states = [&](auto make) {
    board.add(make(), QStringLiteral("at rest"));
    point_at(board.add(make(), QStringLiteral("under the pointer")));
    board.add(make(), QStringLiteral("pressed"))->setDown(true);
    board.add(make(), QStringLiteral("disabled"))->setEnabled(false);
    board.add(make(), QStringLiteral("focused"))->setObjectName(QStringLiteral("focus"));
  };
  for (const bool on : {false, true}) {
    states([&] {
      auto* button = new SwitchButton(board.clock(), board.ground());
      button->setChecked(on);
      return button;
    });
    states([&] {
      auto* button = new DisclosureButton(QStringLiteral("Caches"), board.clock(), board.ground());
      button->setChecked(on);
      return button;
    });
  }
  states([&] { return new InfoButton(QStringLiteral("About caches"), board.ground()); });
}

void home(Board& board) {
  const auto make = [&] { return new HomeView(QStringLiteral("Scan"), board.clock(), board.ground()); };
  board.set_columns(3);
  board.add(make(), QStringLiteral("at rest"));
  point_at(board.add(make(), QStringLiteral("under the pointer")));
  board.add(make(), QStringLiteral("pressed"))->setDown(true);
  board.add(make(), QStringLiteral("disabled"))->setEnabled(false);
  board.add(make(), QStringLiteral("focused"))->setObjectName(QStringLiteral("focus"));
}

template <class Ring>
void add_ring(Board& board, double end, const char* number, const char* state) {
  auto* ring = board.add(new Ring(board.clock(), board.ground()), QString::fromUtf8(state));
  ring->set_stroke_end(end);
  ring->show_number(QString::fromUtf8(number));
  ring->show_caption(QStringLiteral("found so far"));
}

void rings(Board& board) {
  board.set_columns(3);
  add_ring<ScanView>(board, 0, "Zero KB", "scan, begins");
  add_ring<ScanView>(board, 0.63, "3.42 GB", "scan, 63 %");
  add_ring<ScanView>(board, 1, "1,234.56 GB", "scan, long number, ended");
  add_ring<SearchView>(board, 0, "18,311", "search");
  board.ground()->findChild<SearchView*>()->set_searching(true);
  add_ring<DeleteView>(board, 0, "6.18 GB", "removal begins");
  add_ring<DeleteView>(board, 0.4, "3.7 GB", "removal, 40 %");
}

std::vector<ChartSegment> segments() {
  return {{QStringLiteral("Applications caches"), theme::blue, 2910, QStringLiteral("2.91 GB")},
          {QStringLiteral("Applications logs"), theme::violet, 413, QStringLiteral("412.7 MB")},
          {QStringLiteral("Applications remainders"), theme::amber, 1020, QStringLiteral("1.02 GB")},
          {QStringLiteral("Mail attachments"), theme::pink, 680, QStringLiteral("680 MB")},
          {QStringLiteral("Installation files"), theme::orange, 896, QStringLiteral("896.2 MB")},
          {QStringLiteral("Trash Bin"), theme::silver, 264, QStringLiteral("264 MB")}};
}

void charts(Board& board) {
  const auto add = [&](std::vector<ChartSegment> values, const char* total, const char* state) {
    auto* chart = board.add(new ChartView(board.clock(), board.ground()), QString::fromUtf8(state));
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

void bars(Board& board) {
  board.set_columns(3);
  const auto space = [&](double used, const char* used_text, const char* free_text) {
    auto* view = board.add(new SpaceView(board.clock(), board.ground()), QStringLiteral("space"));
    view->show_space(used, QString::fromUtf8(used_text), QString::fromUtf8(free_text));
    view->setFixedWidth(280);
  };
  space(0.62, "312 GB used", "188 GB free");
  space(0.002, "1 GB used", "499 GB free");
  space(1, "500 GB used", "Zero KB free");
  for (const double part : {0.0, 0.35, 1.0}) {
    auto* view = board.add(new ProgressView(board.clock(), board.ground()), QStringLiteral("progress"));
    view->set_progress(part);
    view->setFixedWidth(280);
  }
  board.add(new PulseView(board.clock(), board.ground()), QStringLiteral("pulse, at rest"));
  board.add(new PulseView(board.clock(), board.ground()), QStringLiteral("pulse"))->set_pulsing(true);
  board.add(new CleanedMark(board.clock(), board.ground()), QStringLiteral("cleaned"));
}

void steps(Board& board) {
  board.set_columns(1);
  for (const int current : {-1, 0, 3, 7}) {
    auto* view = board.add(new DashView(board.ground()), QStringLiteral("step %1").arg(current));
    view->set_steps({QStringLiteral("Caches"), QStringLiteral("Logs"), QStringLiteral("Remainders"),
                     QStringLiteral("Browsers"), QStringLiteral("Mails"), QStringLiteral("Installers"),
                     QStringLiteral("Trash")});
    view->set_current(current);
  }
}

void labels(Board& board) {
  board.set_columns(3);
  board.add(new ShadowLabel(QStringLiteral("Make room on your disk"), board.ground()), QStringLiteral("shadow"));
  auto* line = board.add(new FadingLabel(board.clock(), board.ground()), QStringLiteral("line"));
  line->show_text(QStringLiteral("Scan in “Browsers”"));
  auto* number = board.add(new NumberLabel(board.clock(), board.ground()), QStringLiteral("number"));
  number->show_text(QStringLiteral("3.42 GB"));
  auto* fading = board.add(new FadingLabel(board.clock(), board.ground()), QStringLiteral("line, changing"));
  fading->show_text(QStringLiteral("Scan in “Logs”"));
  fading->setObjectName(QStringLiteral("changing_line"));
  auto* pushing = board.add(new NumberLabel(board.clock(), board.ground()), QStringLiteral("number, changing"));
  pushing->show_text(QStringLiteral("3.41 GB"));
  pushing->setObjectName(QStringLiteral("changing_number"));
  auto* area = board.add(new QScrollArea(board.ground()), QStringLiteral("scroller"));
  use_scrollers(area);
  area->setFixedSize(240, 160);
  auto* tall = new QLabel(QStringLiteral("one\n\ntwo\n\nthree\n\nfour\n\nfive\n\nsix\n\nseven"));
  tall->setStyleSheet(QStringLiteral("color:white"));
  area->setWidget(tall);
  tall->setAutoFillBackground(false);
}

void backgrounds(Board& board) {
  using Change = void (BackgroundView::*)();
  struct Row {
    Change change;
    const char* name;
  };
  board.set_columns(2);
  for (const Row& row :
       {Row{&BackgroundView::animation_for_home_view, "home"}, Row{&BackgroundView::animation_for_scan_view, "scan"},
        Row{&BackgroundView::animation_for_page_view, "page"},
        Row{&BackgroundView::animation_for_delete_view, "delete"},
        Row{&BackgroundView::animation_for_cleaned_view, "cleaned"}}) {
    auto* view = board.add(new BackgroundView(board.clock(), board.ground()), QString::fromUtf8(row.name));
    view->setFixedSize(480, 320);
    (view->*row.change)();
  }
}

class EntryPictureView : public QWidget {
 public:
  EntryPictureView(EntryPicture what, int side, QWidget* parent) : QWidget(parent), what_(what) {
    setFixedSize(side, side);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    draw_entry_picture(painter, rect(), what_);
  }

 private:
  EntryPicture what_;
};

void entry_pictures(Board& board) {
  struct Row {
    EntryPicture what;
    const char* name;
  };
  board.set_columns(9);
  for (const int side : {20, 64}) {
    for (const Row& row :
         {Row{EntryPicture::file, "file"}, Row{EntryPicture::document, "document"},
          Row{EntryPicture::picture, "picture"}, Row{EntryPicture::movie, "movie"}, Row{EntryPicture::audio, "audio"},
          Row{EntryPicture::archive, "archive"}, Row{EntryPicture::package, "package"},
          Row{EntryPicture::folder, "folder"}, Row{EntryPicture::application, "application"}}) {
      board.add(new EntryPictureView(row.what, side, board.ground()), QString::fromUtf8(row.name));
    }
  }
}

constexpr std::array boards = {BoardRow{"push_buttons", push_buttons},
                               BoardRow{"check_buttons", check_buttons},
                               BoardRow{"small_buttons", small_buttons},
                               BoardRow{"home", home},
                               BoardRow{"rings", rings},
                               BoardRow{"charts", charts},
                               BoardRow{"bars", bars},
                               BoardRow{"steps", steps},
                               BoardRow{"labels", labels},
                               BoardRow{"entry_pictures", entry_pictures},
                               BoardRow{"backgrounds", backgrounds}};

}  // namespace

std::span<const BoardRow> component_boards() {
  return boards;
}

}  // namespace tarnby
