#pragma once

#include "platform/subscription.h"
#include "preferences/debug_config.h"
#include "preferences/program_operations.h"

#include <QWidget>

#include <vector>

class QCheckBox;

namespace glyma::qt {

class FormGroup;

/// The debug switches, and the way to leave nothing behind. Main thread.
class AdvancedTab : public QWidget {
    Q_OBJECT

public:
    AdvancedTab(DebugConfig& debug, ProgramOperations& program, QWidget* parent = nullptr);

private:
    struct Switch {
        QCheckBox* toggle;
        bool (DebugConfig::*value)() const;
    };

    QWidget* makeLogs();
    QWidget* makeDebug();
    QWidget* makeData();
    void add(FormGroup& group, const QString& label, const QString& caption,
             bool (DebugConfig::*value)() const, void (DebugConfig::*assign)(bool));
    void refresh();
    void askToDelete();

    DebugConfig& debug_;
    ProgramOperations& program_;
    std::vector<Switch> switches_;
    Subscription subscription_;
};

} // namespace glyma::qt
