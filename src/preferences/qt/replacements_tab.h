#pragma once

#include "platform/subscription.h"
#include "preferences/user_preferences.h"
#include "preferences/uuid.h"

#include <QWidget>

class QPushButton;

namespace glyma::qt {

class SnippetList;

/// The user's snippets: add, edit, remove. Main thread.
class ReplacementsTab : public QWidget {
    Q_OBJECT

public:
    explicit ReplacementsTab(UserPreferences& preferences, QWidget* parent = nullptr);

private:
    QWidget* makeButtons();
    void edit(const UserReplacement& snippet);
    void removeSelected();

    UserPreferences& preferences_;
    UuidMaker makeIdentifier_;
    SnippetList* list_;
    QPushButton* remove_ = nullptr;
    Subscription subscription_;
};

} // namespace glyma::qt
