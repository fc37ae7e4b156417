#include "app/parts/stop_removal.h"

#include "app/parts/question.h"

namespace tarnby {

StopRemoval::StopRemoval(AppContext& context) : Screen(context) {
  setWindowTitle(context.text("Stop removing?"));
  // Going on is what a key pressed too soon does.
  const Question question = ask(*this, context.text("What is gone stays gone; everything else stays where it is."),
                                context.text("Stop"), context.text("Keep going"));
  stop_button = question.refuse;
  go_on_button = question.accept;
  connect(stop_button, &QAbstractButton::clicked, this, &StopRemoval::stop_asked);
  connect(go_on_button, &QAbstractButton::clicked, this, &Screen::dismissed);
  observe(RemovalRun::removal_changed, [this] { Q_EMIT dismissed(); });
}

}  // namespace tarnby
