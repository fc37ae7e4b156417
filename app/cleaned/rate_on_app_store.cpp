#include "app/cleaned/rate_on_app_store.h"

#include <QLabel>

#include "app/parts/links.h"
#include "app/parts/question.h"
#include "platform/workspace.h"

namespace tarnby {

RateOnAppStore::RateOnAppStore(AppContext& context) : Screen(context) {
  const std::int64_t total = context.settings().integer("TotallyCleaned");
  setWindowTitle(context.text("Do you like Tarnby cleaner?"));
  const Question question =
      ask(*this, context.text("For all time used of Tarnby cleaner you cleaned up %@.", {context.byte_count(total)}),
          context.text("Not now"), context.text("Rate"));
  label = question.words;
  later_button = question.refuse;
  rate_button = question.accept;
  connect(rate_button, &QAbstractButton::clicked, this, &RateOnAppStore::rate_on_mac_app_store);
}

void RateOnAppStore::rate_on_mac_app_store() {
  context_.workspace.open_link(links::store_page);
  context_.settings().set_boolean("RateOnStore", true);
  context_.flush_settings();
  Q_EMIT dismissed();
}

}  // namespace tarnby
