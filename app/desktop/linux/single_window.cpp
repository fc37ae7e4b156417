#include "app/desktop/linux/single_window.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QCryptographicHash>
#include <algorithm>
#include <cstddef>
#include <string>

namespace tarnby {

namespace {

// An abstract socket (unix(7)): binding its name is what only the first program can do, and the name goes with the
// program, however that ends.
struct Address {
  sockaddr_un place = {};
  socklen_t length = 0;

  explicit Address(const Url& settings_folder) {
    const QByteArray folder = QByteArray::fromStdString(settings_folder.path());
    const std::string name = "tarnby-cleaner-" + std::to_string(getuid()) + "-" +
                             QCryptographicHash::hash(folder, QCryptographicHash::Sha1).toHex().toStdString();
    place.sun_family = AF_UNIX;
    std::copy(name.begin(), name.end(), place.sun_path + 1);
    length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
  }
  const sockaddr* get() const { return reinterpret_cast<const sockaddr*>(&place); }
};

Descriptor new_socket() {
  return Descriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

/// True when a program of this user answers there. The name may have been taken by anybody.
bool reaches_own_program(const Address& address) {
  const Descriptor other = new_socket();
  if (!other || connect(other.get(), address.get(), address.length) != 0) return false;
  ucred peer = {};
  socklen_t size = sizeof peer;
  return getsockopt(other.get(), SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == getuid();
}

}  // namespace

SingleWindow::SingleWindow(const Url& settings_folder) {
  const Address address(settings_folder);
  socket_ = new_socket();
  if (!socket_) return;
  constexpr int most_waiting = 8;
  if (bind(socket_.get(), address.get(), address.length) == 0 && listen(socket_.get(), most_waiting) == 0) return;
  socket_.reset();
  is_first_ = !reaches_own_program(address);
}

void SingleWindow::when_asked_to_front(std::function<void()> come) {
  come_ = std::move(come);
  if (!socket_) return;
  notifier_ = std::make_unique<QSocketNotifier>(socket_.get(), QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { answer(); });
}

void SingleWindow::answer() {
  const Descriptor other(accept4(socket_.get(), nullptr, nullptr, SOCK_CLOEXEC));
  if (other) come_();
}

}  // namespace tarnby
