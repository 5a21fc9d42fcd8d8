#pragma once

#include "platform/open_pages.h"
#include "platform/scheduler.h"
#include "preferences/qt/exclusion_icons.h"
#include "preferences/tabs/exclusions.h"

#include <QDialog>

#include <expected>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSortFilterProxyModel;

namespace glyma::qt {

class CheckList;
class NamedRows;

/// Chooses one of the applications. Deletes itself when it is closed.
class ChooseApplicationSheet : public QDialog {
    Q_OBJECT

public:
    ChooseApplicationSheet(std::vector<InstalledApplication> applications,
                           std::function<void(const InstalledApplication&)> onAdd, QWidget* parent);

    void accept() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void filter(const QString& text);

    std::vector<InstalledApplication> applications_;
    std::function<void(const InstalledApplication&)> onAdd_;
    ApplicationIcons icons_;
    NamedRows* rows_;
    QSortFilterProxyModel* shown_;
    CheckList* list_;
    QPushButton* add_;
};

/// Where a sheet finds the hosts that it offers. Everything referred to outlives it.
struct OfferedHosts {
    OpenPages& pages;
    Scheduler& scheduler;
};

/// Takes a web site: one of those that are open in browsers, or a domain that is typed. Deletes itself when
/// it is closed.
class AddWebsiteSheet : public QDialog {
    Q_OBJECT

public:
    using Add = std::function<std::expected<std::string, DomainProblem>(const std::string& text)>;

    /// \param listed  those that are not offered again.
    /// \param add     closes the sheet unless it answers with a problem, which is shown.
    AddWebsiteSheet(const OfferedHosts& source, std::vector<ExcludedWebsite> listed, Add add,
                    QWidget* parent);

    void accept() override;

private:
    void offer(const std::vector<std::string>& hosts);
    void showFields();

    Add add_;
    QLabel* choiceCaption_;
    QComboBox* choice_;
    QLabel* fieldCaption_;
    QLineEdit* field_;
    QLabel* problem_;
    std::shared_ptr<int> alive_ = std::make_shared<int>();
};

} // namespace glyma::qt
