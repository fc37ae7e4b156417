#include "app/icons/picture_process.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <vector>

#include "app/desktop/resources.h"

namespace tarnby {

namespace {

/// A picture may have taken a process over without a sign, which then answers wrongly from there on; and its time on
/// the processor is limited.
constexpr int most_asked = 500;
/// Then nothing on this system will make it start.
constexpr int most_failed_starts = 3;

/// While it lives, writing to a pipe whose other end is gone fails and does not end the program.
class NoPipeSignal {
 public:
  NoPipeSignal() {
    sigemptyset(&signal_);
    sigaddset(&signal_, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &signal_, &before_);
  }
  ~NoPipeSignal() {
    sigset_t pending;
    sigpending(&pending);
    int taken = 0;
    if (sigismember(&before_, SIGPIPE) == 0 && sigismember(&pending, SIGPIPE) == 1) sigwait(&signal_, &taken);
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
  }
  NoPipeSignal(const NoPipeSignal&) = delete;
  NoPipeSignal& operator=(const NoPipeSignal&) = delete;

 private:
  sigset_t signal_{};
  sigset_t before_{};
};

/// False when the pipe does not move before that moment, or has ended.
bool wait_for(int pipe, short events, std::chrono::steady_clock::time_point deadline) {
  using std::chrono::milliseconds;
  const auto left = std::chrono::ceil<milliseconds>(deadline - std::chrono::steady_clock::now());
  pollfd waited = {pipe, events, 0};
  return left > milliseconds(0) &&
         uninterrupted([&] { return ::poll(&waited, 1, static_cast<int>(left.count())); }) > 0;
}

/// All of these bytes through a pipe that does not wait; false when it ends before, or it takes too long.
/// @param call moves some of the bytes, from the one with that number on.
template <typename Call>
bool transfer(int pipe, short events, std::size_t size, std::chrono::steady_clock::time_point deadline, Call call) {
  for (std::size_t done = 0; done < size;) {
    const ssize_t count = call(done);
    const bool waits = count < 0 && (errno == EAGAIN || errno == EINTR);
    if (count == 0 || (count < 0 && !waits) || (waits && !wait_for(pipe, events, deadline))) return false;
    if (count > 0) done += static_cast<std::size_t>(count);
  }
  return true;
}

bool give(int pipe, const void* bytes, std::size_t size, std::chrono::steady_clock::time_point deadline) {
  return transfer(pipe, POLLOUT, size, deadline,
                  [&](std::size_t done) { return ::write(pipe, static_cast<const char*>(bytes) + done, size - done); });
}

bool take(int pipe, void* bytes, std::size_t size, std::chrono::steady_clock::time_point deadline) {
  return transfer(pipe, POLLIN, size, deadline,
                  [&](std::size_t done) { return ::read(pipe, static_cast<char*>(bytes) + done, size - done); });
}

struct Pipe {
  Descriptor out;
  Descriptor in;
};

/// Without ends when the system gives none. No other program that this one starts gets them.
Pipe new_pipe() {
  std::array<int, 2> ends = {-1, -1};
#ifdef __linux__
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return {};
#else
  if (::pipe(ends.data()) != 0) return {};
  for (const int each : ends) ::fcntl(each, F_SETFD, FD_CLOEXEC);
#endif
  return {Descriptor(ends[0]), Descriptor(ends[1])};
}

/// A process with these pipes as its input and output, no environment, no other handles and no signal held back; 0 when
/// there is none.
pid_t spawn(const QByteArray& program, const QList<QByteArray>& arguments, int input, int output) {
  std::vector<char*> words = {const_cast<char*>(program.constData())};
  for (const QByteArray& argument : arguments) words.push_back(const_cast<char*>(argument.constData()));
  words.push_back(nullptr);
  std::array<char*, 1> environment = {nullptr};
  posix_spawn_file_actions_t actions;
  posix_spawnattr_t attributes;
  sigset_t none;
  sigemptyset(&none);
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_RDONLY, 0);
#ifdef __linux__
  posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
#endif
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
  pid_t process = 0;
  const int error = posix_spawn(&process, program.constData(), &actions, &attributes, words.data(), environment.data());
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  return error == 0 ? process : 0;
}

}  // namespace

QImage PictureProcess::square(const QByteArray& bytes, int side) {
  return ask(
      {PictureRequest::Shape::square, static_cast<std::uint32_t>(side), static_cast<std::uint32_t>(bytes.size())},
      bytes);
}

QImage PictureProcess::whole(const QByteArray& bytes) {
  return ask({PictureRequest::Shape::own, most_picture_side, static_cast<std::uint32_t>(bytes.size())}, bytes);
}

QImage PictureProcess::ask(const PictureRequest& request, const QByteArray& bytes) {
  if (bytes.size() > qsizetype{most_picture_bytes} || !request.is_sound() || !is_there()) return {};
  auto picture = answer_to(request, bytes);
  if (!picture) end();
  return picture.value_or(QImage());
}

/// None when the process has died, hangs, or answers what nobody asked.
std::optional<QImage> PictureProcess::answer_to(const PictureRequest& request, const QByteArray& bytes) {
  const NoPipeSignal quiet;
  const Deadline deadline = std::chrono::steady_clock::now() + patience_;
  ++asked_;
  const bool given = give(to_.get(), &request, sizeof request, deadline) &&
                     give(to_.get(), bytes.constData(), request.length, deadline);
  return given ? picture_from_pipe(request, deadline) : std::nullopt;
}

std::optional<QImage> PictureProcess::picture_from_pipe(const PictureRequest& request, Deadline deadline) const {
  PictureAnswer answer{};
  if (!take(from_.get(), &answer, sizeof answer, deadline)) return {};
  if (answer.is_none()) return QImage();
  if (!answer.answers(request)) return {};
  QImage picture(static_cast<int>(answer.width), static_cast<int>(answer.height), QImage::Format_ARGB32_Premultiplied);
  if (picture.isNull()) return {};
  const auto size = static_cast<std::size_t>(picture.sizeInBytes());
  return take(from_.get(), picture.bits(), size, deadline) ? std::optional(picture) : std::nullopt;
}

bool PictureProcess::is_there() {
  if (asked_ >= most_asked) end();
  if (process_ != 0) return true;
  if (failed_starts_ >= most_failed_starts) return false;
  const bool started = start();
  failed_starts_ = started ? 0 : failed_starts_ + 1;
  if (!started) end();
  return started;
}

bool PictureProcess::start() {
  Pipe requests = new_pipe();
  Pipe answers = new_pipe();
  if (!requests.out || !answers.out) return false;
  if (program_.isEmpty()) program_ = program_path(QStringLiteral("tarnby-cleaner-pictures")).toLocal8Bit();
  process_ = spawn(program_, formats_, requests.out.get(), answers.in.get());
  to_ = std::move(requests.in);
  from_ = std::move(answers.out);
  for (const int pipe : {to_.get(), from_.get()}) ::fcntl(pipe, F_SETFL, O_NONBLOCK);
  char sign = 0;
  answers.in.reset();  // so that the pipe ends with the process
  return process_ != 0 && take(from_.get(), &sign, 1, std::chrono::steady_clock::now() + patience_) &&
         sign == pictures_ready;
}

void PictureProcess::end() {
  if (process_ != 0) {
    ::kill(process_, SIGKILL);
    uninterrupted([this] { return ::waitpid(process_, nullptr, 0); });
  }
  process_ = 0;
  asked_ = 0;
  to_.reset();
  from_.reset();
}

}  // namespace tarnby
