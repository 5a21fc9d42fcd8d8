#pragma once

#include "preferences/records.h"

#include <QListView>

#include <memory>
#include <set>
#include <string>
#include <vector>

namespace glyma::qt {

/// The user's snippets in their order, each with its name, text and keywords. Any number can be selected.
class SnippetList : public QListView {
    Q_OBJECT

public:
    explicit SnippetList(QWidget* parent = nullptr);
    ~SnippetList() override;

    /// Keeps the selection of those that are still there.
    void setSnippets(const std::vector<UserReplacement>& snippets);
    std::set<std::string> selectedIdentifiers() const;
    /// Selects this one alone and scrolls to it.
    void selectOnly(const std::string& identifier);

Q_SIGNALS:
    void editRequested(const glyma::UserReplacement& snippet);
    void removeRequested();
    void selectionMoved();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    class Model;

    void select(const std::set<std::string>& identifiers);

    std::unique_ptr<Model> model_;
};

} // namespace glyma::qt
