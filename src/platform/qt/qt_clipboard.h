#pragma once

#include "platform/clipboard.h"
#include "platform/qt/selection_reader.h"

#include <QClipboard>
#include <QMimeData>
#include <QPointer>

namespace glyma::qt {

/// One of the two clipboards of an X11 desktop: the general one (CLIPBOARD), or the last selection (PRIMARY),
/// which terminals paste with Shift+Insert. An owner that hangs costs at most a quarter of a second.
class QtClipboard : public Clipboard {
public:
    explicit QtClipboard(QClipboard::Mode mode);
    ~QtClipboard() override;

    ClipboardSnapshot snapshot() override;
    void setTransientText(const std::string& text) override;
    bool isTransientTextTaken() const override;
    void restore(const ClipboardSnapshot& snapshot) override;

private:
    bool owned() const;

    QClipboard::Mode mode_;
    SelectionReader reader_;
    class TransientText;
    /// Null once somebody else has taken the clipboard.
    QPointer<TransientText> transient_;
};

} // namespace glyma::qt
