#include "app/junk/category_page.h"

#include <QHBoxLayout>
#include <QVBoxLayout>
#include <algorithm>

#include "app/parts/category_look.h"
#include "app/parts/layouts.h"
#include "app/parts/screen_catalogue.h"
#include "ui/color_tag.h"
#include "ui/panel.h"
#include "ui/text_label.h"

namespace tarnby {

CategoryPage::CategoryPage(AppContext& context, const Plan& plan)
    : Screen(context),
      appDelegate(context.appDelegate),
      app_settings(context.platform.app_settings),
      sharedCleaner(context.sharedCleaner()) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  QLabel* title = text_label(context.text(plan.title), theme::Type::heading, theme::text, this, theme::Weight::strong);
  auto* top = new QHBoxLayout;
  top->setContentsMargins(28, 20, 28, 12);
  top->addWidget(title);
  top->addStretch();
  layout->addLayout(top);

  auto* panels = new QHBoxLayout;
  panels->setContentsMargins(3 * theme::grid, 0, 3 * theme::grid, 2 * theme::grid);
  panels->setSpacing(20);
  panels->addWidget(list_panel(plan), 10);
  auto* told = new Panel(this);
  containerView = told;
  auto* inside = new QVBoxLayout(told);
  inside->setContentsMargins(0, 0, 0, 0);
  inside->addWidget(ScreenCatalogue::main().make(plan.inner_pages, context).release());
  panels->addWidget(told, 9);
  layout->addLayout(panels, 1);
  layout->addWidget(bottom_bar(plan));
  for (const auto& category : categories_) {
    observe(category->row->move, [this, &shown = *category] { mark_current(shown); });
  }
  mark_current(*categories_.front());  // whose panel is the first one
  observe(choice_changed, [this] { update_ui(); });
}

QWidget* CategoryPage::list_panel(const Plan& plan) {
  auto* panel = new Panel(this);
  auto* layout = new QVBoxLayout(panel);
  layout->setContentsMargins(theme::grid, 2 * theme::grid, theme::grid, 2 * theme::grid);
  layout->setSpacing(theme::grid);
  for (const JunkRow& row : plan.rows) layout->addWidget(row_line(row, panel));
  layout->addStretch();
  other_page_ = text_label({}, theme::Type::detail, theme::readable(theme::secondary, theme::panel_ground()), panel);
  align_at_beginning(other_page_);
  other_page_->setContentsMargins(theme::grid, 0, theme::grid, 0);
  layout->addWidget(other_page_);
  return panel;
}

QWidget* CategoryPage::row_line(const JunkRow& row, QWidget* parent) {
  auto* line = new CategoryRow(parent);
  line->setMinimumHeight(theme::row_height + theme::grid);
  auto* layout = new QHBoxLayout(line);
  layout->setContentsMargins(theme::grid, 0, theme::grid, 0);
  layout->setSpacing(theme::grid);
  const QString label = context_.text(row.label);
  auto category = std::make_unique<Category>();
  Category& shown = *category;
  shown.row = &row;
  shown.line = line;
  shown.button = new CheckButton(line);
  shown.button->setAccessibleName(label);
  keep_place_when_hidden(shown.button);
  shown.info = new InfoButton(context_.text("About %@", {label}), line);
  shown.size_label = text_label({}, theme::Type::body, theme::text, line);
  layout->addWidget(shown.button);
  layout->addWidget(new ColorTag(look_of(row.type).color, line));
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
  categories_.push_back(std::move(category));
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

CategoryPage::Category& CategoryPage::category(std::string_view type) {
  for (const auto& category : categories_) {
    if (category->row->type == type) return *category;
  }
  return *categories_.front();
}

QString CategoryPage::size_text(const Category& category) const {
  return context_.byte_count(category.size);
}

void CategoryPage::show_item(Category& category) {
  const auto& item = sharedCleaner.*category.row->item;
  category.size = item ? item->size : 0;
  category.button->setVisible(has_box(category));
  category.size_label->setText(size_text(category));
}

void CategoryPage::toggle(Category& category, bool on) {
  app_settings.set_boolean(category.row->setting, on);
  context_.flush_settings();
  count(on ? category.size : -category.size);
  post(category.row->move);
  tell_choice();
}

void CategoryPage::mark_current(const Category& current) {
  for (const auto& category : categories_) category->line->set_current(category.get() == &current);
}

void CategoryPage::add_to_line(const Category& category, QWidget* control) {
  category.line->layout()->addWidget(control);
}

void CategoryPage::update_ui() {
  choice_ = junk_choice(sharedCleaner);
  overall_be_cleaned_label->show_text(context_.byte_count(choice_.bytes));
  std::int64_t others = 0;
  for (const RemovalQuestion::Line& line : choice_.lines) {
    const bool here = std::ranges::any_of(categories_, [&](const auto& own) { return own->row->type == line.type; });
    if (!here) others += line.size;
  }
  other_page_->setText(others == 0 ? QString() : context_.text("On the other page: %@", {context_.byte_count(others)}));
}

}  // namespace tarnby
