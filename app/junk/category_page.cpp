#include "app/junk/category_page.h"

#include <QHBoxLayout>
#include <QVBoxLayout>
#include <algorithm>

#include "app/parts/layouts.h"
#include "app/parts/screen_catalogue.h"
#include "engine/cleaner.h"
#include "ui/color_tag.h"
#include "ui/panel.h"
#include "ui/text_label.h"

namespace tarnby {

CategoryPage::CategoryPage(AppContext& context, const Plan& plan)
    : Screen(context),
      appDelegate(context.appDelegate),
      app_settings(context.settings()),
      sharedCleaner(context.sharedCleaner()) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  QLabel* title = text_label(context.text(plan.title), theme::Type::heading, theme::text, this, theme::Weight::strong);
  auto* top = new QHBoxLayout;
  top->setContentsMargins(page_edge, panel_gap, page_edge, close_gap);
  top->addWidget(title);
  top->addStretch();
  layout->addLayout(top);

  auto* panels = new QHBoxLayout;
  panels->setContentsMargins(3 * theme::grid, 0, 3 * theme::grid, 2 * theme::grid);
  panels->setSpacing(panel_gap);
  panels->addWidget(list_panel(plan), 10);
  auto* told = new Panel(this);
  containerView = told;
  auto* inside = new QVBoxLayout(told);
  inside->setContentsMargins(0, 0, 0, 0);
  inside->addWidget(ScreenCatalogue::main().make(plan.inner_pages, context).release());
  panels->addWidget(told, 9);
  layout->addLayout(panels, 1);
  layout->addWidget(bottom_bar(plan));
  for (const auto& shown : shown_) {
    observe(shown->look->move, [this, &current = *shown] { mark_current(current); });
  }
  mark_current(*shown_.front());  // whose panel is the first one
  observe(choice_changed, [this] { update_ui(); });
}

QWidget* CategoryPage::list_panel(const Plan& plan) {
  auto* panel = new Panel(this);
  auto* layout = new QVBoxLayout(panel);
  layout->setContentsMargins(theme::grid, 2 * theme::grid, theme::grid, 2 * theme::grid);
  layout->setSpacing(theme::grid);
  for (const JunkRow& row : plan.rows) layout->addWidget(row_line(row, panel));
  other_rows_ = plan.rows.data() == media_rows().data() ? applications_rows() : media_rows();
  layout->addStretch();
  const QColor quiet = theme::readable(theme::secondary, theme::panel_ground());
  problems = note_below(theme::readable(theme::amber, theme::panel_ground()), panel);
  other_page = note_below(quiet, panel);
  counted_once = note_below(quiet, panel);
  problems->setText(problems_text());
  problems->setVisible(!problems->text().isEmpty());
  return panel;
}

QLabel* CategoryPage::note_below(const QColor& color, QWidget* panel) {
  QLabel* note = text_label({}, theme::Type::detail, color, panel);
  note->setWordWrap(true);
  align_at_beginning(note);
  note->setContentsMargins(theme::grid, 0, theme::grid, 0);
  panel->layout()->addWidget(note);
  return note;
}

QString CategoryPage::problems_text() const {
  QStringList told;
  for (const auto& shown : shown_) {
    const auto problem = sharedCleaner.problem_of(shown->category->setting);
    if (!problem) continue;
    const QString name = path_in_words(QString::fromStdString(problem->name).replace(u'\n', u' '));
    told << context_.text("%@: %@",
                          {context_.text(shown->category->label), context_.text(look_problem_text(*problem), {name})});
  }
  return told.join(u'\n');
}

