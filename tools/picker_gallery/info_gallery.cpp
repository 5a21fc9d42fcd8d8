// Shows the cards of some characters over a make-believe desktop and saves a picture of the screen. See
// tools/screenshots.sh.

#include "backdrop.h"
#include "charinfo/character_infos.h"
#include "charinfo/panel_placement.h"
#include "charinfo/qt/character_info_panel.h"
#include "desk.h"
#include "translation/translations.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QCursor>
#include <QPixmap>
#include <QScreen>

#include <cstdio>

namespace {

using namespace glyma;
using namespace glyma::gallery;

/// For the compositor.
constexpr int settleMilliseconds = 500;
const auto usedAt = std::chrono::sys_days{std::chrono::year{2026} / 3 / 5};

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const Translations translations;
    chooseFont();
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions(
        {{QStringLiteral("text"), QString(), QStringLiteral("text"), QStringLiteral("\U0001F44D\U0001F3FD")},
         {QStringLiteral("pointer"), QString(), QStringLiteral("x,y"), QStringLiteral("300,120")},
         {QStringLiteral("output"), QString(), QStringLiteral("file"), QStringLiteral("info.png")}});
    parser.process(application);
    const auto desk = Desk::make();
    if (!desk) {
        std::fprintf(stderr, "info_gallery: %s\n", desk.error().c_str());
        return 1;
    }
    {
        auto store = Store::open((*desk)->storeFile());
        if (!store || !store->setUsage("\U0001F44D", 12, usedAt))
            return 1;
    }
    CharacterInfos source((*desk)->storeFile(), (*desk)->resources());
    const auto infos = source.buildInfos(parser.value(QStringLiteral("text")).toStdString(), shownCharacters);
    const auto at = parser.value(QStringLiteral("pointer")).split(u',');
    QCursor::setPos(at.value(0).toInt(), at.value(1).toInt());

    Backdrop backdrop(qEnvironmentVariable("GLYMA_THEME") == QLatin1String("dark"), QString());
    backdrop.show();
    qt::Appearance appearance;
    qt::CompositorWatch compositor;
    qt::CharacterInfoPanel panel(appearance, compositor, (*desk)->fontChoice(), [] {});
    wait(settleMilliseconds);
    qt::QtScreens screens;
    panel.show(infos, characterInfoFrame(screens.pointerLocation(), infos.size(), screens.all()));
    wait(settleMilliseconds);
    const auto picture = QGuiApplication::primaryScreen()->grabWindow(0);
    panel.hide();
    return picture.save(parser.value(QStringLiteral("output"))) ? 0 : 1;
}
