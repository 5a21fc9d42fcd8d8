#pragma once

#include "picker/qt/glyphs.h"

#include <QWidget>

#include <string>

namespace glyma::qt {

/// A character, large, in a font that has it. One that could not be seen is drawn as its abbreviation, one
/// that no font has as its code point, in a dashed frame.
class GlyphTile : public QWidget {
public:
    /// \param glyphs     outlives the tile.
    /// \param character  one grapheme cluster, UTF-8.
    GlyphTile(Glyphs& glyphs, std::string character, QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void paintStandIn(QPainter& painter, const QRectF& box) const;

    Glyphs& glyphs_;
    std::string character_;
    QString standIn_;
};

} // namespace glyma::qt
