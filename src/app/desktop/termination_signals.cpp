#include "app/desktop/termination_signals.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

namespace glyma {

namespace {

constexpr std::array handledSignals{SIGTERM, SIGINT, SIGHUP};

/// The pipe's end that the signal handler writes to.
std::atomic<int> signalPipe = -1;

void writeToPipe(int) {
    const int savedError = errno;
    const char byte = 0;
    [[maybe_unused]] const auto written = ::write(signalPipe.load(), &byte, 1);
    errno = savedError;
}

bool isIgnored(int signal) {
    struct sigaction action {};
    return ::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

int openedPipe(int (&ends)[2]) {
    if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
        ends[0] = ends[1] = -1;
    return ends[0];
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void()> onSignal)
    : notifier_(openedPipe(pipe_), QSocketNotifier::Read) {
    signalPipe = pipe_[1];
    QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this, act = std::move(onSignal)] {
        char byte = 0;
        if (::read(pipe_[0], &byte, 1) == 1)
            act();
    });
    struct sigaction action {};
    action.sa_handler = writeToPipe;
    action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
    for (const int signal : handledSignals)
        if (signal != SIGHUP || !isIgnored(signal))
            ::sigaction(signal, &action, nullptr);
}

TerminationSignals::~TerminationSignals() {
    for (const int signal : handledSignals)
        if (!isIgnored(signal))
            ::signal(signal, SIG_DFL);
    signalPipe = -1;
    notifier_.setEnabled(false);
    ::close(pipe_[0]);
    ::close(pipe_[1]);
}

} // namespace glyma
