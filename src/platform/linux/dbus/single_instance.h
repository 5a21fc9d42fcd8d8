#pragma once

#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusVirtualObject>

#include <expected>
#include <functional>
#include <string>

namespace glyma::dbus {

/// The program's name on the session bus, and the path and interface of the object behind it.
inline constexpr const char* serviceName = "net.quillaby.Glyma";
inline constexpr const char* objectPath = "/net/quillaby/Glyma";

/// The running program on the session bus: other starts of the program find it there and tell it what to do.
/// Needs the application object; main thread.
class SingleInstance : public QDBusVirtualObject {
public:
    enum class Start {
        first,          ///< the name is ours now
        alreadyRunning, ///< another process has it
        noBus,          ///< nobody can tell
    };

    /// \param onActivate  somebody has started the program again.
    /// \param onQuit      somebody wants it to end. Both are called on the main thread, after the caller was
    /// answered.
    SingleInstance(std::function<void()> onActivate, std::function<void()> onQuit);
    /// Gives the name back.
    ~SingleInstance() override;

    Start claim();

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    QDBusConnection bus_;
    std::function<void()> onActivate_;
    std::function<void()> onQuit_;
    bool ownsName_ = false;
};

/// Tells the running program that it was started again. The error says why it could not be told.
std::expected<void, std::string> activateRunning();

/// Tells the running program to end and waits until it has. The error says why it has not.
std::expected<void, std::string> quitRunning();

} // namespace glyma::dbus
