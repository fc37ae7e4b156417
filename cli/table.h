#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace tarnby::cli {

/// Rows of a label and a size, made for reading: labels on the left, sizes right-aligned in one column, as wide as the
/// window allows. Labels are shown as they are given, in one line each.
class Table {
 public:
  /// @param columns the window's width in characters; 0 for an output that is no window.
  explicit Table(unsigned columns) : columns_(columns) {}

  /// A row that stands out, with `indent` levels before it.
  void heading(std::string label, std::string size);
  void row(unsigned indent, std::string label, std::string size);
  void blank();

  void print(std::ostream& out) const;

 private:
  struct Row {
    std::string label;
    std::string size;
    bool stands_out = false;
  };
  unsigned columns_;
  std::vector<Row> rows_;
};

/// The width of the window on standard output; 0 when that is no window.
unsigned window_columns();

}  // namespace tarnby::cli
