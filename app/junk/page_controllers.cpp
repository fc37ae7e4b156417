#include "app/junk/page_controllers.h"

#include <QVBoxLayout>

#include "app/parts/notifications.h"
#include "app/parts/screen_catalogue.h"

namespace tarnby {

namespace {

PageTurner* fill_with_pages(Screen& screen, AppContext& context) {
  auto* pages = new PageTurner(context.clock, &screen);
  auto* layout = new QVBoxLayout(&screen);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(pages);
  return pages;
}

}  // namespace

PageController::PageController(AppContext& context) : Screen(context), pages(fill_with_pages(*this, context)) {
  for (const char* identifier : {"ApplicationsJunk", "MediaJunk"}) {
    pages->add_page(ScreenCatalogue::main().make(identifier, context).release());
  }
  observe(notifications::navigate_forward, [this] { pages->turn_to(pages->current() + 1); });
  observe(notifications::navigate_back, [this] { pages->turn_to(pages->current() - 1); });
}

AboutPageController::AboutPageController(AppContext& context, std::span<const JunkRow> rows)
    : Screen(context), pages(fill_with_pages(*this, context)) {
  for (const JunkRow& row : rows) {
    const int index = pages->count();
    pages->add_page(ScreenCatalogue::main().make(row.look.about.identifier, context).release());
    observe(row.look.move, [this, index] { pages->turn_to(index); });
  }
}

}  // namespace tarnby
