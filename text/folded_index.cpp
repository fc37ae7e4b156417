#include "text/folded_index.h"

#include <algorithm>

namespace tarnby {

namespace {

/// The first two bytes as a number; what follows a single byte counts as 0.
std::size_t head_of(std::string_view text) {
  const auto first = static_cast<unsigned char>(text[0]);
  const auto second = static_cast<unsigned char>(text.size() > 1 ? text[1] : '\0');
  return std::size_t{first} << 8U | second;
}

std::size_t shared_beginning(std::string_view a, std::string_view b) {
  const auto [end, ignored] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
  return static_cast<std::size_t>(end - a.begin());
}

}  // namespace

FoldedIndex::FoldedIndex(std::vector<FoldedText> parts) : texts_(std::move(parts)) {
  for (std::size_t position = 0; position < texts_.size(); ++position) {
    if (!texts_[position].empty()) parts_.push_back({texts_[position].bytes(), position, none});
  }
  std::sort(parts_.begin(), parts_.end(), [](const Part& a, const Part& b) { return a.bytes < b.bytes; });
  link_beginnings();
  note_heads();
}

/// What a part begins with stands before it, and everything between the two begins with it, too.
void FoldedIndex::link_beginnings() {
  for (std::size_t at = 1; at < parts_.size(); ++at) {
    std::size_t before = at - 1;
    while (before != none && !parts_[at].bytes.starts_with(parts_[before].bytes)) before = parts_[before].beginning;
    parts_[at].beginning = before;
  }
}

void FoldedIndex::note_heads() {
  for (const Part& part : parts_) {
    const std::size_t head = head_of(part.bytes);
    const std::size_t last = part.bytes.size() > 1 ? head : head | 0xFFU;
    for (std::size_t possible = head; possible <= last; ++possible) heads_.set(possible);
  }
}

void FoldedIndex::add_beginnings_of(std::string_view rest, std::vector<std::size_t>& found) const {
  const auto after = std::upper_bound(parts_.begin(), parts_.end(), rest,
                                      [](auto text, const Part& part) { return text < part.bytes; });
  if (after == parts_.begin()) return;
  auto at = static_cast<std::size_t>(after - parts_.begin()) - 1;
  const std::size_t shared = shared_beginning(parts_[at].bytes, rest);
  while (at != none && parts_[at].bytes.size() > shared) at = parts_[at].beginning;
  for (; at != none; at = parts_[at].beginning) found.push_back(parts_[at].position);
}

std::vector<std::size_t> FoldedIndex::parts_in(const FoldedText& text) const {
  std::vector<std::size_t> found;
  for (std::string_view rest = text.bytes(); !rest.empty(); rest.remove_prefix(1)) {
    if (heads_.test(head_of(rest))) add_beginnings_of(rest, found);
  }
  std::sort(found.begin(), found.end());
  found.erase(std::unique(found.begin(), found.end()), found.end());
  return found;
}

}  // namespace tarnby
