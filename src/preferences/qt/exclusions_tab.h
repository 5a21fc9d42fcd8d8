#pragma once

#include "platform/open_pages.h"
#include "platform/scheduler.h"
#include "preferences/qt/exclusion_icons.h"
#include "preferences/user_preferences.h"

#include <QWidget>

#include <string>

class QPushButton;

namespace glyma::qt {

class CheckList;
class NamedRows;

/// Everything referred to outlives the tab.
struct ExclusionsTabServices {
    UserPreferences& preferences;
    const InstalledApplications& applications;
    OpenPages& pages;
    Scheduler& scheduler;
};

/// The applications and web sites in which the picker does not open. Main thread.
class ExclusionsTab : public QWidget {
    Q_OBJECT

public:
    explicit ExclusionsTab(const ExclusionsTabServices& services, QWidget* parent = nullptr);

private:
    struct Section {
        NamedRows* rows = nullptr;
        CheckList* list = nullptr;
        QPushButton* add = nullptr;
        QPushButton* remove = nullptr;
    };

    Section makeAppSection();
    Section makeWebsiteSection();
    QWidget* makeButtons(Section& section, const QString& addMeaning, const QString& removeMeaning);
    void refresh();
    void addApp();
    void addWebsite();
    void removeSelected(const Section& section, void (*remove)(UserPreferences&, std::string_view));
    static void selectOnly(const Section& section, const std::string& id);

    ExclusionsTabServices services_;
    ApplicationIcons icons_;
    Section apps_;
    Section websites_;
    Subscription subscription_;
};

} // namespace glyma::qt
