#include "app/cleaned/download_uninstaller_orvane.h"

#include "app/parts/links.h"
#include "app/parts/question.h"
#include "platform/workspace.h"

namespace tarnby {

UninstallerOrvaneViewcontroller::UninstallerOrvaneViewcontroller(AppContext& context) : Screen(context) {
  setWindowTitle(QStringLiteral("Uninstaller Orvane"));  // a name, the same in every language
  const Question question =
      ask(*this,
          context.text("Removes applications together with everything they have spread over your disk, so that "
                       "nothing is left to clean up later."),
          context.text("Not now"), context.text("Download"));
  later_button = question.refuse;
  download_button = question.accept;
  connect(download_button, &QAbstractButton::clicked, this, &UninstallerOrvaneViewcontroller::download);
}

void UninstallerOrvaneViewcontroller::download() {
  context_.workspace.open_link(links::companion_page);
  Q_EMIT dismissed();
}

}  // namespace tarnby
