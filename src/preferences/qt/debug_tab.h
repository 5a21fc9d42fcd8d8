#pragma once

#include "catalogue/unicode_data_manager.h"
#include "platform/subscription.h"

#include <QWidget>

class QLabel;
class QListWidget;
class QPushButton;

namespace glyma::qt {

/// What the two random entries of the picker inserted. Main thread.
class DebugTab : public QWidget {
    Q_OBJECT

public:
    explicit DebugTab(UnicodeDataManager& catalogue, QWidget* parent = nullptr);

private:
    struct History {
        bool isEmoji;
        QLabel* count;
        QPushButton* clear;
        QListWidget* list;
    };

    QWidget* makeSection(History& history, const QString& heading);
    void fill(const History& history);

    UnicodeDataManager& catalogue_;
    History emoji_{.isEmoji = true, .count = nullptr, .clear = nullptr, .list = nullptr};
    History unicode_{.isEmoji = false, .count = nullptr, .clear = nullptr, .list = nullptr};
    Subscription subscription_;
};

/// The code points of a text: "U+1F44D U+1F3FD".
QString codePoints(const std::string& text);

} // namespace glyma::qt
