#include "platform/qt/qt_clipboard.h"

#include "platform/qt/clipboard_contents.h"

#include <QGuiApplication>

#include <memory>

namespace glyma::qt {

namespace {

/// By this clipboard managers (Klipper, CopyQ, and others after them) know what not to keep.
constexpr auto secretHintType = "x-kde-passwordManagerHint";
constexpr auto secretHint = "secret";

} // namespace

/// Notices when it is asked for.
class QtClipboard::TransientText : public QMimeData {
public:
    bool isTaken() const { return isTaken_; }

protected:
    QVariant retrieveData(const QString& type, QMetaType preferredType) const override {
        isTaken_ = isTaken_ || type.startsWith(QStringLiteral("text/plain"));
        return QMimeData::retrieveData(type, preferredType);
    }

private:
    mutable bool isTaken_ = false;
};

QtClipboard::QtClipboard(QClipboard::Mode mode)
    : mode_(mode)
    , reader_(mode == QClipboard::Clipboard ? "CLIPBOARD" : "PRIMARY") {}

QtClipboard::~QtClipboard() = default;

bool QtClipboard::owned() const {
    const auto* clipboard = QGuiApplication::clipboard();
    return mode_ == QClipboard::Clipboard ? clipboard->ownsClipboard() : clipboard->ownsSelection();
}

ClipboardSnapshot QtClipboard::snapshot() {
    if (!owned() && reader_.works() && QGuiApplication::platformName() == "xcb")
        return reader_.read();
    const auto* data = QGuiApplication::clipboard()->mimeData(mode_);
    return data ? contentsOf(*data) : ClipboardSnapshot{};
}

void QtClipboard::setTransientText(const std::string& text) {
    auto data = std::make_unique<TransientText>();
    data->setText(QString::fromStdString(text));
    data->setData(secretHintType, secretHint);
    transient_ = data.get();
    QGuiApplication::clipboard()->setMimeData(data.release(), mode_);
}

bool QtClipboard::isTransientTextTaken() const {
    return transient_ && transient_->isTaken();
}

void QtClipboard::restore(const ClipboardSnapshot& snapshot) {
    const bool replacedMeanwhile = !transient_ || !owned();
    transient_.clear();
    if (replacedMeanwhile)
        return;
    if (snapshot.empty())
        QGuiApplication::clipboard()->clear(mode_);
    else
        QGuiApplication::clipboard()->setMimeData(offered(snapshot).release(), mode_);
}

} // namespace glyma::qt
