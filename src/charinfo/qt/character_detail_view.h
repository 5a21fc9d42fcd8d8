#pragma once

#include "charinfo/character_info.h"
#include "picker/qt/glyphs.h"

#include <QWidget>

class QGridLayout;
class QLabel;

namespace glyma::qt {

/// One character with all that is known about it. Its colours are those of its palette, so that it fits into
/// any window.
class CharacterDetailView : public QWidget {
    Q_OBJECT

public:
    /// \param glyphs       outlives the view.
    /// \param showsChrome  whether it is drawn as a card, with a ground and an outline of its own.
    CharacterDetailView(Glyphs& glyphs, const CharacterInfo& info, bool showsChrome,
                        QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QLayout* makeHeader(Glyphs& glyphs, const CharacterInfo& info);
    QLayout* makeFacts(const CharacterInfo& info);
    void addFact(QGridLayout& grid, const std::string& label, const std::string& value);
    QLabel* makeText(const QString& text);
    QLabel* makeCaption(const QString& text);
    void dimCaptions();

    bool showsChrome_;
    QList<QLabel*> captions_;
};

} // namespace glyma::qt
