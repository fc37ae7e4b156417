#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QLabel>
#include <QRegularExpression>
#include <QTextLayout>
#include <cmath>

#include "app/parts/outline_view.h"
#include "app/parts/overlay.h"
#include "tools/gallery/languages.h"
#include "tools/gallery/stage.h"
#include "ui/changing_label.h"
#include "ui/chart_view.h"
#include "ui/dash_view.h"
#include "ui/figures.h"
#include "ui/home_view.h"
#include "ui/theme.h"

namespace tarnby {
namespace {

/// One widget of a screen that shows a text.
struct Shown {
  const QWidget* widget;
  QString text;
  QSize needed;
  QRect place;  // in the window
};

QSize ceil(QSizeF size) {
  return {static_cast<int>(std::ceil(size.width())), static_cast<int>(std::ceil(size.height()))};
}

/// What a line takes in the smallest letters that its widget would take to fit it in.
QSize line_in(const QFont& font, const QString& line, double width) {
  const QFont smallest = fitted(font, line, width);
  return ceil({figures_width(smallest, line), QFontMetricsF(smallest).height()});
}

QSize needed_by_label(const QLabel& label) {
  if (qobject_cast<const ChangingLabel*>(&label)) return line_in(label.font(), label.text(), label.width());
  return label.wordWrap() ? QSize(label.minimumSizeHint().width(), label.heightForWidth(label.width()))
                          : label.sizeHint();
}

QSize needed_by_button(const QAbstractButton& button) {
  if (!qobject_cast<const HomeView*>(&button)) return button.sizeHint();
  return line_in(button.font(), button.text(), button.width()) * (1 / 0.8 / 0.667);  // a chord of its disc
}

std::vector<Shown> shown_in(Stage& stage) {
  std::vector<Shown> shown;
  const auto add = [&](const QWidget* widget, const QString& text, const QSize& needed) {
    if (text.isEmpty() || !widget->isVisible()) return;
    shown.push_back({widget, text, needed, QRect(widget->mapTo(stage.window(), QPoint()), widget->size())});
  };
  for (const QWidget* widget : stage.window()->findChildren<QWidget*>()) {
    if (const auto* label = qobject_cast<const QLabel*>(widget)) add(label, label->text(), needed_by_label(*label));
    if (const auto* button = qobject_cast<const QAbstractButton*>(widget)) {
      add(button, button->text(), needed_by_button(*button));
    }
    if (const auto* chart = qobject_cast<const ChartView*>(widget)) add(chart, chart->spoken().text, chart->sizeHint());
    if (const auto* steps = qobject_cast<const DashView*>(widget)) {
      add(steps, steps->spoken().text, steps->minimumSizeHint());
    }
  }
  return shown;
}

const Overlay* card_of(const QWidget* widget) {
  while (widget != nullptr && qobject_cast<const Overlay*>(widget) == nullptr) widget = widget->parentWidget();
  return static_cast<const Overlay*>(widget);
}

void expect_room(const std::vector<Shown>& shown) {
  for (const Shown& one : shown) {
    SCOPED_TRACE(one.text.toStdString());
    EXPECT_LE(one.needed.width(), one.place.width());
    EXPECT_LE(one.needed.height(), one.place.height());
    QRect place = one.widget->rect();
    for (const QWidget* inner = one.widget; !inner->isWindow(); inner = inner->parentWidget()) {
      place.translate(inner->pos());
      EXPECT_TRUE(inner->parentWidget()->rect().contains(place)) << inner->parentWidget()->metaObject()->className();
    }
    for (const Shown& other : shown) {
      if (other.widget == one.widget || card_of(other.widget) != card_of(one.widget)) continue;
      const bool inside = one.widget->isAncestorOf(other.widget) || other.widget->isAncestorOf(one.widget);
      EXPECT_TRUE(inside || !one.place.intersects(other.place)) << "lies over " << other.text.toStdString();
    }
  }
}

std::vector<QModelIndex> groups_of(const QTreeView& outline) {
  std::vector<QModelIndex> groups;
  for (int row = 0; row < outline.model()->rowCount(); ++row) groups.push_back(outline.model()->index(row, 0));
  return groups;
}

/// A group's name is told whole; the note beside it only where there is room.
void expect_room_in_rows(Stage& stage) {
  for (const auto* outline : stage.window()->findChildren<OutlineView*>()) {
    if (!outline->isVisibleTo(stage.window())) continue;
    for (const QModelIndex& group : groups_of(*outline)) {
      SCOPED_TRACE(group.data().toString().toStdString());
      const OutlineRow row(group, QRect(0, 0, outline->viewport()->width(), 100), Qt::LeftToRight);
      const QFontMetrics name(theme::font(theme::Type::body, theme::Weight::strong));
      const QFontMetrics header(theme::font(theme::Type::note));
      EXPECT_GE(row.label.width(), name.horizontalAdvance(group.data().toString()));
      EXPECT_GE(row.header.width(),
                header.horizontalAdvance(group.data(OutlineModel::header_role).toString().toUpper()));
    }
  }
}

/// Everything that is read or heard.
std::vector<QString> words_of(Stage& stage) {
  std::vector<QString> words;
  for (const Shown& one : shown_in(stage)) words.push_back(one.text);
  for (const QWidget* widget : stage.window()->findChildren<QWidget*>()) {
    words.insert(words.end(), {widget->accessibleName(), widget->accessibleDescription()});
  }
  for (const auto* outline : stage.window()->findChildren<OutlineView*>()) {
    for (const QModelIndex& group : groups_of(*outline)) {
      for (const int role : {int{Qt::DisplayRole}, int{Qt::AccessibleTextRole}, int{OutlineModel::note_role},
                             int{OutlineModel::header_role}, int{OutlineModel::size_text_role}}) {
        words.push_back(group.data(role).toString());
      }
    }
  }
  return words;
}

/// The text without the paths in it, which no table has.
QString without_paths(QString words) {
  static const QRegularExpression path(QStringLiteral("(/\u2060?[^\\s/]+)+"));
  return words.remove(path);
}

/// What stands outside the brackets that every text of the pseudo language has, without names.
QString not_localized(QString words) {
  static const QRegularExpression innermost(QStringLiteral(R"(\[[^\[\]]*\])"));
  static const QRegularExpression names(
      QStringLiteral("Tarnby cleaner|Uninstaller Orvane|Google Chrome|Firefox|Safari"));
  words.remove(names);
  for (qsizetype before = -1; before != words.size();) {
    before = words.size();
    words.remove(innermost);
  }
  static const QRegularExpression letters(QStringLiteral("[A-Za-z]+"));
  return words.contains(letters) ? words : QString();
}

/// A text of the tables, in English, as a value within another text.
bool says_in_english(const QString& words, const Localization& language) {
  return std::any_of(language.table().begin(), language.table().end(), [&](const auto& row) {
    const QString key = QString::fromStdString(row.first);
    return key.size() > 3 && !key.contains(u'%') &&
           words.contains(
               QRegularExpression(QStringLiteral("\\b") + QRegularExpression::escape(key) + QStringLiteral("\\b")));
  });
}

/// Of a line in a window that is read from right to left, whether the path in it is still read from its beginning.
bool path_begins_on_its_left(const QString& words) {
  QTextLayout layout(words);
  QTextOption option;
  option.setTextDirection(Qt::RightToLeft);
  layout.setTextOption(option);
  layout.beginLayout();
  const QTextLine line = layout.createLine();
  layout.endLayout();
  const auto home = static_cast<int>(words.indexOf(QStringLiteral("~/")));
  // Within it: where it begins two directions meet, and a cursor stands on either side.
  return home < 0 || line.cursorToX(home + 1) < line.cursorToX(home + 2);
}

void expect_paths_from_left_to_right(const QAbstractItemModel& model, const QModelIndex& parent = {}) {
  for (int row = 0; row < model.rowCount(parent); ++row) {
    const QModelIndex index = model.index(row, 0, parent);
    for (const int role : {int{Qt::DisplayRole}, int{OutlineModel::note_role}}) {
      const QString words = index.data(role).toString();
      EXPECT_TRUE(path_begins_on_its_left(words)) << words.toStdString();
    }
    expect_paths_from_left_to_right(model, index);
  }
}

class Layout : public testing::TestWithParam<StageRow> {
 protected:
  void TearDown() override { QApplication::setLayoutDirection(Qt::LeftToRight); }
};

TEST_P(Layout, texts_half_as_long_again_have_room_and_none_stays_english) {
  const Localization pseudo = in_pseudo_language();
  Stage stage(pseudo);
  GetParam().fill(stage);
  stage.pass(100);
  expect_room(shown_in(stage));
  expect_room_in_rows(stage);
  for (const QString& said : words_of(stage)) {
    const QString words = without_paths(said);
    EXPECT_EQ(not_localized(words).toStdString(), "");
    EXPECT_FALSE(says_in_english(words, pseudo)) << words.toStdString();
  }
}

TEST_P(Layout, every_language_has_room_in_the_least_window) {
  for (const char* language : {"de", "es", "fr", "ja", "zh-Hans"}) {
    SCOPED_TRACE(language);
    Stage stage(in_language(language), Stage::least_size);
    GetParam().fill(stage);
    stage.pass(100);
    expect_room(shown_in(stage));
    expect_room_in_rows(stage);
  }
}

TEST_P(Layout, from_right_to_left_everything_stands_on_the_other_side) {
  const auto places = [] {
    Stage stage;
    GetParam().fill(stage);
    stage.pass(100);
    const auto shown = shown_in(stage);
    expect_room(shown);
    for (const auto* list : stage.window()->findChildren<QAbstractItemView*>()) {
      if (QApplication::isRightToLeft()) expect_paths_from_left_to_right(*list->model());
    }
    return std::pair(shown, stage.window()->width());  // the widgets are gone, their places count
  };
  const auto [usual, width] = places();
  QApplication::setLayoutDirection(Qt::RightToLeft);
  const auto [mirrored, same_width] = places();
  ASSERT_EQ(usual.size(), mirrored.size());
  for (std::size_t at = 0; at < usual.size(); ++at) {
    SCOPED_TRACE(usual[at].text.toStdString());
    EXPECT_NEAR(mirrored[at].place.left(), width - usual[at].place.left() - usual[at].place.width(), 2);
    EXPECT_EQ(mirrored[at].place.top(), usual[at].place.top());
  }
}

INSTANTIATE_TEST_SUITE_P(Stages, Layout, testing::ValuesIn(screen_stages().begin(), screen_stages().end()),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace tarnby