QWidget* CategoryPage::row_line(const JunkRow& row, QWidget* parent) {
  auto* line = new CategoryRow(parent);
  line->setMinimumHeight(theme::row_height + theme::grid);
  auto* layout = new QHBoxLayout(line);
  layout->setContentsMargins(theme::grid, 0, theme::grid, 0);
  layout->setSpacing(theme::grid);
  const QString label = context_.text(row.category.label);
  ShownCategory& shown = *shown_.emplace_back(std::make_unique<ShownCategory>());
  shown.category = &row.category;
  shown.look = &row.look;
  shown.line = line;
  shown.button = new CheckButton(line);
  shown.button->setAccessibleName(label);
  keep_place_when_hidden(shown.button);
  shown.info = new InfoButton(context_.text("About %@", {label}), line);
  shown.size_label = text_label({}, theme::Type::body, theme::text, line);
  layout->addWidget(shown.button);
  layout->addWidget(new ColorTag(row.look.color, line));
  QLabel* name = text_label(label, theme::Type::body, theme::text, line, theme::Weight::strong);
  name->setBuddy(shown.button);
  layout->addWidget(name);
  layout->addWidget(shown.info);
  layout->addStretch();
  layout->addWidget(shown.size_label);
  connect(shown.button, &QAbstractButton::clicked, this, [this, &shown](bool on) { toggle(shown, on); });
  connect(shown.info, &QAbstractButton::clicked, this, [this, &shown] { about(shown); });
  connect(line, &CategoryRow::pressed, this,
          [this, &shown] { shown.button->isHidden() ? about(shown) : shown.button->click(); });
  return line;
}

QWidget* CategoryPage::bottom_bar(const Plan& plan) {
  auto* bar = new Bar(this);
  auto* layout = new QHBoxLayout(bar);
  layout->setContentsMargins(3 * theme::grid, 2 * theme::grid, 3 * theme::grid, 2 * theme::grid);
  layout->setSpacing(2 * theme::grid);
  back_button = new PushButton(context_.text("Back"), ButtonKind::plain, bar);
  layout->addWidget(back_button);
  layout->addStretch(1);
  layout->addWidget(text_label(context_.text("Will be cleaned"), theme::Type::body,
                               theme::readable(theme::secondary, theme::panel_ground()), bar));
  overall_be_cleaned_label = new NumberLabel(context_.clock, bar);
  overall_be_cleaned_label->setFont(theme::font(theme::Type::heading, theme::Weight::strong));
  layout->addWidget(overall_be_cleaned_label);
  next_button = new PushButton(context_.text(plan.next_text), plan.next_kind, bar);
  layout->addWidget(next_button);
  return bar;
}

CategoryPage::ShownCategory& CategoryPage::category(std::string_view type) {
  for (const auto& shown : shown_) {
    if (shown->category->type == type) return *shown;
  }
  return *shown_.front();
}

QString CategoryPage::size_text(const ShownCategory& shown) const {
  return context_.byte_count(shown.size);
}

void CategoryPage::show_item(ShownCategory& shown) {
  const auto& item = sharedCleaner.*shown.category->item;
  shown.size = item ? item->size : 0;
  shown.button->setVisible(has_box(shown));
  shown.size_label->setText(size_text(shown));
}

void CategoryPage::toggle(ShownCategory& shown, bool on) {
  app_settings.set_boolean(shown.category->setting, on);
  context_.flush_settings();
  count(on ? shown.size : -shown.size);
  post(shown.look->move);
  tell_choice();
}

void CategoryPage::mark_current(const ShownCategory& current) {
  for (const auto& shown : shown_) shown->line->set_current(shown.get() == &current);
}

void CategoryPage::add_to_line(const ShownCategory& shown, QWidget* control) {
  shown.line->layout()->addWidget(control);
}

void CategoryPage::update_ui() {
  choice_ = junk_choice(sharedCleaner);
  overall_be_cleaned_label->show_text(context_.byte_count(choice_.bytes));
  const std::int64_t others = ticked_bytes(sharedCleaner, other_rows_);
  std::int64_t again = others - choice_.bytes;
  for (const RemovalQuestion::Line& line : choice_.lines) {
    const bool here = std::ranges::any_of(shown_, [&](const auto& own) { return own->category->type == line.type; });
    if (here) again += line.size;
  }
  const auto show = [](QLabel* note, const QString& words) {
    note->setText(words);
    note->setVisible(!words.isEmpty());
  };
  show(other_page, others == 0 ? QString() : context_.text("On the other page: %@", {context_.byte_count(others)}));
  show(counted_once, counted_once_text(context_, again));
}

}  // namespace tarnby
