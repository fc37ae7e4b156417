#include "tests/support/test_platform.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <stdexcept>
#include <string>
#include <system_error>

#include "platform/platform.h"

namespace tarnby::test {

namespace {

constexpr Moment standing_clock{std::chrono::seconds(1'600'000'000)};

Session session_of_ada(const TempTree& tree, std::string_view home) {
  Session session = {"ada", tree.url(home),        tree.url("settings"), {}, "C", "C", tree.url("autostart"),
                     {},    {tree.url("programs")}};
  session.system_root = tree.url("system");
  return session;
}

}  // namespace

TestPlatform::TestPlatform(Grants grants, std::string_view home)
    : own_(std::make_unique<Platform>(session_of_ada(tree, home), nullptr, main_queue)),
      platform(*own_),
      settings(platform.app_settings),
      bookmarks(platform.bookmarks),
      files(platform.files),
      measurer(platform.measurer),
      notifications(platform.notifications),
      text(platform.text) {
  platform.now = [] { return standing_clock; };
  tree.folder(home).folder("Applications");
  if (grants == Grants::none) return;
  const bool stored = platform.bookmarks.store(Grant::home, tree.url(home)) &&
                      platform.bookmarks.store(Grant::applications, tree.url("Applications"));
  if (!stored) throw std::runtime_error("test platform: the grants could not be stored");
}

TestPlatform::~TestPlatform() = default;

TestPlatform& TestPlatform::application(std::string_view path, const BundleValues& values, ListForm form) {
  tree.content(std::string(path) + "/Contents/Info.plist", info_list(values, form));
  return *this;
}

TestPlatform& TestPlatform::application(std::string_view path, std::string_view identifier) {
  return application(path, BundleValues{std::string(identifier), {}, {}, {}, {}});
}

TestPlatform& TestPlatform::processes(const std::vector<std::string>& executables) {
  constexpr int own = 700;
  tree.folder("system/proc/1").link("system/proc/self", std::to_string(own));
  process(own, "/usr/bin/tarnby-cleaner-cli");
  int number = own;
  for (const std::string& executable : executables) process(++number, executable);
  return *this;
}

TestPlatform& TestPlatform::process(int number, const std::string& executable) {
  tree.link("system/proc/" + std::to_string(number) + "/exe", executable);
  return *this;
}

TestPlatform& TestPlatform::times(std::string_view path, std::int64_t accessed, std::int64_t modified) {
  const timespec both[] = {{accessed, 0}, {modified, 0}};
  if (utimensat(AT_FDCWD, tree.path(path).c_str(), both, AT_SYMLINK_NOFOLLOW) != 0) {
    throw std::system_error(errno, std::generic_category(), "test platform: times of " + std::string(path));
  }
  return *this;
}

std::string TestPlatform::relative(const Url& url) const {
  return url.is_within(tree.url()) ? url.path().substr(tree.path().size() + 1) : url.path();
}

std::vector<std::string> TestPlatform::relative(std::span<const Url> urls) const {
  std::vector<std::string> paths;
  for (const Url& one : urls) paths.push_back(relative(one));
  return paths;
}

}  // namespace tarnby::test
