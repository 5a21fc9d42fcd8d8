#include "picker/qt/glyphs.h"

#include "unicode/properties.h"
#include "unicode/text.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace glyma::qt {

namespace {

constexpr int rememberedPictures = 600;
constexpr int rememberedFamilies = 4000;
constexpr char32_t textSelector = 0xFE0E;
constexpr char32_t emojiSelector = 0xFE0F;
constexpr char32_t joiner = 0x200D;
constexpr char32_t keycap = 0x20E3;

QString qString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// The part of a picture that is not transparent.
QRect inkedPart(const QImage& image) {
    int left = image.width(), right = -1, top = image.height(), bottom = -1;
    for (int row = 0; row < image.height(); ++row) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(row));
        for (int column = 0; column < image.width(); ++column)
            if (qAlpha(line[column]) > 8) {
                left = std::min(left, column);
                right = std::max(right, column);
                top = std::min(top, row);
                bottom = std::max(bottom, row);
            }
    }
    return QRect(QPoint(left, top), QPoint(right, bottom));
}

struct Drawn {
    QImage image;
    QRect ink;       ///< device pixels
    double baseline; ///< device pixels from the image's top
};

/// The text on a canvas large enough for ink that leaves its advance width and line.
Drawn drawn(const QString& text, const QFont& font, const QColor& color, double scale) {
    const QFontMetricsF metrics(font);
    const double pad = font.pixelSize();
    const double width = std::min(metrics.horizontalAdvance(text) + 2 * pad, 2000.0);
    const double height = metrics.height() + 2 * pad;
    QImage image(QSizeF(width * scale, height * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setFont(font);
    painter.setPen(color);
    painter.drawText(QPointF(pad, pad + metrics.ascent()), text);
    painter.end();
    const auto ink = inkedPart(image);
    return {std::move(image), ink, (pad + metrics.ascent()) * scale};
}

} // namespace

bool hasEmojiPresentation(std::string_view character) {
    const auto scalars = unicode::scalars(character);
    if (scalars.empty() || scalars.find(textSelector) != scalars.npos)
        return false;
    if (scalars.find_first_of(std::u32string{emojiSelector, joiner, keycap}) != scalars.npos)
        return unicode::isEmoji(scalars.front());
    return unicode::isEmojiPresentation(scalars.front()) ||
           std::any_of(scalars.begin() + 1, scalars.end(), unicode::isSkinToneModifier);
}

Glyphs::Glyphs(FontChoice fonts)
    : fonts_(std::move(fonts))
    , pictures_(rememberedPictures) {}

QString Glyphs::family(std::string_view text) {
    if (hasEmojiPresentation(text))
        return fonts_.emojiFamily;
    const auto key = qString(text);
    if (const auto known = families_.constFind(key); known != families_.constEnd())
        return *known;
    if (families_.size() > rememberedFamilies)
        families_.clear();
    // A character in its text presentation is not to be drawn in colour, though the emoji font has it too.
    auto family = fonts_.familyFor ? fonts_.familyFor(text) : QString();
    if (family == fonts_.emojiFamily)
        family.clear();
    return *families_.insert(key, family);
}

bool Glyphs::canDraw(std::string_view text) {
    if (!fonts_.familyFor)
        return true;
    return std::ranges::all_of(unicode::graphemes(text), [&](std::string_view cluster) {
        return hasEmojiPresentation(cluster) || !fonts_.familyFor(cluster).isEmpty();
    });
}

bool Glyphs::hasFont(std::string_view cluster) {
    return !fonts_.familyFor || !fonts_.familyFor(cluster).isEmpty();
}

QFont Glyphs::font(std::string_view text, double size) {
    QFont font = QGuiApplication::font();
    if (const auto chosen = family(text); !chosen.isEmpty()) {
        font = QFont(chosen);
        // Looking through all fonts for a missing glyph costs many milliseconds a script.
        font.setStyleStrategy(QFont::NoFontMerging);
    }
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(size))));
    font.setWeight(QFont::Normal);
    return font;
}

Glyphs::Picture Glyphs::render(const QString& text, QFont font, QSizeF box, const QColor& color,
                               double scale) const {
    auto picture = drawn(text, font, color, scale);
    if (picture.ink.isEmpty())
        return {};
    const double shrink =
        std::min(box.width() * scale / picture.ink.width(), box.height() * scale / picture.ink.height());
    if (shrink < 1) {
        font.setPixelSize(std::max(4, static_cast<int>(font.pixelSize() * shrink)));
        picture = drawn(text, font, color, scale);
        if (picture.ink.isEmpty())
            return {};
    }
    // Tall ones sit in the middle by their ink; low ones keep their place over the base line.
    const double capHeight = QFontMetricsF(font).capHeight() * scale;
    const double boxHeight = box.height() * scale;
    double top = (boxHeight - picture.ink.height()) / 2;
    if (picture.ink.height() < 0.6 * font.pixelSize() * scale)
        top = (boxHeight + capHeight) / 2 - (picture.baseline - picture.ink.top());
    top = std::clamp(top, 0.0, std::max(0.0, boxHeight - picture.ink.height()));
    const double left = (box.width() * scale - picture.ink.width()) / 2;

    auto pixmap = QPixmap::fromImage(picture.image.copy(picture.ink));
    pixmap.setDevicePixelRatio(scale);
    return {std::move(pixmap), QPointF(std::floor(left), std::floor(top)) / scale};
}

void Glyphs::draw(QPainter& painter, const QRectF& box, std::string_view text, double size,
                  const QColor& color) {
    const double scale = painter.device()->devicePixelRatioF();
    const quint64 look = (quint64(color.rgb()) << 24) ^ (quint64(std::lround(size * 8)) << 12) ^
                         (quint64(std::lround(scale * 64)) << 50) ^ quint64(std::lround(box.width()));
    const Key key{qString(text), look};
    auto* picture = pictures_.object(key);
    if (!picture) {
        picture = new Picture(render(key.first, font(text, size), box.size(), color, scale));
        pictures_.insert(key, picture);
    }
    if (picture->pixmap.isNull())
        return;
    // On whole device pixels, so that the picture is copied and not resampled.
    const auto toDevice = painter.deviceTransform();
    const auto corner = toDevice.map(box.topLeft() + picture->offset);
    painter.drawPixmap(toDevice.inverted().map(QPointF(corner.toPoint())), picture->pixmap);
}

} // namespace glyma::qt
