// Shows the picker over a make-believe desktop and saves a picture of it. See tools/screenshots.sh.

#include "backdrop.h"
#include "desk.h"
#include "translation/translations.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QCursor>
#include <QMouseEvent>
#include <QPixmap>
#include <QScreen>

#include <cstdio>
#include <map>
#include <optional>
#include <string>

namespace {

using namespace glyma::gallery;

/// For the compositor and the first animation frames.
constexpr int settleMilliseconds = 500;
constexpr QRect pictureArea(20, 16, 760, 620);

struct Scene {
    std::string query;
    int movesDown = 0;
    bool opensMenu = false;
    std::optional<std::string> skinTone = std::nullopt;
};

const std::map<QString, Scene> scenes = {
    {QStringLiteral("results"), {"smil"}},
    {QStringLiteral("highlight"), {"heart", 2}},
    {QStringLiteral("skin-tones"), {"hand", 0, true, "\U0001F3FD"}},
    {QStringLiteral("nothing-found"), {"qwxz"}},
};

void press(QWidget& widget, QPoint global) {
    const auto local = widget.mapFromGlobal(global);
    QMouseEvent event(QEvent::MouseButtonPress, local, global, Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &event);
}

void show(Desk& desk, const Backdrop& backdrop, const Scene& scene) {
    desk.preferences.setSkinToneModifier(scene.skinTone);
    desk.open(scene.query, deviceCaret(backdrop.caret()));
    for (int step = 0; step < scene.movesDown; ++step)
        desk.model.moveSelection(1);
    wait(settleMilliseconds);
    if (scene.opensMenu) {
        press(desk.panel.view(), desk.panel.view().skinToneButton().center());
        wait(settleMilliseconds);
    }
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const glyma::Translations translations;
    chooseFont();
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions(
        {{QStringLiteral("scene"), QString(), QStringLiteral("name"), QStringLiteral("results")},
         {QStringLiteral("query"), QString(), QStringLiteral("text")},
         {QStringLiteral("output"), QString(), QStringLiteral("file"), QStringLiteral("picker.png")},
         {QStringLiteral("rows"), QString(), QStringLiteral("number"), QStringLiteral("7")},
         {QStringLiteral("fuzzy"), QString()},
         {QStringLiteral("ranking"), QString()}});
    parser.process(application);
    const auto found = scenes.find(parser.value(QStringLiteral("scene")));
    if (found == scenes.end()) {
        std::fputs("picker_gallery: no such scene\n", stderr);
        return 2;
    }
    auto scene = found->second;
    if (parser.isSet(QStringLiteral("query")))
        scene.query = parser.value(QStringLiteral("query")).toStdString();

    const auto desk = Desk::make();
    if (!desk) {
        std::fprintf(stderr, "picker_gallery: %s\n", desk.error().c_str());
        return 1;
    }
    (*desk)->preferences.setVisiblePickerRows(parser.value(QStringLiteral("rows")).toInt());
    (*desk)->preferences.setUseFuzzySearch(parser.isSet(QStringLiteral("fuzzy")));
    (*desk)->debug.setShowRankingInfo(parser.isSet(QStringLiteral("ranking")));

    QCursor::setPos(5, 5);
    const bool isDark = qEnvironmentVariable("GLYMA_THEME") == QLatin1String("dark");
    Backdrop backdrop(isDark, QString::fromStdString(":" + scene.query));
    backdrop.show();
    (*desk)->panel.warmUp();
    wait(settleMilliseconds);
    show(**desk, backdrop, scene);
    const auto picture = QGuiApplication::primaryScreen()->grabWindow(
        0, pictureArea.x(), pictureArea.y(), pictureArea.width(), pictureArea.height());
    (*desk)->panel.hide();
    return picture.save(parser.value(QStringLiteral("output"))) ? 0 : 1;
}
