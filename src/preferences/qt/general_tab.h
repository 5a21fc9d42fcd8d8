#pragma once

#include "charinfo/qt/shortcut_recorder.h"
#include "platform/subscription.h"
#include "preferences/program_operations.h"
#include "preferences/user_preferences.h"

#include <QWidget>

class QCheckBox;
class QLabel;
class QLineEdit;

namespace glyma::qt {

class ChoiceBox;
class FormGroup;

/// The plain settings. Each is assigned when its control changes, and each control follows its setting. Main
/// thread.
class GeneralTab : public QWidget {
    Q_OBJECT

public:
    struct Services {
        UserPreferences& preferences;
        ProgramOperations& program;
        ShortcutRecorderServices recorder;
        QString version;
    };

    explicit GeneralTab(Services services, QWidget* parent = nullptr);

private:
    QWidget* makeStartGroup();
    QWidget* makePickerGroup();
    QWidget* makeCharacterInfoGroup();
    QWidget* makeRandomGroup();
    QWidget* makeVersionGroup();
    void refresh();
    void setStartAtLogin(bool value);
    void commitRows();

    Services services_;
    QCheckBox* startAtLogin_;
    QLabel* startProblem_;
    ChoiceBox* trigger_;
    ChoiceBox* icon_;
    ChoiceBox* skinTone_;
    QLineEdit* rows_;
    QCheckBox* fuzzy_;
    ShortcutRecorder* shortcut_;
    QCheckBox* randomIncludesEmoji_;
    Subscription shortcutSubscription_;
    Subscription preferencesSubscription_;
};

} // namespace glyma::qt
