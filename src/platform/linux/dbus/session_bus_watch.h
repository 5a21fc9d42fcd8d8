#pragma once

#include <QObject>

#include <functional>

namespace glyma::dbus {

/// Notices the end of the session bus, which ends with the session. Needs the application object; main
/// thread.
class SessionBusWatch : public QObject {
    Q_OBJECT

public:
    /// \param lost  called once, from the event loop; never where there was no bus.
    explicit SessionBusWatch(std::function<void()> lost);

private Q_SLOTS:
    void disconnected();

private:
    std::function<void()> lost_;
};

} // namespace glyma::dbus
