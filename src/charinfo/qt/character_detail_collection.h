#pragma once

#include "charinfo/character_info.h"
#include "picker/qt/glyphs.h"

#include <QScrollArea>

#include <optional>
#include <vector>

class QGridLayout;
class QLabel;

namespace glyma::qt {

/// The cards of some characters in as many columns as fit, and a note below them. Scrolls. Main thread.
class CharacterDetailCollection : public QScrollArea {
    Q_OBJECT

public:
    /// \param glyphs           outlives the collection.
    /// \param showsCardChrome  whether each is drawn as a card.
    CharacterDetailCollection(Glyphs& glyphs, bool showsCardChrome, QWidget* parent = nullptr);

    void setInfos(const std::vector<CharacterInfo>& infos, const std::optional<QString>& footnote);

    /// Gives the first card the keyboard focus of the window.
    void focusFirst();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void arrange();

    Glyphs& glyphs_;
    bool showsCardChrome_;
    QWidget* content_;
    QGridLayout* grid_;
    QLabel* footnote_;
    std::vector<QWidget*> cards_;
    int columns_ = 0;
};

} // namespace glyma::qt
