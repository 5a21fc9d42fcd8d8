#include "preferences/qt/exclusions_tab.h"
#include "preferences/qt/page_bar.h"
#include "preferences/qt/replacements_tab.h"
#include "translation/translations.h"
#include "window_fixture.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDialog>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QScrollBar>
#include <QXmlStreamReader>
#include <gmock/gmock.h>

#include <array>
#include <set>

namespace glyma::qt {
namespace {

/// The English texts that are others in German.
std::set<QString> englishTexts() {
    QFile file(QStringLiteral(GLYMA_SOURCE_DIR "/resources/translations/glyma_de.ts"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QXmlStreamReader reader(&file);
    std::set<QString> english;
    QString source;
    while (!reader.atEnd()) {
        if (!reader.readNextStartElement())
            continue;
        if (reader.name() == u"source")
            source = reader.readElementText();
        else if (reader.name() == u"translation" && reader.readElementText() != source)
            english.insert(source.remove(u'&'));
    }
    return english;
}

QStringList textsOf(const QWidget& widget) {
    QStringList texts{widget.windowTitle(), widget.toolTip(), widget.accessibleName(),
                      widget.accessibleDescription()};
    for (const auto* property : {"text", "placeholderText", "currentText"})
        texts.append(widget.property(property).toString());
    return texts;
}

/// A widget that has less room than its text takes.
bool isCutOff(const QWidget& widget) {
    if (const auto* label = qobject_cast<const QLabel*>(&widget))
        return label->wordWrap() ? label->height() < label->heightForWidth(label->width())
                                 : label->width() < label->sizeHint().width();
    // The library is wider than this test's screen, and its columns give way.
    const bool isNarrowed =
        widget.window()->frameGeometry().width() >= widget.screen()->availableSize().width();
    if (const auto* field = qobject_cast<const QLineEdit*>(&widget); field && !isNarrowed)
        return field->width() < field->fontMetrics().horizontalAdvance(field->placeholderText());
    if (const auto* scroller = qobject_cast<const QScrollBar*>(&widget))
        return scroller->orientation() == Qt::Horizontal;
    if (const auto* choice = qobject_cast<const QComboBox*>(&widget))
        return choice->width() < choice->minimumSizeHint().width();
    const auto* button = qobject_cast<const QAbstractButton*>(&widget);
    return button && !qobject_cast<const QCheckBox*>(button) &&
           button->width() < button->fontMetrics().horizontalAdvance(button->text().remove(u'&'));
}

constexpr std::array pages{"general",     "exclusions", "unicode", "replacements",
                           "permissions", "advanced",   "debug"};

class GermanTest : public WindowTest {
protected:
    GermanTest() {
        desk->debug.setShowDebugTab(true);
        desk->holdSecureInput(0, {});
        desk->accessibility.set({.isGranted = false,
                                 .finding = "the accessibility bus is switched off",
                                 .remedy = {},
                                 .canBeObtained = true});
        desk->loginItem.refusal =
            Message::tr("Glyma cannot be started at login: it does not know where it is "
                        "installed. Install it again.");
    }

    /// In its size at once, which a window that is there takes its time for.
    void openAnew(const std::string& page) {
        desk->window.hide();
        open(page);
    }

    void check(const QWidget& window, const std::string& page) {
        int count = 0;
        for (const auto* widget : window.findChildren<QWidget*>()) {
            if (!widget->isVisible())
                continue;
            for (auto text : textsOf(*widget)) {
                EXPECT_FALSE(english_.contains(text.remove(u'&'))) << page << ": " << qPrintable(text);
                count += text.isEmpty() ? 0 : 1;
            }
            EXPECT_FALSE(isCutOff(*widget)) << page << ": " << qPrintable(textsOf(*widget).join(u'|'));
        }
        EXPECT_GE(count, 3) << page;
    }

    const std::set<QString> english_ = englishTexts();

private:
    const Translations translations_{QStringList{"de"}};
    // Made anew: its pages were given their titles before.
    [[maybe_unused]] const int isMade_ = (desk = std::make_unique<gallery::PreferencesDesk>(), 0);
};

TEST_F(GermanTest, NothingInThePreferencesIsEnglishOrCutOff) {
    for (const auto* page : pages) {
        openAnew(page);
        check(desk->window, page);
    }
    openAnew("general");
    named<QAbstractButton>(QStringLiteral("Glyma bei der Anmeldung starten")).click();
    check(desk->window, "general, refused");
}

TEST_F(GermanTest, NothingInASheetIsEnglishOrCutOff) {
    const std::pair<const char*, QString> sheets[] = {
        {"exclusions", ExclusionsTab::tr("Add excluded application")},
        {"exclusions", ExclusionsTab::tr("Add excluded website")},
        {"replacements", ReplacementsTab::tr("Add replacement")},
        {"advanced", QStringLiteral("Anwendungsdaten löschen und beenden …")},
    };
    for (const auto& [page, button] : sheets) {
        openAnew(page);
        named<QAbstractButton>(button).click();
        auto* sheet = desk->window.findChild<QDialog*>();
        ASSERT_NE(sheet, nullptr) << qPrintable(button);
        ASSERT_TRUE(QTest::qWaitForWindowExposed(sheet));
        check(*sheet, button.toStdString());
        delete sheet;
    }
}

TEST_F(GermanTest, EveryMnemonicOfAPageIsItsOwn) {
    for (const auto* page : pages) {
        openAnew(page);
        std::multiset<QChar> keys;
        for (const auto* widget : desk->window.findChildren<QWidget*>()) {
            const auto text = widget->property("text").toString();
            if (const auto at = text.indexOf(u'&'); widget->isVisible() && at >= 0)
                keys.insert(text[at + 1].toLower());
        }
        const auto* bar = desk->window.findChild<PageBar*>();
        for (int index = 0; index < bar->count(); ++index)
            keys.insert(bar->tabText(index)[bar->tabText(index).indexOf(u'&') + 1].toLower());
        for (const auto key : keys)
            EXPECT_EQ(keys.count(key), 1U) << page << ": " << qPrintable(QString(key));
    }
}

} // namespace
} // namespace glyma::qt
