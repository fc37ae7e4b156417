#include "tests/support/deep_chain.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "platform/descriptor.h"

namespace tarnby::test {

namespace {

void must(bool worked, const std::string& what) {
  if (!worked) throw std::system_error(errno, std::generic_category(), "deep chain: " + what);
}

}  // namespace

void make_chain(TempTree& tree, std::string_view top, int depth, const std::string& name,
                const std::function<void(int folder, int level)>& fill) {
  tree.folder(top);
  Descriptor folder(open(tree.path(top).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  for (int level = 0; level <= depth; ++level) {
    must(bool(folder), name);
    fill(folder.get(), level);
    if (level == depth) break;
    must(mkdirat(folder.get(), name.c_str(), 0755) == 0, name);
    folder = Descriptor(openat(folder.get(), name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  }
}

void make_file_in(int folder, const char* name, long size) {
  const Descriptor file(openat(folder, name, O_CREAT | O_WRONLY | O_CLOEXEC, 0644));
  must(file && ftruncate(file.get(), size) == 0, name);
}

}  // namespace tarnby::test
