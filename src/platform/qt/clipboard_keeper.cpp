#include "platform/qt/clipboard_keeper.h"

#include "platform/qt/clipboard_contents.h"

#include <QClipboard>
#include <QDataStream>
#include <QEventLoop>
#include <QFile>
#include <QGuiApplication>
#include <QTimer>
#include <xcb/xcb.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>

namespace glyma::qt {

namespace {

using namespace std::chrono_literals;

constexpr auto takeOverTime = 200ms;

struct Selection {
    QClipboard::Mode mode;
    std::string_view name;
};
constexpr std::array selections{Selection{QClipboard::Clipboard, "CLIPBOARD"},
                                Selection{QClipboard::Selection, "PRIMARY"}};

struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};

xcb_connection_t* connection() {
    auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

xcb_window_t ownerOf(std::string_view selection) {
    auto* const server = connection();
    if (!server)
        return XCB_WINDOW_NONE;
    const auto atomCookie =
        xcb_intern_atom(server, 0, static_cast<std::uint16_t>(selection.size()), selection.data());
    const std::unique_ptr<xcb_intern_atom_reply_t, FreeReply> atom(
        xcb_intern_atom_reply(server, atomCookie, nullptr));
    if (!atom)
        return XCB_WINDOW_NONE;
    const std::unique_ptr<xcb_get_selection_owner_reply_t, FreeReply> owner(
        xcb_get_selection_owner_reply(server, xcb_get_selection_owner(server, atom->atom), nullptr));
    return owner ? owner->owner : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
}

bool owns(QClipboard::Mode mode) {
    const auto* const clipboard = QGuiApplication::clipboard();
    return mode == QClipboard::Clipboard ? clipboard->ownsClipboard() : clipboard->ownsSelection();
}

bool ownsAny() {
    return owns(QClipboard::Clipboard) || owns(QClipboard::Selection);
}

/// For each selection the window that owns it, if that is ours, and what it holds.
QByteArray contents() {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    for (const auto& [mode, name] : selections) {
        const auto* const data = owns(mode) ? QGuiApplication::clipboard()->mimeData(mode) : nullptr;
        const auto snapshot = data ? contentsOf(*data) : ClipboardSnapshot();
        stream << quint32{ownerOf(name)} << static_cast<quint32>(snapshot.size());
        for (const auto& [type, value] : snapshot)
            stream << QByteArray::fromStdString(type) << QByteArray::fromStdString(value);
    }
    return bytes;
}

/// An anonymous file with these bytes, open for reading from the start; negative when there is none.
int fileWith(const QByteArray& bytes) {
    const int descriptor = ::memfd_create("glyma-clipboard", MFD_CLOEXEC);
    QFile file;
    const bool isWritten = descriptor >= 0 && file.open(descriptor, QIODevice::WriteOnly) &&
                           file.write(bytes) == bytes.size() && file.flush() &&
                           ::lseek(descriptor, 0, SEEK_SET) == 0;
    if (isWritten || descriptor < 0)
        return descriptor;
    ::close(descriptor);
    return -1;
}

bool start(const std::filesystem::path& program, std::string argument, int input) {
    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawnattr_init(&attributes);
    ::posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
    for (const int output : {STDOUT_FILENO, STDERR_FILENO})
        ::posix_spawn_file_actions_addopen(&actions, output, "/dev/null", O_WRONLY, 0);
    // It stays when the terminal goes from which the program was started.
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
    std::string path = program.string();
    std::array<char*, 3> arguments{path.data(), argument.data(), nullptr};
    const bool isStarted =
        ::posix_spawn(nullptr, path.c_str(), &actions, &attributes, arguments.data(), environ) == 0;
    ::posix_spawnattr_destroy(&attributes);
    ::posix_spawn_file_actions_destroy(&actions);
    return isStarted;
}

} // namespace

void leaveClipboards(const std::filesystem::path& program, const std::string& argument) {
    // Qt itself hands them over to a clipboard manager (QXcbClipboard).
    if (!ownsAny() || ownerOf("CLIPBOARD_MANAGER") != XCB_WINDOW_NONE)
        return;
    const int input = fileWith(contents());
    if (input < 0)
        return;
    if (start(program, argument, input)) {
        QEventLoop loop;
        QObject::connect(QGuiApplication::clipboard(), &QClipboard::changed, &loop, [&loop] {
            if (!ownsAny())
                loop.quit();
        });
        QTimer::singleShot(takeOverTime, &loop, &QEventLoop::quit);
        loop.exec();
    }
    ::close(input);
}

int keepClipboards() {
    QFile file;
    if (!file.open(STDIN_FILENO, QIODevice::ReadOnly))
        return EXIT_FAILURE;
    QDataStream stream(&file);
    for (const auto& [mode, name] : selections) {
        quint32 owner = 0;
        quint32 count = 0;
        stream >> owner >> count;
        ClipboardSnapshot snapshot;
        for (quint32 index = 0; index < count && stream.status() == QDataStream::Ok; ++index) {
            QByteArray type;
            QByteArray value;
            stream >> type >> value;
            snapshot.emplace_back(type.toStdString(), value.toStdString());
        }
        // What has been copied meanwhile stays.
        if (stream.status() == QDataStream::Ok && !snapshot.empty() && ownerOf(name) == owner)
            QGuiApplication::clipboard()->setMimeData(offered(snapshot).release(), mode);
    }
    if (!ownsAny())
        return EXIT_FAILURE;
    QObject::connect(QGuiApplication::clipboard(), &QClipboard::changed, qGuiApp, [] {
        if (!ownsAny())
            QGuiApplication::quit();
    });
    return QGuiApplication::exec();
}

} // namespace glyma::qt
