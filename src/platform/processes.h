#pragma once

#include <string>
#include <sys/types.h>

namespace glyma {

struct ProcessFacts {
    bool exists = false;
    /// It runs as somebody else.
    bool isForeign = false;
    /// It locks the session's screen.
    bool isLocker = false;
    /// What people call it; empty when nobody knows.
    std::string name;
    bool operator==(const ProcessFacts&) const = default;
};

/// Looks processes up. Any thread.
class Processes {
public:
    virtual ~Processes() = default;
    virtual ProcessFacts facts(pid_t process) const = 0;
    /// The program's own.
    virtual pid_t own() const = 0;
};

} // namespace glyma
