#pragma once

#include "picker/qt/glyphs.h"
#include "picker/qt/theme.h"

#include <QFont>
#include <QRect>
#include <QString>

#include <optional>
#include <string>

class QPainter;

namespace glyma::qt {

/// What the header shows.
struct HeaderState {
    QString echo; ///< trigger and query
    std::optional<std::string> skinToneModifier;
    bool isBusy = false;
    int busyAngle = 0; ///< degrees
    bool isButtonHovered = false;
    /// Of the dot that tells how the query is followed; invalid: no dot.
    QColor pollingDot;
};

/// Draws the panel's header. Main thread.
class PickerHeader {
public:
    explicit PickerHeader(Glyphs& glyphs);

    void paint(QPainter& painter, int panelWidth, const HeaderState& state, const Theme& theme) const;
    /// The skin tone button, relative to the panel.
    static QRect skinToneButton(int panelWidth, bool hasPollingDot);
    static QRect progress(int panelWidth, bool hasPollingDot);
    void refreshFonts();

private:
    void paintButton(QPainter& painter, const QRect& button, const HeaderState& state,
                     const Theme& theme) const;

    Glyphs& glyphs_;
    QFont echoFont_;
};

} // namespace glyma::qt
