#pragma once

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <string_view>

#include "files/url.h"

namespace tarnby::test {

/// A fresh folder of its own for one test case, removed with everything in it at the end. Paths given to its functions
/// are relative to it; folders in between are made as needed. Failing to build is a failure of the test.
class TempTree {
 public:
  TempTree();
  ~TempTree();
  TempTree(const TempTree&) = delete;
  TempTree& operator=(const TempTree&) = delete;

  /// A sparse file of that many bytes.
  TempTree& file(std::string_view path, std::int64_t size = 0);
  /// A file with that content.
  TempTree& content(std::string_view path, std::string_view bytes);
  TempTree& folder(std::string_view path);
  /// A symbolic link that holds `target` as it stands.
  TempTree& link(std::string_view path, std::string_view target);
  TempTree& fifo(std::string_view path);
  TempTree& mode(std::string_view path, unsigned mode);

  /// The real path of the tree's folder, or of something in it.
  std::string path(std::string_view relative = {}) const;
  Url url(std::string_view relative = {}) const { return Url::file(path(relative)); }

  /// Everything below the folder that is not itself a folder, and every empty folder (with a "/" at its end), as
  /// relative paths. Links are listed, not followed.
  std::set<std::string> listing() const;
  bool exists(std::string_view relative) const;
  std::string read(std::string_view relative) const;

 private:
  std::string root_;
};

/// Runs `body` in a child process without root's privileges (as the same user when the test does not run as root) and
/// adds a failure when an expectation fails there. Files made before are handed over to that user, but for those that
/// the test has given to somebody else.
void as_plain_user(const TempTree& tree, const std::function<void()>& body);

/// Whether that user may get to a file: root's checkout may lie in a folder that only root may enter.
bool plain_user_reaches(const std::string& file);

}  // namespace tarnby::test
