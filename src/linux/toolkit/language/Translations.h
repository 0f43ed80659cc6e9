#pragma once

#include <QStringList>
#include <filesystem>

namespace quilex {

/// Translates all texts, the toolkit's own included, into the first of the languages (BCP 47 names, the user's
/// favourite first) that is English or has a file quilexhelper_LANGUAGE.qm in `folder`. Needs a QCoreApplication, and
/// is called once, before any text is looked up.
void installTranslations(const QStringList& languages, const std::filesystem::path& folder);

}  // namespace quilex
