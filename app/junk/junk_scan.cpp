#include "app/junk/junk_scan.h"

#include "engine/cleaner.h"

namespace tarnby {

void begin_junk_scan(AppContext& context) {
  Cleaner& cleaner = context.sharedCleaner();
  cleaner.apps_junk_search_complete = false;  // of an earlier scan, whose results are replaced now
  cleaner.media_search_coomplete = false;
  context.background.async([&cleaner, &context, turn = context.turn.held(), given_up = context.times_given_up.load()] {
    if (context.begin_looking() && context.times_given_up == given_up) cleaner.clean_with_complete_handler([] {});
  });
}

}  // namespace tarnby
