// The helper's answer, of any bytes, and paths of any bytes to hand over: first the answer, then a NUL before each
// path.

#include "engine/cleaner.h"
#include "engine/hand_off.h"
#include "fuzz/fuzzer.h"
#include "platform/platform.h"

using namespace tarnby;

namespace {

/// A program of its own for this process, with a helper, and a hand-off between the two.
struct Program {
  Program() {
    scratch.write("helper", "");
    hand_off.helper_url = Url::file(scratch.path("helper"));
    hand_off.application_support_url = Url::file(scratch.path(""));
    platform.notifications.add_observer("cleaned_view_controller", [this] { ++completed; });
  }

  /// What stands in the hand-off file must be a list of paths that were to go, and all of those that can be written.
  void check_store() const {
    const auto list = parse_property_list(scratch.read(store));
    const auto* paths = list && list->find("Store") ? list->find("Store")->as<PropertyList::Array>() : nullptr;
    fuzz::check(paths && list->as<PropertyList::Dictionary>()->size() == 1, "the paths are handed over, nothing else");
    auto next = cleaner.remainder_urls.begin();
    for (const PropertyList& path : *paths) {
      next = std::find(next, cleaner.remainder_urls.end(), Url::file(*path.as<std::string>()));
      fuzz::check(next != cleaner.remainder_urls.end(), "no other path is handed over, and none out of order");
      ++next;
    }
  }

  static constexpr const char* store = "Tarnby cleaner/Store.plist";

  fuzz::Scratch scratch;
  PlainMainQueue main_queue;
  Platform platform{Session(), open_settings_file(Url()), main_queue};
  Application inventory{platform};
  Cache cache{platform, inventory};
  Remainders remainders{platform, cache};
  Cleaner cleaner{platform, cache, remainders};
  int launched = 0;
  int completed = 0;
  HandOff hand_off{platform, cleaner, [this](const Url&) { ++launched; }};
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Program program;
  std::string_view rest = fuzz::text_of(data, size);
  // A binary answer holds NULs, so it is told from the paths by its length.
  const std::size_t paths_size =
      rest.empty() ? 0 : std::min<std::size_t>(static_cast<unsigned char>(rest.front()), rest.size() - 1);
  const std::string_view answer = rest.substr(rest.empty() ? 0 : 1, rest.size() - 1 - paths_size);
  rest.remove_prefix(rest.size() - paths_size);
  program.cleaner.remainder_urls.clear();
  while (!rest.empty()) program.cleaner.remainder_urls.push_back(Url::file("/" + std::string(fuzz::next_word(rest))));

  program.launched = 0;
  program.completed = 0;
  fuzz::check(program.hand_off.delete_files_with_helper(), "the hand-off begins");
  program.check_store();
  program.scratch.write(Program::store, answer);
  const auto list = parse_property_list(answer);
  const bool complete = list && list->find("Complete");
  const bool cancel = !complete && list && list->find("Cancel");
  fuzz::check(program.hand_off.helper_timer_proc() == !complete, "it waits until it is complete");
  fuzz::check(program.completed == (complete ? 1 : 0), "complete is told once, and only then");
  fuzz::check(program.launched == (cancel ? 2 : 1), "the helper is launched again after its cancel, and only then");
  if (cancel) program.check_store();
  return 0;
}
