#pragma once

#include <bitset>
#include <cstddef>
#include <string_view>
#include <vector>

#include "text/text.h"

namespace tarnby {

/// Many texts that are looked for at once, where asking `FoldedText::contains` for each of them would take too long.
///
/// The texts are sorted, and each refers to the longest other one that it begins with. Of all that begin at a position
/// of the searched text, the longest is found by bisection; following its references gives the others. Immutable; any
/// thread may call.
class FoldedIndex {
 public:
  explicit FoldedIndex(std::vector<FoldedText> parts);
  FoldedIndex(const FoldedIndex&) = delete;
  FoldedIndex& operator=(const FoldedIndex&) = delete;

  /// Which of the parts the text contains, by their indices in the list that was given, each once, in ascending order:
  /// those for which `text.contains(part)` holds. The time it takes grows with the text, not with the number of parts.
  std::vector<std::size_t> parts_in(const FoldedText& text) const;

 private:
  struct Part {
    std::string_view bytes;
    /// Its index in the list that was given.
    std::size_t position;
    /// The last one before it that it begins with, equal ones among them; `none` when there is none.
    std::size_t beginning;
  };
  static constexpr std::size_t none = static_cast<std::size_t>(-1);

  void link_beginnings();
  void note_heads();
  void add_beginnings_of(std::string_view rest, std::vector<std::size_t>& found) const;

  std::vector<FoldedText> texts_;
  /// In byte order.
  std::vector<Part> parts_;
  /// Whether any part begins with these two bytes: at most positions of a text the parts need no look.
  std::bitset<1U << 16U> heads_;
};

}  // namespace tarnby
