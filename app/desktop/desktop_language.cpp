#include "app/desktop/desktop_language.h"

#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace tarnby {

void apply_desktop_language(QApplication& application, const Localization& localization) {
  const std::string language = localization.language().empty() ? "en" : localization.language();
  const QLocale locale(QString::fromStdString(language).replace(u'-', u'_'));
  auto* translator = new QTranslator(&application);
  if (translator->load(locale, QStringLiteral("qtbase"), QStringLiteral("_"),
                       QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
    QApplication::installTranslator(translator);
  }
  QApplication::setLayoutDirection(locale.textDirection());
}

}  // namespace tarnby
