#include "translation/message_text.h"
#include "translation/translations.h"
#include "window_fixture.h"

namespace glyma {
namespace {

using TranslationsTest = qt::WindowTest;

TEST_F(TranslationsTest, TheFirstLanguageThatThereIsATranslationForWins) {
    const struct {
        QStringList languages;
        const char* quit;
    } cases[] = {
        {{"de-DE", "de"}, "Glyma beenden"},
        {{"de-AT"}, "Glyma beenden"},
        {{"fr-FR", "de-DE"}, "Glyma beenden"},
        {{"en-GB", "de-DE"}, "Quit Glyma"},
        {{"C"}, "Quit Glyma"},
        {{"fr-FR"}, "Quit Glyma"},
        {{}, "Quit Glyma"},
    };
    for (const auto& [languages, quit] : cases) {
        const Translations translations(languages);
        EXPECT_EQ(QCoreApplication::translate("glyma::StatusMenu", "Quit Glyma"), quit)
            << qPrintable(languages.join(u' '));
    }
}

TEST_F(TranslationsTest, AMessageIsEnglishForTheDoctorAndGermanInTheWindows) {
    const auto message = Message::tr("the X server speaks XInput %1.%2, and %3.%4 is needed to hear keys")
                             .arg(1)
                             .arg(5)
                             .arg(2)
                             .arg(2);
    const Translations translations(QStringList{"de"});
    EXPECT_EQ(message.english(), "the X server speaks XInput 1.5, and 2.2 is needed to hear keys");
    EXPECT_EQ(textOf(message), "der X-Server beherrscht XInput 1.5; um Tasten zu hören, ist 2.2 nötig");
    EXPECT_EQ(textOf(Message()), "");
    EXPECT_EQ(textOf(std::string("told by the system: 100 %")), "told by the system: 100 %");
}

TEST_F(TranslationsTest, AValueThatLooksLikeAPlaceIsNoPlace) {
    const auto message = Message::tr("%1 cannot be written (%2), 100 %").arg("/home/%2").arg("%1");
    EXPECT_EQ(message.english(), "/home/%2 cannot be written (%1), 100 %");
    EXPECT_EQ(Message::tr("%1 and %2").arg("one").english(), "one and %2");
}

} // namespace
} // namespace glyma
