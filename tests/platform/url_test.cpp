#include "platform/url.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace tarnby {
namespace {

using namespace std::string_literals;

TEST(Url, keeps_a_path_in_one_form_only) {
  struct Case {
    const char* why;
    std::string given;
    std::string path;
  };
  const Case cases[] = {
      {"as it is", "/a/b", "/a/b"},
      {"empty components and dots name nothing", "//a/./b//./", "/a/b"},
      {"a dot is no name, but may begin one", "/a/.b/..c/...", "/a/.b/..c/..."},
      {"climbing is kept, for whoever opens it to refuse", "/a/../b/..", "/a/../b/.."},
      {"the root", "/", "/"},
      {"the root again", "///./", "/"},
      {"any other byte is part of a name", "/\xff\n\\:*?", "/\xff\n\\:*?"},
      {"relative", "a/b", ""},
      {"nothing", "", ""},
      {"the system would read only what is before a NUL", "/a\0/b"s, ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    const Url url = Url::file(c.given);
    EXPECT_EQ(url.path(), c.path);
    EXPECT_EQ(url.is_file_url(), !c.path.empty());
    EXPECT_EQ(Url::file(url.path()), url);
  }
  EXPECT_FALSE(Url::text("/etc").is_file_url()) << "a text never becomes a path";
  EXPECT_TRUE(Url::text("/etc").empty());
}

TEST(Url, appends_below_and_never_beside) {
  const Url folder = Url::file("/a");
  EXPECT_EQ(folder.appending("b/c").path(), "/a/b/c");
  EXPECT_EQ(folder.appending("/etc/").path(), "/a/etc") << "an absolute path does not replace what it is appended to";
  EXPECT_EQ(folder.appending("").path(), "/a");
  EXPECT_EQ(Url::file("/").appending("a").path(), "/a");
  EXPECT_EQ(Url::file("/").appending("").path(), "/");
  EXPECT_TRUE(folder.appending("b\0c"s).empty());
  EXPECT_TRUE(Url().appending("a").empty()) << "nowhere stays nowhere";
  EXPECT_TRUE(Url::text("marker").appending("/a").empty());
}

TEST(Url, knows_what_holds_it) {
  const Url file = Url::file("/a/b.c/d.tar.gz");
  EXPECT_EQ(file.last_path_component(), "d.tar.gz");
  EXPECT_EQ(file.path_extension(), "gz");
  EXPECT_EQ(file.parent().path(), "/a/b.c");
  EXPECT_EQ(Url::file("/a").parent().path(), "/");
  EXPECT_EQ(Url::file("/").parent().path(), "/") << "whoever climbs must come to an end";
  EXPECT_TRUE(Url::text("a/b").parent().empty());
  struct Case {
    const char* why;
    Url url;
    Url folder;
    bool within;
  };
  const Case cases[] = {
      {"below", Url::file("/a/b/c"), Url::file("/a"), true},
      {"itself", Url::file("/a"), Url::file("/a"), true},
      {"only called alike", Url::file("/ab"), Url::file("/a"), false},
      {"above", Url::file("/"), Url::file("/a"), false},
      {"everything is below the root", Url::file("/a"), Url::file("/"), true},
      {"nowhere is nowhere", Url(), Url(), false},
      {"nothing is below a text", Url::text("a/b"), Url::text("a"), false},
      {"nor a text below the root", Url::text("a"), Url::file("/"), false},
  };
  for (const Case& c : cases) EXPECT_EQ(c.url.is_within(c.folder), c.within) << c.why;
}

TEST(Url, an_extension_needs_something_before_and_after_its_dot) {
  const std::pair<const char*, const char*> cases[] = {
      {"a.app", "app"},   {"a.b.app", "app"}, {"a", ""},  {".app", ""}, {"a.", ""}, {"..app", "app"},
      {".hidden.c", "c"}, {"", ""},           {"..", ""}, {"a. ", " "}, {".", ""}};
  for (const auto& [name, extension] : cases) EXPECT_EQ(path_extension_of(name), extension) << name;
}

std::vector<std::string> components(const std::string& path) {
  std::vector<std::string> parts(1);
  for (const char c : path) {
    if (c == '/') {
      parts.emplace_back();
    } else {
      parts.back() += c;
    }
  }
  return parts;
}

TEST(WalksBefore, orders_like_the_components_of_the_paths) {
  // Bytes around "/", where comparing whole texts goes wrong, and bytes that a signed char would put first.
  constexpr std::string_view bytes = "/!-.0a\x7f\x80\xff";
  const std::random_device::result_type seed = std::random_device()();
  std::mt19937 random(seed);
  const auto some_path = [&] {
    std::string path;
    for (auto length = random() % 9; length > 0; --length) path += "/"s + bytes[1 + random() % (bytes.size() - 1)];
    for (auto at = path.size(); at-- > 1;) {
      if (path[at] == '/' && random() % 2 == 0) path.erase(at, 1);
    }
    return path;
  };
  for (int round = 0; round < 5000; ++round) {
    const std::string a = some_path();
    const std::string b = some_path();
    ASSERT_EQ(walks_before(a, b), components(a) < components(b)) << a << " and " << b << ", seed " << seed;
  }
}

}  // namespace
}  // namespace tarnby
