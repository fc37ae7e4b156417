#include "cli/commands.h"
#include "cli/json.h"
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
  return remainders.language_packages();
}

}  // namespace

ExitStatus run_languages(Context& context) {
  need_folders(context);
  const std::vector<Url> packages = find_packages(context);
  if (context.asked.json) {
    context.out << json_line({{"packages", json_paths(packages)}});
    return done;
  }
  if (packages.empty()) context.out << "No language packages were found that you do not need.\n";
  for (const Url& package : packages) context.out << one_line(package.path()) << '\n';
  return done;
}

}  // namespace tarnby::cli
