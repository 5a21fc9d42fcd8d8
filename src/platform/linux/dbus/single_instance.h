#pragma once

#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusError>
#include <QtDBus/QDBusVirtualObject>

#include <expected>
#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace glyma::dbus {

/// The program's name on the session bus, and the path and interface of the object behind it.
inline constexpr const char* serviceName = "net.quillaby.Glyma";
inline constexpr const char* objectPath = "/net/quillaby/Glyma";
/// What desktops call for an application that is started through the bus.
inline constexpr const char* applicationInterface = "org.freedesktop.Application";

/// The running program on the session bus: other starts of the program find it there and tell it what to do.
/// Needs the application object; main thread.
class SingleInstance : public QDBusVirtualObject {
public:
    enum class Start {
        first,          ///< the name is ours now
        alreadyRunning, ///< another process has it
        noBus,          ///< nobody can tell
    };

    /// What others may ask of the program. Called on the main thread; all but `diagnose` after the caller was
    /// answered.
    struct Requests {
        /// It has been started again.
        std::function<void()> activate;
        /// \param tab  which page; as the caller wrote it.
        std::function<void(const std::string& tab)> showPreferences;
        /// What are the characters of this text?
        std::function<void(const std::string& text)> showCharacterInfo;
        /// And of what the user has selected?
        std::function<void()> showSelectionInfo;
        std::function<void()> quit;
        /// \return what works and what does not, a JSON array.
        std::function<std::string()> diagnose;
    };
    explicit SingleInstance(Requests requests);
    /// Gives the name back.
    ~SingleInstance() override;

    Start claim();

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    /// What a method is to do, or the error that answers it: its name and its text.
    using Job = std::expected<std::function<void()>, std::pair<QDBusError::ErrorType, QString>>;
    Job jobFor(const QDBusMessage& message) const;
    Job jobOfApplication(const QDBusMessage& message) const;
    Job jobOfAction(const QString& action) const;

    QDBusConnection bus_;
    Requests requests_;
    bool ownsName_ = false;
};

/// Tells the running program that it was started again. The error says why it could not be told.
std::expected<void, std::string> activateRunning();

/// Tells the running program to show its preferences.
std::expected<void, std::string> showRunningPreferences(const std::string& tab);

/// Has the running program show what the characters of a text are. The error says why it does not.
std::expected<void, std::string> showInfoInRunning(const std::string& text);

/// What the running program says of itself; absent when none runs, or it does not answer.
std::optional<std::string> diagnosisOfRunning();

/// Tells the running program to end and waits until it has. The error says why it has not.
std::expected<void, std::string> quitRunning();

} // namespace glyma::dbus
