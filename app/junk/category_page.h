#pragma once

#include <QLabel>
#include <cstdint>
#include <memory>
#include <vector>

#include "app/junk/category_row.h"
#include "app/junk/junk_choice.h"
#include "app/junk/junk_rows.h"
#include "app/parts/screen.h"
#include "ui/changing_label.h"
#include "ui/check_button.h"
#include "ui/info_button.h"
#include "ui/push_button.h"

namespace tarnby {

/// One of the two category pages: its categories with a box, a size and an info button each, what is told about the one
/// touched last, and the sum of what will be cleaned, which is that of both pages.
class CategoryPage : public Screen {
  Q_OBJECT
 public:
  AppDelegate& appDelegate;
  AppSettings& app_settings;
  Cleaner& sharedCleaner;
  /// Told to both pages when what will be cleaned is another one.
  static constexpr const char* choice_changed = "junk_choice_changed";

  /// Bytes in the ticked categories of this page.
  std::uint64_t overall_be_cleaned = 0;
  /// Bytes in the ticked categories of both.
  NumberLabel* overall_be_cleaned_label;
  QWidget* containerView;  // holds the inner page container
  PushButton* back_button;
  PushButton* next_button;

  /// One category as it is shown.
  struct ShownCategory {
    const Category* category;
    const CategoryLook* look;
    CategoryRow* line;
    CheckButton* button;
    QLabel* size_label;
    InfoButton* info;
    /// The bytes that it counts with while it is ticked.
    std::int64_t size = 0;
  };
  ShownCategory& category(std::string_view type);

  /// What stands below the categories: what of them could not be looked at, one line each; what is ticked on the other
  /// page; and why the sum is less than its parts, where it is.
  QLabel* problems;
  QLabel* other_page;
  QLabel* counted_once;

  /// Shows the sum of both pages, and what of it stands on the other one.
  void update_ui();

 protected:
  /// How a page differs from the other one.
  struct Plan {
    const char* title;
    std::span<const JunkRow> rows;
    const char* inner_pages;
    ButtonKind next_kind;
    const char* next_text;
  };
  CategoryPage(AppContext& context, const Plan& plan);

  /// The box of a category was ticked or unticked.
  virtual void toggle(ShownCategory& shown, bool on);
  /// What will be cleaned, after `update_ui`.
  const RemovalQuestion& choice() const { return choice_; }
  /// Tells both pages that what will be cleaned is another one.
  void tell_choice() { post(choice_changed); }
  /// Only turns to what is told about it.
  void about(const ShownCategory& shown) { post(shown.look->move); }
  /// Takes the engine's item as it is now: its size, its text, and whether there is a box at all.
  void show_item(ShownCategory& shown);
  virtual QString size_text(const ShownCategory& shown) const;
  /// A category with nothing in it has no box to tick.
  virtual bool has_box(const ShownCategory& shown) const { return shown.size >= 1; }
  /// Adds a line's control behind its size.
  void add_to_line(const ShownCategory& shown, QWidget* control);
  void count(std::int64_t bytes) { overall_be_cleaned += static_cast<std::uint64_t>(bytes); }

 private:
  QWidget* list_panel(const Plan& plan);
  QLabel* note_below(const QColor& color, QWidget* panel);
  QString problems_text() const;
  QWidget* row_line(const JunkRow& row, QWidget* parent);
  QWidget* bottom_bar(const Plan& plan);
  void mark_current(const ShownCategory& current);

  std::span<const JunkRow> other_rows_;
  RemovalQuestion choice_;
  std::vector<std::unique_ptr<ShownCategory>> shown_;
};

}  // namespace tarnby
