#include "app/smart/warning_cleanup_view_controller.h"

#include <QGridLayout>
#include <QPainter>
#include <QVBoxLayout>
#include <algorithm>
#include <numeric>

#include "app/parts/category_look.h"
#include "app/parts/overlay.h"
#include "app/parts/screen_catalogue.h"
#include "text/localization.h"
#include "ui/color_tag.h"
#include "ui/paths.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

constexpr int words_width = 416;
constexpr int line_height = 28;
constexpr int least_size_width = 80;
constexpr QColor warning_ground = QColor(0xFB, 0xBF, 0x24, 36);
constexpr QColor warning_text = theme::rgb(0xFFD874);

struct ConsequenceRow {
  std::string_view type;
  const char* words;
};

/// What somebody may miss afterwards, where a category's name does not say it.
constexpr ConsequenceRow consequences[] = {
    {"browsers", english("sites may ask you to sign in again.")},
    {"mails", english("what is no longer on the mail server is gone.")},
    {"trash", english("what you threw away cannot be put back.")},
};

const char* consequence_of(std::string_view type) {
  const auto* row = std::ranges::find(consequences, type, &ConsequenceRow::type);
  return row == std::end(consequences) ? nullptr : row->words;
}

/// The ground that what may be missed stands on.
class WarningCard : public QWidget {
 public:
  using QWidget::QWidget;

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(rounded_path(QRectF(rect()), theme::grid), warning_ground);
  }
};

}  // namespace

std::size_t RemovalQuestion::entries() const {
  return std::accumulate(lines.begin(), lines.end(), std::size_t{0},
                         [](std::size_t sum, const Line& line) { return sum + line.entries; });
}

std::int64_t RemovalQuestion::counted_again() const {
  return std::accumulate(lines.begin(), lines.end(), -bytes,
                         [](std::int64_t sum, const Line& line) { return sum + line.size; });
}

QString counted_once_text(const AppContext& context, std::int64_t counted_again) {
  if (counted_again <= 0) return {};
  return context.text("What is listed twice is counted once: %@ less.", {context.byte_count(counted_again)});
}

WarningCleanupViewController::WarningCleanupViewController(AppContext& context) : Screen(context) {}

void WarningCleanupViewController::show_question(const RemovalQuestion& question) {
  const QString size = context_.byte_count(question.bytes);
  setWindowTitle(context_.text("Remove %@ for good?", {size}));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(4 * theme::grid, 4 * theme::grid, 4 * theme::grid, 3 * theme::grid);
  layout->setSpacing(theme::grid);
  QLabel* title = text_label(windowTitle(), theme::Type::heading, theme::text, this, theme::Weight::strong);
  QLabel* words = paragraph(context_.plural(static_cast<std::int64_t>(question.entries()),
                                            "One entry does not go to the Trash and cannot be brought back.",
                                            "%@ entries do not go to the Trash and cannot be brought back."),
                            theme::Type::body, theme::readable(theme::secondary, theme::sheet), words_width, this);
  for (QLabel* label : {title, words}) {
    align_at_beginning(label);
    layout->addWidget(label);
  }
  setAccessibleDescription(words->text());
  layout->addSpacing(theme::grid);
  add_lines(layout, question);
  add_consequences(layout, question);
  layout->addSpacing(theme::grid);
  dont_show_button = new CheckButton(this, context_.text("Do not ask again"));
  layout->addWidget(dont_show_button);
  layout->addSpacing(theme::grid);
  layout->addLayout(buttons(size));
  cancel_button->setFocus();  // a key pressed too soon removes nothing
}

