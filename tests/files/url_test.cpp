#include "files/url.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <string>

#include "tests/support/seed.h"

namespace tarnby {
namespace {

using namespace std::string_literals;

TEST(Url, keeps_a_path_in_one_form_only) {
  const std::pair<std::string, std::string> cases[] = {{"//a/./b//./", "/a/b"},
                                                       {"/a/.b/..c/...", "/a/.b/..c/..."},
                                                       {"/a/../b/..", "/a/../b/.."},
                                                       {"///./", "/"},
                                                       {"/\xff\n\\:*?", "/\xff\n\\:*?"},
                                                       {"a/b", ""},
                                                       {"", ""},
                                                       {"/a\0/b"s, ""}};
  for (const auto& [given, path] : cases) EXPECT_EQ(Url::file(given).path(), path) << given;
  EXPECT_FALSE(Url::text("/etc").is_file_url()) << "a text never becomes a path";
  EXPECT_EQ(Url::file("/a").appending("/etc/").path(), "/a/etc") << "below, never beside";
  EXPECT_TRUE(Url::file("/a").appending("b\0c"s).empty());
  EXPECT_TRUE(Url().appending("a").empty() && Url::text("marker").appending("/a").empty()) << "nowhere stays nowhere";
  EXPECT_EQ(Url::file("/").parent().path(), "/") << "whoever climbs must come to an end";
  EXPECT_TRUE(Url::file("/a/b").is_within(Url::file("/a")) && Url::file("/a").is_within(Url::file("/")));
  EXPECT_FALSE(Url::file("/ab").is_within(Url::file("/a")) || Url::text("a/b").is_within(Url::text("a")));
}

TEST(WalksBefore, orders_like_the_components_of_the_paths) {
  // Bytes around "/", where comparing whole texts goes wrong, and bytes that a signed char would put first.
  constexpr std::string_view bytes = "/!-.0a\x7f\x80\xff";
  const std::uint32_t seed = test::random_seed();
  SCOPED_TRACE(test::how_to_repeat(seed));
  std::mt19937 random(seed);
  const auto some_path = [&] {
    std::string path;
    for (auto left = random() % 9; left > 0; --left) {
      path += path.empty() || random() % 2 == 0 ? "/" : "";
      path += bytes[1 + random() % (bytes.size() - 1)];
    }
    return path;
  };
  for (int round = 0; round < 5000; ++round) {
    const std::string a = some_path();
    const std::string b = some_path();
    ASSERT_EQ(walks_before(a, b), std::filesystem::path(a) < std::filesystem::path(b)) << a << " " << b;
  }
}

}  // namespace
}  // namespace tarnby
