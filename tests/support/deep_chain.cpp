#include "tests/support/deep_chain.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "files/descriptor.h"
#include "files/file_manager.h"

namespace tarnby::test {

namespace {

void must(bool worked, const std::string& what) {
  if (!worked) throw std::system_error(errno, std::generic_category(), "deep chain: " + what);
}

}  // namespace

DeepChain::DeepChain(TempTree& tree, std::string_view top, int depth, const std::string& name,
                     const std::function<void(int folder)>& fill)
    : tree_(tree.url()), top_(tree.url(top)) {
  tree.folder(top);
  Descriptor folder(open(tree.path(top).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  for (int below = depth;; --below) {
    must(bool(folder), name);
    fill(folder.get());
    if (below == 0) return;
    make_folder_in(folder.get(), name);
    folder = Descriptor(openat(folder.get(), name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  }
}

DeepChain::~DeepChain() {
  FileManager files;
  files.granted().add(Grant::applications, tree_);
  (void)files.remove({&top_, 1});  // the tree's own end finds what is left
}

void make_file_in(int folder, const std::string& name, std::int64_t size) {
  const Descriptor file(openat(folder, name.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644));
  must(file && ftruncate(file.get(), size) == 0, name);
}

void make_folder_in(int folder, const std::string& name) {
  must(mkdirat(folder, name.c_str(), 0755) == 0, name);
}

}  // namespace tarnby::test
