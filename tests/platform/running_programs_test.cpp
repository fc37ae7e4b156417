#include "platform/running_programs.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "files/confinement.h"
#include "platform/session.h"
#include "tests/support/temp_tree.h"

namespace tarnby {
namespace {

using Names = std::vector<std::string_view>;

constexpr const char* running_stat = "20 (a) name) S 1 20 20 0 -1 4194304 1 0 0 0 0 0 0 0 20 0 1 0 100 1 1\n";
constexpr const char* zombie_stat = "20 (x) Z 1 20 20 0 -1 4194304 1 0 0 0 0 0 0 0 20 0 1 0 100 0 0\n";
/// The first thread has ended, three others go on.
constexpr const char* headless_stat = "20 (x) Z 1 20 20 0 -1 4194304 1 0 0 0 0 0 0 0 20 0 4 0 100 1 1\n";

/// A machine whose processes are what the test says: number 1 and this process, at first.
class Machine {
 public:
  Machine() {
    tree.folder("proc/1").folder("run");
    tree.link("proc/self", "700");
    process(700, "/usr/bin/tarnby-cleaner");
  }

  Machine& process(int number, std::string_view executable) {
    tree.link(at(number, "exe"), executable);
    return *this;
  }
  /// One that hides its executable, as every process that may not be traced.
  Machine& hidden(int number, std::string_view name, std::string_view stat = running_stat) {
    tree.content(at(number, "comm"), std::string(name) + "\n").content(at(number, "stat"), stat);
    return *this;
  }
  Machine& in_process(int number, std::string_view file, std::string_view content) {
    tree.content(at(number, file), content);
    return *this;
  }
  Machine& instance(std::string_view number, std::string_view id) {
    const std::string folder = "run/.flatpak/" + std::string(number);
    tree.content(folder + "/info", "[Application]\nname=" + std::string(id) + "\n").file(folder + "/.ref");
    return *this;
  }

  RunningPrograms look() const { return RunningPrograms::look({tree.url("proc"), tree.url("run")}); }
  Running program(const Names& names) const { return look().program(names); }

  test::TempTree tree;

 private:
  static std::string at(int number, std::string_view file) {
    return "proc/" + std::to_string(number) + "/" + std::string(file);
  }
};

/// Another process that holds a lock of this type on a file until it is let go.
class Holder {
 public:
  Holder(const std::string& file, short type, int command) {
    EXPECT_EQ(pipe(ready_.data()), 0);
    EXPECT_EQ(pipe(end_.data()), 0);
    child_ = fork();
    if (child_ == 0) hold(file, type, command);
    close(ready_[1]);
    close(end_[0]);
    char locked = 'n';
    EXPECT_EQ(read(ready_[0], &locked, 1), 1);
    EXPECT_EQ(locked, 'y') << "the other process should hold a lock on " << file;
  }
  ~Holder() {
    close(end_[1]);
    close(ready_[0]);
    int status = 0;
    EXPECT_EQ(waitpid(child_, &status, 0), child_);
  }
  Holder(const Holder&) = delete;
  Holder& operator=(const Holder&) = delete;

 private:
  [[noreturn]] void hold(const std::string& file, short type, int command) const {
    close(end_[1]);
    const int handle = open(file.c_str(), O_RDWR | O_CLOEXEC);
    struct flock lock = {};
    lock.l_type = type;
    const char locked = handle >= 0 && fcntl(handle, command, &lock) == 0 ? 'y' : 'n';
    char ended = 0;
    if (write(ready_[1], &locked, 1) == 1) (void)!read(end_[0], &ended, 1);
    _exit(0);
  }

