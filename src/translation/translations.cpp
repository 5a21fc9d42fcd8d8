#include "translation/translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>

/// A static library's resources must be asked for, outside any namespace.
static void loadResources() {
    Q_INIT_RESOURCE(translations);
}

namespace glyma {

namespace {

const QString folder = QStringLiteral(":/glyma/translations");

} // namespace

Translations::Translations(const QStringList& languages) {
    loadResources();
    for (const auto& name : languages) {
        const auto language = QLocale(name).language();
        if (language == QLocale::English || language == QLocale::C)
            return;
        if (install(language))
            return;
    }
}

bool Translations::install(QLocale::Language language) {
    const auto code = QLocale::languageToCode(language);
    if (!program_.load(QStringLiteral("glyma_") + code, folder))
        return false;
    QCoreApplication::installTranslator(&program_);
    if (toolkit_.load(QStringLiteral("qtbase_") + code, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&toolkit_);
    return true;
}

} // namespace glyma
