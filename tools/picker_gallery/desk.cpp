#include "desk.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QScreen>
#include <QTimer>

#include <filesystem>
#include <utility>

namespace glyma::gallery {

namespace {

constexpr int importLimitMilliseconds = 60'000;

std::filesystem::path storeIn(const QTemporaryDir& folder) {
    return std::filesystem::path(folder.path().toStdString()) / "Glyma.store";
}

} // namespace

std::expected<std::unique_ptr<Desk>, std::string> Desk::make() {
    auto folder = std::make_unique<QTemporaryDir>();
    auto store = Store::open(storeIn(*folder));
    if (!store)
        return std::unexpected(store.error());
    std::unique_ptr<Desk> desk(new Desk(std::move(*store)));
    desk->folder_ = std::move(folder);
    if (!desk->load())
        return std::unexpected("the catalogue could not be imported");
    return desk;
}

Desk::Desk(Store store)
    : resources_(std::filesystem::path(GLYMA_SOURCE_DIR) / "resources")
    , catalogue({scheduler_, tasks_, clock_, settings_, preferences, log_, resources_, coverage_},
                std::move(store))
    , model(catalogue)
    , panel({model, preferences, debug, screens_, fontChoice(),
             [this](bool isEmoji) -> const std::vector<std::string>& {
                 return isEmoji ? catalogue.randomEmojiPool() : catalogue.randomUnicodeDisplayPool();
             },
             [this] { ++recached; }}) {}

std::filesystem::path Desk::storeFile() const {
    return storeIn(*folder_);
}

qt::FontChoice Desk::fontChoice() {
    return {QString::fromStdString(families_.emojiFontFamily()),
            [this](std::string_view text) { return QString::fromStdString(families_.familyFor(text)); }};
}

bool Desk::load() {
    bool isFailed = false;
    const auto completed =
        catalogue.importComplete.connect([&](const std::string& reason) { isFailed = !reason.empty(); });
    catalogue.start();
    QElapsedTimer timer;
    timer.start();
    while (catalogue.isCurrentlyImporting() && timer.elapsed() < importLimitMilliseconds)
        wait(20);
    return !isFailed && !catalogue.isCurrentlyImporting();
}

void Desk::open(const std::string& query, const Rect& caret) {
    model.setTrigger(":");
    model.setQuery(query);
    model.setSelectedIndex(0);
    panel.placeAtCaret(caret);
    panel.orderFront();
}

Rect deviceCaret(const QRect& logical) {
    const auto* screen = QGuiApplication::primaryScreen();
    return qt::deviceRect(logical, screen->geometry().topLeft(), screen->devicePixelRatio());
}

void chooseFont() {
    for (const auto* family : {"Inter", "Cantarell", "Noto Sans"})
        if (QFontDatabase::hasFamily(QLatin1String(family))) {
            QApplication::setFont(QFont(QLatin1String(family), 10));
            return;
        }
}

void wait(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, [&] { loop.quit(); });
    loop.exec();
}

} // namespace glyma::gallery
