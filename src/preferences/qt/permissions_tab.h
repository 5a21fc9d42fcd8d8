#pragma once

#include "permissions/permissions.h"
#include "platform/subscription.h"

#include <QTimer>
#include <QWidget>

class QLabel;
class QPushButton;

namespace glyma::qt {

class SymbolView;

/// What the desktop lets the program do, and what keeps it from hearing keys. Follows the state while it is
/// shown. Main thread.
class PermissionsTab : public QWidget {
    Q_OBJECT

public:
    explicit PermissionsTab(Permissions& permissions, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    /// The row of one permission.
    struct Row {
        SymbolView* symbol;
        QLabel* status;
        QLabel* finding;
        QLabel* remedy;
        QPushButton* obtain;
    };

    QWidget* makeSecureInputGroup();
    QWidget* makePermissionGroup(Row& row, const QString& name, const QString& purpose,
                                 const QString& obtain);
    void refresh();
    static void show(const Row& row, const Permission& permission);

    Permissions& permissions_;
    QWidget* secureInput_;
    QLabel* holder_;
    Row inputMonitoring_;
    Row accessibility_;
    QTimer timer_;
    Subscription subscription_;
};

} // namespace glyma::qt
