#include "platform/qt/clipboard_contents.h"

#include <optional>

namespace glyma::qt {

ClipboardSnapshot contentsOf(const QMimeData& data) {
    ClipboardSnapshot result;
    for (const auto& format : data.formats())
        if (const auto bytes = data.data(format); !bytes.isNull())
            result.emplace_back(format.toStdString(), bytes.toStdString());
    return result;
}

std::unique_ptr<QMimeData> offered(const ClipboardSnapshot& snapshot) {
    // Qt serves the X targets for text only from a text of its own, whatever bytes stand under their names
    // (QXcbMime::mimeDataForAtom).
    auto data = std::make_unique<QMimeData>();
    std::optional<QString> text;
    for (const auto& [type, bytes] : snapshot) {
        if (type == "UTF8_STRING")
            text = QString::fromUtf8(QByteArray::fromStdString(bytes));
        else if (type == "STRING" && !text)
            text = QString::fromLatin1(QByteArray::fromStdString(bytes));
        else if (type != "TEXT" && type != "COMPOUND_TEXT")
            data->setData(QString::fromStdString(type), QByteArray::fromStdString(bytes));
    }
    if (text && !data->hasFormat(QStringLiteral("text/plain")))
        data->setText(*text);
    return data;
}

} // namespace glyma::qt
