#include "platform/linux/dbus/single_instance.h"

#include <QtDBus/QDBusConnectionInterface>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusReply>

#include <chrono>
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace glyma::dbus {

namespace {

using namespace std::chrono_literals;

/// How long the running program may take to answer, and to end.
constexpr auto answerTime = 2s;
constexpr auto endTime = 5s;

std::expected<QDBusConnection, std::string> busWithRunningProgram() {
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return std::unexpected("there is no session bus, so that a running program cannot be found");
    if (!bus.interface()->isServiceRegistered(serviceName).value())
        return std::unexpected("Glyma is not running");
    return bus;
}

std::expected<void, std::string> call(const QDBusConnection& bus, const char* method) {
    auto message = QDBusMessage::createMethodCall(serviceName, objectPath, serviceName, method);
    message.setAutoStartService(false);
    const auto timeout = static_cast<int>(std::chrono::milliseconds(answerTime).count());
    const auto answer = bus.call(message, QDBus::Block, timeout);
    if (answer.type() == QDBusMessage::ErrorMessage)
        return std::unexpected("the running program does not answer: " + answer.errorMessage().toStdString());
    return {};
}

/// A descriptor of a process, negative when the system gives none.
int descriptorOf(uint process) {
    // glibc 2.36 declares a wrapper, but not for C++.
    return static_cast<int>(::syscall(SYS_pidfd_open, static_cast<pid_t>(process), 0));
}

/// \param process  a descriptor of it, which becomes readable at its end.
bool endsInTime(int process) {
    pollfd ended{.fd = process, .events = POLLIN, .revents = 0};
    return ::poll(&ended, 1, static_cast<int>(std::chrono::milliseconds(endTime).count())) == 1;
}

} // namespace

SingleInstance::SingleInstance(std::function<void()> onActivate, std::function<void()> onQuit)
    : bus_(QDBusConnection::sessionBus())
    , onActivate_(std::move(onActivate))
    , onQuit_(std::move(onQuit)) {}

SingleInstance::~SingleInstance() {
    if (!ownsName_)
        return;
    bus_.unregisterObject(objectPath);
    bus_.unregisterService(serviceName);
}

SingleInstance::Start SingleInstance::claim() {
    if (!bus_.isConnected())
        return Start::noBus;
    // The object comes first: who sees the name may call at once.
    bus_.registerVirtualObject(objectPath, this);
    const auto reply =
        bus_.interface()->registerService(serviceName, QDBusConnectionInterface::DontQueueService,
                                          QDBusConnectionInterface::DontAllowReplacement);
    if (!reply.isValid()) {
        bus_.unregisterObject(objectPath);
        return Start::noBus;
    }
    ownsName_ = reply.value() == QDBusConnectionInterface::ServiceRegistered;
    if (ownsName_)
        return Start::first;
    bus_.unregisterObject(objectPath);
    return Start::alreadyRunning;
}

QString SingleInstance::introspect(const QString& path) const {
    if (path != objectPath)
        return {};
    return QStringLiteral(
               "<interface name=\"%1\"><method name=\"Activate\"/><method name=\"Quit\"/></interface>")
        .arg(QString::fromLatin1(serviceName));
}

bool SingleInstance::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    if (message.path() != objectPath || message.interface() != serviceName || !message.arguments().isEmpty())
        return false;
    const auto& action = message.member() == "Activate" ? onActivate_ : onQuit_;
    if (message.member() != "Activate" && message.member() != "Quit")
        return false;
    connection.send(message.createReply());
    action();
    return true;
}

std::expected<void, std::string> activateRunning() {
    const auto bus = busWithRunningProgram();
    return bus ? call(*bus, "Activate") : std::unexpected(bus.error());
}

std::expected<void, std::string> quitRunning() {
    const auto bus = busWithRunningProgram();
    if (!bus)
        return std::unexpected(bus.error());
    const QDBusReply<uint> process = bus->interface()->servicePid(serviceName);
    const int descriptor = process.isValid() ? descriptorOf(process.value()) : -1;
    const auto told = call(*bus, "Quit");
    const bool ended = !told || descriptor < 0 || endsInTime(descriptor);
    if (descriptor >= 0)
        ::close(descriptor);
    if (!told)
        return told;
    if (!ended)
        return std::unexpected("the running program was told to end but has not ended within five seconds");
    return {};
}

} // namespace glyma::dbus
