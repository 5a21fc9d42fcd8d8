#pragma once

#include "preferences/records.h"

#include <QDialog>

#include <functional>

class QLineEdit;
class QPlainTextEdit;

namespace glyma::qt {

/// Edits one snippet. Nothing is changed until it is saved. Deletes itself when it is closed.
class EditReplacementSheet : public QDialog {
    Q_OBJECT

public:
    /// \param onSave  told the finished snippet.
    EditReplacementSheet(UserReplacement draft, std::function<void(const UserReplacement&)> onSave,
                         QWidget* parent);

    void accept() override;

private:
    UserReplacement draft_;
    std::function<void(const UserReplacement&)> onSave_;
    QLineEdit* name_;
    QLineEdit* keywords_;
    QPlainTextEdit* text_;
};

} // namespace glyma::qt
