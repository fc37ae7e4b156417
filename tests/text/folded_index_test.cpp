#include "text/folded_index.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/support/seed.h"

namespace tarnby {
namespace {

using Texts = std::vector<FoldedText>;

std::vector<std::size_t> asked_one_by_one(const Texts& parts, const FoldedText& text) {
  std::vector<std::size_t> found;
  for (std::size_t place = 0; place < parts.size(); ++place) {
    if (text.contains(parts[place])) found.push_back(place);
  }
  return found;
}

TEST(FoldedIndex, finds_what_asking_for_each_part_finds) {
  const std::uint32_t seed = test::random_seed();
  SCOPED_TRACE(test::how_to_repeat(seed));
  std::mt19937 random(seed);
  const auto text_of = [&](std::size_t most) {
    constexpr const char* letters[] = {"a", "A", "b", ".", "é", "e", "\u0301", "ß", "s", "\xFF", "\xC3"};
    std::string text;
    for (auto left = random() % (most + 1); left > 0; --left) text += letters[random() % std::size(letters)];
    return FoldedText(text);
  };
  for (int round = 0; round < 300; ++round) {
    Texts parts;
    for (auto left = random() % 40; left > 0; --left) parts.push_back(text_of(5));
    const FoldedIndex index(parts);
    for (int i = 0; i < 40; ++i) {
      const FoldedText text = text_of(12);
      ASSERT_EQ(index.parts_in(text), asked_one_by_one(parts, text)) << text.bytes();
    }
  }
}

}  // namespace
}  // namespace tarnby
