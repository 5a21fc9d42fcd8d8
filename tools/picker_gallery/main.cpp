// Shows the picker over a make-believe desktop and saves a picture of it.
//   picker_gallery --scene results|highlight|skin-tones|nothing-found --output FILE [--above] [--ranking]
//   [--rows N]

#include "backdrop.h"
#include "catalogue/unicode_data_manager.h"
#include "data/store.h"
#include "picker/emoji_picker_view_model.h"
#include "picker/qt/emoji_picker_panel.h"
#include "platform/linux/xdg/system_clock.h"
#include "platform/qt/qt_scheduler.h"
#include "platform/qt/qt_screens.h"
#include "platform/simulated/services.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QCursor>
#include <QElapsedTimer>
#include <QFontDatabase>
#include <QMouseEvent>
#include <QScreen>
#include <QTemporaryDir>
#include <QTimer>

#include <cmath>
#include <cstdio>
#include <map>

namespace {

using namespace glyma;

/// Seconds that a first import may take.
constexpr int importLimit = 30;
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

/// The picker with all that it needs, over a catalogue in a temporary folder and settings in memory.
struct Desk {
    explicit Desk(Store store)
        : catalogue({scheduler, tasks, clock, settings, preferences, log, resources, fonts}, std::move(store))
        , model(catalogue)
        , panel({model,
                 preferences,
                 debug,
                 screens,
                 {QStringLiteral("Noto Color Emoji"), {}},
                 [this](bool isEmoji) -> const std::vector<std::string>& {
                     return isEmoji ? catalogue.randomEmojiPool() : catalogue.randomUnicodeDisplayPool();
                 },
                 [] {}}) {}

    simulated::SimulatedLog sink;
    simulated::SimulatedSettings settings;
    simulated::SimulatedLoginItem loginItem;
    simulated::SimulatedInstalledApplications applications;
    simulated::SimulatedFonts fonts;
    DebugConfig debug{settings};
    Log log{sink, debug};
    UserPreferences preferences{settings, loginItem, applications, log};
    ResourceLocator resources{std::filesystem::path(GLYMA_SOURCE_DIR) / "resources"};
    glyma::qt::QtScheduler scheduler;
    glyma::qt::QtTaskRunner tasks;
    xdg::SystemClock clock;
    UnicodeDataManager catalogue;
    EmojiPickerViewModel model;
    glyma::qt::QtScreens screens;
    glyma::qt::EmojiPickerPanel panel;
};

bool loadCatalogue(UnicodeDataManager& catalogue) {
    bool isDone = false;
    const auto done = catalogue.importComplete.connect([&](const std::string&) { isDone = true; });
    catalogue.start();
    QElapsedTimer timer;
    timer.start();
    while (catalogue.isCurrentlyImporting() && !isDone && timer.elapsed() < importLimit * 1000)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 50);
    return !catalogue.isCurrentlyImporting();
}

void wait(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, [&] { loop.quit(); });
    loop.exec();
}

void press(QWidget& widget, QPoint global) {
    const auto local = widget.mapFromGlobal(global);
    QMouseEvent event(QEvent::MouseButtonPress, local, global, Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &event);
}

Rect deviceCaret(const QRect& caret) {
    const auto* screen = QGuiApplication::primaryScreen();
    return glyma::qt::deviceRect(caret, screen->geometry().topLeft(), screen->devicePixelRatio());
}

bool savePicture(const QString& file) {
    auto* screen = QGuiApplication::primaryScreen();
    return screen->grabWindow(0, pictureArea.x(), pictureArea.y(), pictureArea.width(), pictureArea.height())
        .save(file);
}

void chooseFont() {
    for (const auto* family : {"Inter", "Cantarell", "Noto Sans"})
        if (QFontDatabase::hasFamily(QLatin1String(family))) {
            QApplication::setFont(QFont(QLatin1String(family), 10));
            return;
        }
}

void show(Desk& desk, gallery::Backdrop& backdrop, const Scene& scene) {
    desk.preferences.setSkinToneModifier(scene.skinTone);
    desk.model.setTrigger(":");
    desk.model.setQuery(scene.query);
    desk.panel.placeAtCaret(deviceCaret(backdrop.caret()));
    desk.panel.orderFront();
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
    chooseFont();
    QCommandLineParser parser;
    parser.addOptions(
        {{QStringLiteral("scene"), QString(), QStringLiteral("name"), QStringLiteral("results")},
         {QStringLiteral("query"), QString(), QStringLiteral("text")},
         {QStringLiteral("output"), QString(), QStringLiteral("file"), QStringLiteral("picker.png")},
         {QStringLiteral("rows"), QString(), QStringLiteral("number"), QStringLiteral("7")},
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

    const QTemporaryDir folder;
    auto store = Store::open(std::filesystem::path(folder.path().toStdString()) / "Glyma.store");
    if (!store) {
        std::fprintf(stderr, "picker_gallery: %s\n", store.error().c_str());
        return 1;
    }
    Desk desk(std::move(*store));
    if (!loadCatalogue(desk.catalogue)) {
        std::fputs("picker_gallery: the catalogue could not be imported\n", stderr);
        return 1;
    }
    desk.preferences.setVisiblePickerRows(parser.value(QStringLiteral("rows")).toInt());
    desk.debug.setShowRankingInfo(parser.isSet(QStringLiteral("ranking")));

    QCursor::setPos(5, 5);
    const bool isDark = qEnvironmentVariable("GLYMA_THEME") == QLatin1String("dark");
    gallery::Backdrop backdrop(isDark, QString::fromStdString(":" + scene.query));
    backdrop.show();
    desk.panel.warmUp();
    wait(settleMilliseconds);
    show(desk, backdrop, scene);
    const bool isSaved = savePicture(parser.value(QStringLiteral("output")));
    desk.panel.hide();
    return isSaved ? 0 : 1;
}
