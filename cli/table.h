#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

namespace tarnby::cli {

/// Lines of cells under each other, made for reading. Cells are shown as they are given, in one line each.
class Table {
 public:
  /// On which side of a column its cells begin.
  enum class Align : std::uint8_t { left, right };

  /// @param columns how each column is aligned.
  /// @param window the window's width in characters; the first column is cut to fit. 0 for an output that is no window:
  ///   nothing is cut and nothing stands out.
  Table(std::vector<Align> columns, unsigned window) : columns_(std::move(columns)), window_(window) {}

  /// Fewer cells than columns will do.
  void line(std::vector<std::string> cells) { lines_.push_back({std::move(cells), false}); }
  /// A line that stands out.
  void heading(std::vector<std::string> cells) { lines_.push_back({std::move(cells), true}); }
  /// An empty line.
  void blank() { lines_.emplace_back(); }

  /// Writes the lines so far; columns are as wide as their widest cell, in terminal columns.
  void print(std::ostream& out) const;

 private:
  struct Line {
    std::vector<std::string> cells;
    bool stands_out = false;
  };

  std::vector<std::size_t> widths() const;
  std::string text_of(const std::vector<std::string>& cells, const std::vector<std::size_t>& widths) const;

  std::vector<Align> columns_;
  unsigned window_;
  std::vector<Line> lines_;
};

/// The width of the window on standard output; 0 when that is no window.
unsigned window_columns();

}  // namespace tarnby::cli