void WarningCleanupViewController::add_lines(QVBoxLayout* layout, const RemovalQuestion& question) {
  const QColor quiet = theme::readable(theme::secondary, theme::sheet);
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(2 * theme::grid);
  grid->setVerticalSpacing(0);
  grid->setColumnStretch(1, 1);
  grid->setColumnMinimumWidth(3, least_size_width);
  for (const RemovalQuestion::Line& line : question.lines) {
    const int row = grid->rowCount();
    grid->setRowMinimumHeight(row, line_height);
    grid->addWidget(new ColorTag(look_of(line.type).color, this), row, 0);
    QLabel* label = text_label(context_.text(line.label.c_str()), theme::Type::body, theme::text, this);
    align_at_beginning(label);
    grid->addWidget(label, row, 1);
    const QString entries = context_.plural(static_cast<std::int64_t>(line.entries), "one entry", "%@ entries");
    grid->addWidget(text_label(entries, theme::Type::detail, quiet, this), row, 2, Qt::AlignRight | Qt::AlignVCenter);
    QLabel* size =
        text_label(context_.byte_count(line.size), theme::Type::body, theme::text, this, theme::Weight::strong);
    grid->addWidget(size, row, 3, Qt::AlignRight | Qt::AlignVCenter);
  }
  layout->addLayout(grid);
  const QString counted_once = counted_once_text(context_, question.counted_again());
  if (counted_once.isEmpty()) return;
  QLabel* once = paragraph(counted_once, theme::Type::note, quiet, words_width, this);
  align_at_beginning(once);
  layout->addWidget(once);
}

void WarningCleanupViewController::add_consequences(QVBoxLayout* layout, const RemovalQuestion& question) {
  QStringList told;
  for (const RemovalQuestion::Line& line : question.lines) {
    const char* words = consequence_of(line.type);
    if (words != nullptr) told << context_.text("%@: %@", {context_.text(line.label.c_str()), context_.text(words)});
  }
  if (told.isEmpty()) return;
  auto* card = new WarningCard(this);
  auto* inside = new QVBoxLayout(card);
  inside->setContentsMargins(2 * theme::grid, theme::grid, 2 * theme::grid, theme::grid);
  const QColor color = theme::readable(warning_text, theme::over(warning_ground, theme::sheet));
  QLabel* words = paragraph(told.join(u'\n'), theme::Type::detail, color, words_width - 4 * theme::grid, card);
  align_at_beginning(words);
  inside->addWidget(words);
  layout->addSpacing(theme::grid);
  layout->addWidget(card);
}

QLayout* WarningCleanupViewController::buttons(const QString& size) {
  cancel_button = new PushButton(context_.text("Cancel"), ButtonKind::plain, this);
  cleanup_button = new PushButton(context_.text("Remove %@", {size}), ButtonKind::destructive, this);
  connect(cancel_button, &QAbstractButton::clicked, this, &Screen::dismissed);
  connect(cleanup_button, &QAbstractButton::clicked, this, &WarningCleanupViewController::cleanup);
  auto* row = new QHBoxLayout;
  row->setSpacing(theme::grid);
  row->addStretch();
  row->addWidget(cancel_button);
  row->addWidget(cleanup_button);
  return row;
}

void WarningCleanupViewController::cleanup() {
  context_.settings().set_boolean("CleanupReady", true);
  if (dont_show_button->isChecked()) dont_show();
  context_.flush_settings();
  Q_EMIT confirmed();
  Q_EMIT dismissed();
}

void WarningCleanupViewController::dont_show() {
  context_.settings().set_boolean("SkipWarning", true);
}

Screen* ask_before_removal(AppContext& context, const RemovalQuestion& question, Screen& screen,
                           const std::function<void()>& remove) {
  if (context.settings().boolean("SkipWarning")) {
    remove();
    return nullptr;
  }
  auto made = ScreenCatalogue::smart_clean().make("WarningCleanup", context);
  auto* warning = static_cast<WarningCleanupViewController*>(made.get());
  warning->show_question(question);
  QObject::connect(warning, &WarningCleanupViewController::confirmed, &screen, remove);
  Sheet::present(std::move(made), screen.window());
  return warning;
}

}  // namespace tarnby
