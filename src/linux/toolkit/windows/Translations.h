#pragma once

#include <QStringList>
#include <filesystem>

namespace quilex {

/// Shows all texts in the first of the languages, BCP 47 names with the user's favourite in front, that there is a
/// translation for, the toolkit's own texts included; English needs none. `folder` holds the program's translations,
/// quilexhelper_LANGUAGE.qm. Needs a QCoreApplication, and is called once, before any text is looked up.
void installTranslations(const QStringList& languages, const std::filesystem::path& folder);

}  // namespace quilex
