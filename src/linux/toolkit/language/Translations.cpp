#include "linux/toolkit/language/Translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>
#include <memory>

namespace quilex {

namespace {

bool install(const QLocale& locale, const char* name, const QString& folder) {
  auto translator = std::make_unique<QTranslator>(QCoreApplication::instance());
  if (!translator->load(locale, QLatin1String(name), QStringLiteral("_"), folder)) {
    return false;
  }
  QCoreApplication::installTranslator(translator.release());
  return true;
}

}  // namespace

void installTranslations(const QStringList& languages, const std::filesystem::path& folder) {
  // One by one: given all at once, the toolkit would skip English, which has no file.
  for (const QString& language : languages) {
    const QLocale locale(language);
    if (locale.language() == QLocale::English) {
      return;
    }
    if (install(locale, "quilexhelper", QString::fromStdString(folder.string()))) {
      install(locale, "qtbase", QLibraryInfo::path(QLibraryInfo::TranslationsPath));
      return;
    }
  }
}

}  // namespace quilex
