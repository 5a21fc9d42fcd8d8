#include "translation/message_text.h"

#include <QCoreApplication>

namespace glyma {

QString textOf(const Message& message) {
    if (message.isEmpty())
        return {};
    const auto pattern = QCoreApplication::translate("glyma::Message", message.pattern().c_str());
    return QString::fromStdString(message.filled(pattern.toStdString()));
}

std::string translated(const Message& message) {
    return textOf(message).toStdString();
}

} // namespace glyma
