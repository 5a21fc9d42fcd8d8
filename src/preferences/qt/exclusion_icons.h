#pragma once

#include "platform/installed_applications.h"

#include <QColor>
#include <QIcon>
#include <QRect>

#include <map>
#include <string>

class QPainter;

namespace glyma::qt {

/// Draws the icons of applications, a generic one for those without. Keeps what it has loaded. Main thread.
class ApplicationIcons {
public:
    void paint(QPainter& painter, const QRect& box, const std::string& icon, const QColor& text);

private:
    std::map<std::string, QIcon> icons_; ///< null: has none
};

void paintGlobe(QPainter& painter, const QRect& box, const QColor& text);

} // namespace glyma::qt
