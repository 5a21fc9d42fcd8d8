#pragma once

#include <QLocale>
#include <QStringList>
#include <QTranslator>

namespace glyma {

/// The texts of the interface, and Qt's own, in the first of the user's languages that there is a translation
/// for, while this exists. They are written in English, which therefore needs none. Must be there before the
/// first window; needs the application object.
class Translations {
public:
    /// \param languages  best first, such as "de-AT"; by default what LANGUAGE, LC_ALL, LC_MESSAGES and LANG
    /// say.
    explicit Translations(const QStringList& languages = QLocale().uiLanguages());

private:
    bool install(QLocale::Language language);

    QTranslator program_;
    QTranslator toolkit_;
};

} // namespace glyma
