#include "text/folded_index.h"

#include <gtest/gtest.h>

#include <chrono>
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

TEST(FoldedIndex, takes_no_longer_for_a_text_because_there_are_more_parts) {
  constexpr int count = 100'000;
  Texts parts;
  for (int i = 0; i < count; ++i) parts.emplace_back("com.gone.tool" + std::to_string(i));
  for (int i = 0; i < 200; ++i) parts.emplace_back(std::string(static_cast<std::size_t>(i), 'a') + ".a.a");
  const FoldedText repeating(std::string(255, 'a'));
  const auto begin = std::chrono::steady_clock::now();
  const FoldedIndex index(parts);
  for (int i = 0; i < count; ++i) {
    ASSERT_FALSE(index.parts_in(parts[static_cast<std::size_t>(i)]).empty());
  }
  for (int i = 0; i < count / 50; ++i) ASSERT_TRUE(index.parts_in(repeating).empty());
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10)) << "each with each takes a minute";
}

}  // namespace
}  // namespace tarnby
