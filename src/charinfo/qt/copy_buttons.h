#pragma once

#include <QTimer>
#include <QWidget>

#include <string>

class QMenu;

namespace glyma::qt {

class SoftButton;

/// Copies a character, and by a menu beside it what stands for the character in other places. Main thread.
class CopyButtons : public QWidget {
    Q_OBJECT

public:
    /// \param name  of the character, for who cannot see which card this is.
    CopyButtons(std::string character, const QString& name, QWidget* parent = nullptr);

    /// Whether it says so at the moment.
    bool justCopied() const { return justCopied_.isActive(); }

private:
    void addMenu(const QString& name);
    void copy(const std::string& text);
    void showState();

    std::string character_;
    SoftButton* button_;
    SoftButton* menuButton_;
    QMenu* menu_;
    QTimer justCopied_;
};

} // namespace glyma::qt
