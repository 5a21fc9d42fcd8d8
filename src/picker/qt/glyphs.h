#pragma once

#include <QCache>
#include <QColor>
#include <QFont>
#include <QHash>
#include <QPixmap>
#include <QRectF>
#include <QString>

#include <functional>
#include <string_view>
#include <utility>

class QPainter;

namespace glyma::qt {

/// Which font draws what. Both answers are family names; an empty one leaves the choice to Qt, which then
/// searches all fonts (slow at a script's first character).
struct FontChoice {
    QString emojiFamily;
    std::function<QString(std::string_view text)> familyFor;
};

/// Whether a character is to be drawn as a colour emoji rather than in the text's colour: it is a sequence of
/// emoji, asks for it with U+FE0F, or is one by default and does not decline with U+FE0E.
bool hasEmojiPresentation(std::string_view character);

/// Draws single characters, each in a font that has it, centred and made smaller where they would not fit.
/// Keeps the pictures of those drawn lately. Main thread.
class Glyphs {
public:
    explicit Glyphs(FontChoice fonts);

    /// \param text   one grapheme cluster or a few, UTF-8.
    /// \param size   the font's size, logical pixels.
    /// \param color  for characters that have no colours of their own.
    void draw(QPainter& painter, const QRectF& box, std::string_view text, double size, const QColor& color);
    /// The font for a text, at a size in logical pixels.
    QFont font(std::string_view text, double size);
    /// Whether some installed font has all the text's characters.
    bool canDraw(std::string_view text);
    /// Whether one installed font has all of a grapheme cluster.
    bool hasFont(std::string_view cluster);

private:
    struct Picture {
        QPixmap pixmap;
        QPointF offset; ///< of its top left corner from the box's, logical pixels
    };
    using Key = std::pair<QString, quint64>;

    QString family(std::string_view text);
    Picture render(const QString& text, QFont font, QSizeF box, const QColor& color, double scale) const;

    FontChoice fonts_;
    QHash<QString, QString> families_;
    QCache<Key, Picture> pictures_;
};

} // namespace glyma::qt