  std::array<int, 2> ready_ = {};
  std::array<int, 2> end_ = {};
  pid_t child_ = -1;
};

TEST(RunningPrograms, go_by_whole_names_of_executables) {
  Machine machine;
  machine.process(10, "/usr/lib/firefox-esr/firefox-esr").process(11, "/opt/editor/editor (deleted)");
  machine.process(12, "/usr/libexec/evolution-source-registry");
  machine.hidden(13, "keepassxc").hidden(14, "transmission-gt").hidden(15, "gone", zombie_stat);
  machine.hidden(16, "headless", headless_stat);
  const RunningPrograms running = machine.look();
  const std::pair<Names, Running> cases[] = {
      {{"firefox", "firefox-esr"}, Running::yes},
      {{"firefox"}, Running::no},
      {{"Firefox-ESR"}, Running::no},
      {{"editor"}, Running::yes},            // replaced by an upgrade while it runs
      {{"evolution"}, Running::no},          // its services never end
      {{"keepassxc"}, Running::yes},         // hides from its own user
      {{"transmission-gtk"}, Running::yes},  // cut off after 15 bytes
      {{"gone"}, Running::no},               // a zombie
      {{"headless"}, Running::yes},
      {{"vlc"}, Running::no},  // what hides under another name is no reason for doubt
      {{}, Running::no},
  };
  for (const auto& [names, expected] : cases) {
    EXPECT_EQ(running.program(names), expected) << (names.empty() ? "no name" : names.front());
  }
  EXPECT_EQ(running.process(10, Names{"firefox-esr"}), Running::yes);
  EXPECT_EQ(running.process(11, Names{"firefox-esr"}), Running::no) << "the number is another program's by now";
  EXPECT_EQ(running.process(99, Names{"firefox-esr"}), Running::no);
}

TEST(RunningPrograms, are_never_guessed) {
  const Names firefox = {"firefox"};
  Machine whole;
  EXPECT_EQ(whole.program(firefox), Running::no) << "what is asked below must depend on what is taken away";
  EXPECT_EQ(RunningPrograms::look({Url(), Url()}).program(firefox), Running::unknown) << "there is no /proc";
  EXPECT_EQ(RunningPrograms().flatpak("org.example.App"), Running::unknown) << "nobody has looked";

  Machine without_us;
  unlink(without_us.tree.path("proc/self").c_str());
  without_us.process(10, "/usr/bin/firefox");
  EXPECT_EQ(without_us.program(firefox), Running::unknown) << "a /proc that does not show us";

  Machine without_others;
  ASSERT_EQ(rmdir(without_others.tree.path("proc/1").c_str()), 0);
  EXPECT_EQ(without_others.program(firefox), Running::unknown) << "a /proc that hides others, as with hidepid";

  Machine blind;
  blind.hidden(10, "thunderbird").hidden(11, "Isolated Web Co");
  EXPECT_EQ(blind.program(Names{"thunderbird"}), Running::yes);
  EXPECT_EQ(blind.program(firefox), Running::no) << "what hides under another name is no reason for doubt";
  blind.in_process(11, "cmdline", std::string("/usr/lib/firefox/firefox\0-contentproc", 37));
  EXPECT_EQ(blind.program(firefox), Running::yes) << "known by the name it was started under";
  const RunningPrograms without_instances = RunningPrograms::look({blind.tree.url("proc"), Url()});
  EXPECT_EQ(without_instances.flatpak("org.example.App"), Running::unknown) << "neither processes nor instances tell";

  Machine others;
  others.process(10, "/usr/bin/firefox");
  test::as_plain_user(others.tree, [&] {
    EXPECT_EQ(others.program(firefox), Running::yes) << "whoever owns the processes is meant";
    others.tree.mode("proc", 0000);
    EXPECT_EQ(others.program(firefox), Running::unknown) << "/proc may not be read";
    others.tree.mode("proc", 0700);
  });
  if (geteuid() == 0) {
    EXPECT_EQ(others.program(firefox), Running::no) << "by now the processes are another user's";
  }
}

TEST(RunningPrograms, flatpaks_are_known_by_what_their_processes_see_and_by_locks_that_are_held) {
  Machine machine;
  machine.process(10, "/usr/bin/bash")
      .in_process(10, "root/.flatpak-info", "[Application]\nname=org.example.InSight\n");
  machine.process(11, "/usr/bin/firefox").in_process(11, "root/.flatpak-info", "not a key file");
  machine.instance("42", "org.example.Locked").instance("43", "org.example.Ended");
  machine.tree.content("run/.flatpak/webkit-700-1/bwrapinfo.json", "{}").folder("run/.flatpak/org.example.Ended/tmp");
  const Holder holder(machine.tree.path("run/.flatpak/42/.ref"), F_RDLCK, F_SETLK);
  const RunningPrograms running = machine.look();
  EXPECT_EQ(running.flatpak("org.example.InSight"), Running::yes);
  EXPECT_EQ(running.flatpak("org.example.Locked"), Running::yes);
  EXPECT_EQ(running.flatpak("org.example.Ended"), Running::no) << "what an instance left is no sign";
  EXPECT_EQ(running.flatpak("org.example.InSigh"), Running::no);

  machine.tree.content("run/.flatpak/42/info", "name=nobody knows");
  EXPECT_EQ(machine.look().flatpak("org.example.Locked"), Running::unknown) << "something runs, and does not say what";
  EXPECT_EQ(machine.look().flatpak("org.example.InSight"), Running::yes);
}

TEST(RunningPrograms, snaps_are_known_by_their_control_group_or_place) {
  Machine machine;
  machine.process(10, "/usr/bin/bash")
      .in_process(10, "cgroup", "0::/user.slice/app.slice/snap.chat-app.chat-1.scope\n");
  machine.process(11, "/snap/firefox/4955/usr/lib/firefox/firefox");
  machine.process(12, "/usr/bin/vi").in_process(12, "cgroup", "0::/user.slice/xsnap.other.x/snap.half\n");
  const RunningPrograms running = machine.look();
  EXPECT_EQ(running.snap("chat-app"), Running::yes);
  EXPECT_EQ(running.snap("firefox"), Running::yes);
  for (const char* name : {"chat", "other", "half", "x"}) EXPECT_EQ(running.snap(name), Running::no) << name;
}

TEST(RunningPrograms, are_those_of_this_machine) {
  const auto own = RunningPrograms::look(process_places(current_session()));
  EXPECT_EQ(own.program(Names{"platform_tests"}), Running::yes);
  EXPECT_EQ(own.process(getpid(), Names{"platform_tests"}), Running::yes);
}

TEST(RunningPrograms, are_known_by_their_names_to_a_thread_that_has_given_rights_up) {
  Running nobody = Running::unknown;
  bool gave_up = false;
  std::thread([&] {
    gave_up = give_up_changing({});
    nobody = RunningPrograms::look(process_places(current_session())).program(Names{"no such program"});
  }).join();
  if (!gave_up) GTEST_SKIP() << "no Landlock here";
  EXPECT_EQ(nobody, Running::no) << "the kernel hides executables from it, but not the names of processes";
}

TEST(LockIsHeld, by_another_process_only_while_it_lives) {
  test::TempTree tree;
  tree.file("profile/.parentlock").file("profile/free").fifo("profile/fifo").link("profile/link", "free");
  tree.link("elsewhere", "profile").folder("profile/folder");
  const std::string lock = tree.path("profile/.parentlock");
  for (const auto& [type, command] :
       {std::pair<short, int>{F_WRLCK, F_SETLK}, {F_RDLCK, F_SETLK}, {F_WRLCK, F_OFD_SETLK}}) {
    const Holder holder(lock, type, command);
    EXPECT_EQ(lock_is_held(Url::file(lock)), Running::yes);
  }
  EXPECT_EQ(lock_is_held(Url::file(lock)), Running::no) << "who held it has ended";
  const std::pair<const char*, Running> cases[] = {
      {"profile/free", Running::no},       {"profile/none", Running::no},        {"none/at/all", Running::no},
      {"profile/free/below", Running::no}, {"profile/fifo", Running::unknown},   {"profile/folder", Running::unknown},
      {"profile/link", Running::unknown},  {"elsewhere/free", Running::unknown},
  };
  for (const auto& [path, expected] : cases) EXPECT_EQ(lock_is_held(tree.url(path)), expected) << path;
  EXPECT_EQ(lock_is_held(Url()), Running::unknown);
  EXPECT_FALSE(tree.exists("profile/none")) << "asking makes nothing";
  test::as_plain_user(tree, [&] {
    tree.mode("profile/free", 0000);
    EXPECT_EQ(lock_is_held(tree.url("profile/free")), Running::unknown) << "it may not be opened";
  });
}

TEST(LockLink, names_a_process_or_none) {
  EXPECT_EQ(process_in_lock_link("127.0.1.1:+1234"), 1234);
  EXPECT_EQ(process_in_lock_link("my-host-53"), 53);
  for (const char* text : {"", "1234", "-1", "host-", "host", "127.0.1.1:1234", "+1", "host-99999999999999999999"}) {
    EXPECT_EQ(process_in_lock_link(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace tarnby
