#pragma once

#include <QSocketNotifier>

#include <functional>

namespace glyma {

/// Lets the program end in an orderly way when it is told to by SIGTERM, SIGINT or SIGHUP (unless that one
/// was ignored, as nohup does). A second signal of the kind ends it at once. One instance; main thread.
class TerminationSignals {
public:
    /// \param onSignal  called on the main thread.
    explicit TerminationSignals(std::function<void()> onSignal);
    ~TerminationSignals();
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;

private:
    int pipe_[2];
    QSocketNotifier notifier_;
};

} // namespace glyma
