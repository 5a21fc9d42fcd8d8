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

std::expected<QVariantList, std::string> call(const QDBusConnection& bus, const char* method,
                                              const QVariantList& arguments = {}) {
    auto message = QDBusMessage::createMethodCall(serviceName, objectPath, serviceName, method);
    message.setArguments(arguments);
    message.setAutoStartService(false);
    const auto timeout = static_cast<int>(std::chrono::milliseconds(answerTime).count());
    const auto answer = bus.call(message, QDBus::Block, timeout);
    if (answer.type() == QDBusMessage::ErrorMessage)
        return std::unexpected("the running program does not answer: " + answer.errorMessage().toStdString());
    return answer.arguments();
}

std::expected<void, std::string> tell(const QDBusConnection& bus, const char* method,
                                      const QVariantList& arguments = {}) {
    const auto answer = call(bus, method, arguments);
    return answer ? std::expected<void, std::string>() : std::unexpected(answer.error());
}

auto unknownMethod(const QDBusMessage& message) {
    return std::unexpected(
        std::pair(QDBusError::UnknownMethod,
                  QStringLiteral("There is no method %1(%2).").arg(message.member(), message.signature())));
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

SingleInstance::SingleInstance(Requests requests)
    : bus_(QDBusConnection::sessionBus())
    , requests_(std::move(requests)) {}

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
               "<interface name=\"%1\">"
               "<method name=\"Activate\"/>"
               "<method name=\"ShowPreferences\"><arg name=\"tab\" type=\"s\" direction=\"in\"/></method>"
               "<method name=\"Diagnose\"><arg name=\"json\" type=\"s\" direction=\"out\"/></method>"
               "<method name=\"ShowCharacterInfo\"><arg name=\"text\" type=\"s\" direction=\"in\"/></method>"
               "<method name=\"Quit\"/>"
               "</interface>"
               "<interface name=\"%2\">"
               "<method name=\"Activate\"><arg name=\"platform_data\" type=\"a{sv}\" "
               "direction=\"in\"/></method>"
               "<method name=\"Open\"><arg name=\"uris\" type=\"as\" direction=\"in\"/>"
               "<arg name=\"platform_data\" type=\"a{sv}\" direction=\"in\"/></method>"
               "<method name=\"ActivateAction\"><arg name=\"action_name\" type=\"s\" direction=\"in\"/>"
               "<arg name=\"parameter\" type=\"av\" direction=\"in\"/>"
               "<arg name=\"platform_data\" type=\"a{sv}\" direction=\"in\"/></method>"
               "</interface>")
        .arg(QString::fromLatin1(serviceName), QString::fromLatin1(applicationInterface));
}

SingleInstance::Job SingleInstance::jobFor(const QDBusMessage& message) const {
    const auto arguments = message.arguments();
    const auto method = message.member();
    if (method == "Activate" && message.signature().isEmpty())
        return requests_.activate;
    if (method == "Quit" && message.signature().isEmpty())
        return requests_.quit;
    if (method == "ShowPreferences" && message.signature() == "s")
        return [this, tab = arguments[0].toString().toStdString()] { requests_.showPreferences(tab); };
    if (method == "ShowCharacterInfo" && message.signature() == "s") {
        const auto text = arguments[0].toString().toStdString();
        if (text.empty())
            return std::unexpected(
                std::pair(QDBusError::InvalidArgs, QStringLiteral("No text was selected.")));
        return [this, text] { requests_.showCharacterInfo(text); };
    }
    return unknownMethod(message);
}

/// https://specifications.freedesktop.org/desktop-entry-spec: "D-Bus Activation".
SingleInstance::Job SingleInstance::jobOfApplication(const QDBusMessage& message) const {
    const auto method = message.member();
    if (method == "Activate" && message.signature() == "a{sv}")
        return requests_.activate;
    if (method == "Open" && message.signature() == "asa{sv}")
        return std::unexpected(std::pair(QDBusError::NotSupported, QStringLiteral("Glyma opens no files.")));
    if (method == "ActivateAction" && message.signature() == "sava{sv}")
        return jobOfAction(message.arguments().constFirst().toString());
    return unknownMethod(message);
}

/// The actions of the desktop entry.
SingleInstance::Job SingleInstance::jobOfAction(const QString& action) const {
    if (action == "preferences")
        return [this] { requests_.showPreferences({}); };
    if (action == "character-information")
        return requests_.showSelectionInfo;
    if (action == "quit")
        return requests_.quit;
    return std::unexpected(
        std::pair(QDBusError::InvalidArgs, QStringLiteral("There is no action \"%1\".").arg(action)));
}

bool SingleInstance::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    const bool isForApplication = message.interface() == applicationInterface;
    if (message.path() != objectPath || (!isForApplication && message.interface() != serviceName))
        return false;
    if (!isForApplication && message.member() == "Diagnose" && message.signature().isEmpty())
        return connection.send(message.createReply(QString::fromStdString(requests_.diagnose())));
    const auto job = isForApplication ? jobOfApplication(message) : jobFor(message);
    if (!job)
        return connection.send(message.createErrorReply(job.error().first, job.error().second));
    connection.send(message.createReply());
    (*job)();
    return true;
}

std::expected<void, std::string> activateRunning() {
    const auto bus = busWithRunningProgram();
    return bus ? tell(*bus, "Activate") : std::unexpected(bus.error());
}

std::expected<void, std::string> showRunningPreferences(const std::string& tab) {
    const auto bus = busWithRunningProgram();
    return bus ? tell(*bus, "ShowPreferences", {QString::fromStdString(tab)}) : std::unexpected(bus.error());
}

std::expected<void, std::string> showInfoInRunning(const std::string& text) {
    const auto bus = busWithRunningProgram();
    return bus ? tell(*bus, "ShowCharacterInfo", {QString::fromStdString(text)})
               : std::unexpected(bus.error());
}

std::optional<std::string> diagnosisOfRunning() {
    const auto bus = busWithRunningProgram();
    const auto answer = bus ? call(*bus, "Diagnose") : std::unexpected(bus.error());
    if (!answer || answer->isEmpty())
        return std::nullopt;
    return answer->constFirst().toString().toStdString();
}

std::expected<void, std::string> quitRunning() {
    const auto bus = busWithRunningProgram();
    if (!bus)
        return std::unexpected(bus.error());
    const QDBusReply<uint> process = bus->interface()->servicePid(serviceName);
    const int descriptor = process.isValid() ? descriptorOf(process.value()) : -1;
    const auto told = tell(*bus, "Quit");
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
