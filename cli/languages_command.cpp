#include "cli/commands.h"
#include "cli/json.h"
#include "cli/look_problems.h"
#include "cli/progress.h"
#include "leftovers/remainders.h"

namespace tarnby::cli {

namespace {

/// The packages of the applications that the plain search for leftovers finds.
std::vector<Url> find_packages(Context& context) {
  Progress progress(context);
  progress.show("Looking for language packages");
  Remainders& remainders = Remainders::sharedRemainder();
  (void)remainders.remianders();
  note_missed(remainders.known_applications().folders);
  return remainders.language_packages();
}

}  // namespace

ExitStatus run_languages(Context& context) {
  need_folders(context);
  const LookWatch watch;
  const std::vector<Url> packages = find_packages(context);
  const ExitStatus status = tell_missed(context, watch.missed());
  if (context.asked.json) {
    context.out << json_line(json_answer(context.layout(), {{"packages", json_paths(packages)}}));
    return status;
  }
  if (packages.empty()) context.out << "No language packages were found that you do not need.\n";
  for (const Url& package : packages) context.out << one_line(package.path()) << '\n';
  return status;
}

}  // namespace tarnby::cli
