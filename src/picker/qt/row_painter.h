#pragma once

#include "picker/qt/glyphs.h"
#include "picker/qt/row_content.h"
#include "picker/qt/theme.h"

#include <QFont>
#include <QRectF>

#include <string>
#include <vector>

class QPainter;

namespace glyma::qt {

/// How a row is drawn besides its content.
struct RowState {
    bool isSelected = false;
    bool isHovered = false;
};

/// Draws the rows of the list. Keeps its fonts. Main thread.
class RowPainter {
public:
    explicit RowPainter(Glyphs& glyphs);

    /// \param row  the row's background.
    void paint(QPainter& painter, const QRectF& row, const RowContent& content, const RowState& state,
               const Theme& theme);
    static QRectF iconBox(const QRectF& row);
    /// After the application's font has changed.
    void refreshFonts();

private:
    void paintIcon(QPainter& painter, const QRectF& box, const RowContent& content, const Theme& theme);
    double paintName(QPainter& painter, QRectF line, const std::vector<TextRun>& name,
                     const TextColors& colors) const;
    void paintFirstLine(QPainter& painter, const QRectF& line, const RowContent& content,
                        const TextColors& colors) const;

    Glyphs& glyphs_;
    QFont nameFont_;
    QFont emphasisFont_;
    QFont keywordFont_;
    QFont rankingFont_;
};

} // namespace glyma::qt
