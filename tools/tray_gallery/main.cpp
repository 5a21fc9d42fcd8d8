// Draws every state of the icon on a light and a dark panel, and the menu, into pictures.
//
//   tray_gallery FOLDER

#include "app/desktop/status_icon.h"
#include "app/desktop/status_menu.h"
#include "preferences/user_preferences.h"
#include "translation/translations.h"

#include <QApplication>
#include <QDir>
#include <QPainter>
#include <QStyle>
#include <QStyleFactory>

#include <cstdio>
#include <vector>

namespace glyma {

namespace {

constexpr int iconSize = 22;
constexpr int cellWidth = 156;
constexpr int panelHeight = 40;
constexpr int scale = 2;

struct Entry {
    QString label;
    Status status;
    double turn = 0;
};

std::vector<Entry> entries() {
    std::vector<Entry> all{{.label = "Importing", .status = {.isImporting = true}, .turn = 0.1},
                           {.label = "Permission missing", .status = {.permissionsNeeded = true}},
                           {.label = "Secure Input", .status = {.secureInputBlocked = true}}};
    for (const auto& option : UserPreferences::menuBarIconOptions())
        if (!option.symbol.empty())
            all.push_back({.label = QString::fromUtf8(option.label.data(), qsizetype(option.label.size())),
                           .status = {.menuBarIcon = std::string(option.value)}});
    for (const auto& option : UserPreferences::triggerOptions())
        all.push_back({.label = QString::fromUtf8(option.label.data(), qsizetype(option.label.size())),
                       .status = {.triggerCharacter = std::string(option.value)}});
    return all;
}

/// One row of a panel for each half of the states.
QImage drawnPanels(bool isDark) {
    const auto all = entries();
    constexpr int columns = 6;
    const int rows = (int(all.size()) + columns - 1) / columns;
    QImage image(columns * cellWidth * scale, rows * panelHeight * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(isDark ? QColor(0x24, 0x24, 0x28) : QColor(0xEC, 0xEC, 0xEF));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    auto font = painter.font();
    font.setPixelSize(11);
    painter.setFont(font);
    painter.setPen(isDark ? Qt::white : Qt::black);
    for (int index = 0; index < int(all.size()); ++index) {
        const auto& entry = all[std::size_t(index)];
        const QRect cell(index % columns * cellWidth, index / columns * panelHeight, cellWidth, panelHeight);
        const auto icon = statusIcon(entry.status, isDark, entry.turn);
        const QRect place(cell.left() + 8, cell.top() + (panelHeight - iconSize) / 2, iconSize, iconSize);
        painter.drawPixmap(place, icon.pixmap(QSize(iconSize, iconSize), scale));
        painter.drawText(cell.adjusted(16 + iconSize, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft,
                         entry.label);
    }
    return image;
}

QPalette darkPalette() {
    QPalette palette(QColor(0x35, 0x35, 0x3A));
    palette.setColor(QPalette::Base, QColor(0x2B, 0x2B, 0x30));
    return palette;
}

QImage drawnMenu(bool isDark) {
    QApplication::setPalette(isDark ? darkPalette() : QApplication::style()->standardPalette());
    StatusMenu menu({.openPreferences = [](const std::string&) {}, .openUpdatePage = [] {}, .quit = [] {}});
    menu.setLines(true, true, true);
    menu.popup({});
    QApplication::processEvents();
    return menu.grab().toImage();
}

} // namespace

} // namespace glyma

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const glyma::Translations translations;
    if (argc != 2) {
        std::fputs("usage: tray_gallery FOLDER\n", stderr);
        return 2;
    }
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    bool isWritten = true;
    for (const bool isDark : {false, true}) {
        const auto name = [&](const char* what) {
            return folder.filePath(QStringLiteral("tray-%1-%2.png").arg(what, isDark ? "dark" : "light"));
        };
        isWritten = glyma::drawnPanels(isDark).save(name("icons")) && isWritten;
        isWritten = glyma::drawnMenu(isDark).save(name("menu")) && isWritten;
    }
    return isWritten ? 0 : 1;
}
