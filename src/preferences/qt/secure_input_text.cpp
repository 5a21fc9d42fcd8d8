#include "preferences/qt/secure_input_text.h"

#include <QCoreApplication>

namespace glyma::qt {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(glyma::qt::SecureInputText)

public:
    static QString holderName(const Holder& holder) {
        const auto name = QString::fromStdString(holder.name);
        const auto nameless = QStringLiteral("process %1").arg(holder.process);
        return name == nameless ? tr("process %1").arg(holder.process) : name;
    }

    static QString holder(const std::optional<Holder>& holder) {
        if (!holder)
            return tr("The system doesn't say which app holds it. Close any password prompt first. ");
        const auto name = holderName(*holder).toHtmlEscaped();
        switch (holder->kind) {
        case Holder::Kind::running:
            return tr("The system names <b>%1</b>. If it has a password field open or Secure Keyboard "
                      "enabled, "
                      "close it or switch it off. If nothing changes within a few seconds the name is a "
                      "stale "
                      "label, and only a session reset helps: ")
                .arg(name);
        case Holder::Kind::system:
            return tr("The system names <b>%1</b>, a system process; the screen locker in particular keeps "
                      "Secure Input after a lock or sleep. ")
                .arg(name);
        case Holder::Kind::stale:
            return tr("The system names a process that has already quit (pid %1), so the record is stale. ")
                .arg(holder->process);
        case Holder::Kind::attributedToSelf:
            return tr(
                "The system names <b>Glyma</b> itself, which never enables Secure Input. Glyma tried to "
                "release it and couldn't, so the record is a stale label. ");
        }
        return {};
    }

    static QString fix() {
        return tr(
            "Lock the screen (Super+L) and unlock with your password, not a fingerprint — a fingerprint "
            "skips the password field and won't reset it. If it persists or comes back, log out and back "
            "in.");
    }
};

} // namespace

QString holderParagraph(const std::optional<Holder>& holder) {
    return Texts::holder(holder) + Texts::fix();
}

} // namespace glyma::qt
