#pragma once

#include "picker/qt/theme.h"
#include "platform/subscription.h"

#include <QDBusMessage>
#include <QObject>

#include <optional>

namespace glyma::qt {

/// Knows whether the picker is to be light or dark, and its accent. In this order: the environment variable
/// GLYMA_THEME ("light", "dark"), the desktop portal's `org.freedesktop.appearance`, the application palette.
/// The portal is asked without waiting; `changed` tells when its answer, or a later choice of the user, makes
/// a difference. Main thread.
class Appearance : public QObject {
    Q_OBJECT

public:
    Appearance();

    const Theme& theme() const { return theme_; }

    Signal<> changed;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private Q_SLOTS:
    /// \param message  carries the namespace, the key and the value.
    void settingChanged(const QDBusMessage& message);

private:
    void askPortal();
    void apply(const QString& key, const QVariant& value);
    void rebuild();
    bool isDark() const;

    std::optional<bool> portalDark_;
    QColor portalAccent_;
    Theme theme_;
};

} // namespace glyma::qt
