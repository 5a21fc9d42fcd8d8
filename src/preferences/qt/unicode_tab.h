#pragma once

#include "charinfo/character_infos.h"
#include "monitor/shared_flags.h"
#include "picker/qt/glyphs.h"
#include "preferences/tabs/unicode_tab_model.h"
#include "preferences/user_preferences.h"

#include <QTimer>
#include <QWidget>

#include <vector>

class QLabel;
class QLineEdit;
class QStackedWidget;

namespace glyma::qt {

class BlockListModel;
class CharacterDetailCollection;
class CharacterListModel;
class CheckList;

/// Everything referred to outlives the tab.
struct UnicodeTabServices {
    UnicodeDataManager& catalogue;
    CharacterInfos& infos;
    UserPreferences& preferences;
    SharedFlags& flags; ///< isTestFieldFocused
    FontChoice fonts;
};

/// The library: blocks, the characters of one of them and what there is to know about the selected ones.
/// Whole blocks and single characters are switched on and off here. Main thread.
class UnicodeTab : public QWidget {
    Q_OBJECT

public:
    explicit UnicodeTab(const UnicodeTabServices& services, QWidget* parent = nullptr);
    ~UnicodeTab() override;

private:
    QWidget* makeColumns();
    QWidget* makeBlocksColumn();
    QWidget* makeCharactersColumn();
    QWidget* makeDetailsColumn();
    QWidget* makeImportPage();
    QLayout* makeTestRow();
    void connectFocusKeys();
    bool eventFilter(QObject* watched, QEvent* event) override;

    void blocksListed();
    void charactersListed();
    void takeSelection();
    void showDetails();
    void showImport();
    void showTrigger();

    UnicodeTabServices services_;
    UnicodeTabModel model_;
    Glyphs glyphs_;
    BlockListModel* blockRows_;
    CharacterListModel* characterRows_;
    QStackedWidget* pages_;
    QLabel* importTitle_ = nullptr;
    QLabel* importStatus_ = nullptr;
    QWidget* importBar_ = nullptr;
    CheckList* blocks_ = nullptr;
    CheckList* characters_ = nullptr;
    QLabel* characterCount_ = nullptr;
    CharacterDetailCollection* details_ = nullptr;
    QLabel* noDetails_ = nullptr;
    QStackedWidget* detailPages_ = nullptr;
    QLineEdit* testField_ = nullptr;
    bool isRestoring_ = false; ///< the lists are being brought to what the model says
    QTimer detailsDue_;
    std::vector<Subscription> subscriptions_;
};

} // namespace glyma::qt
