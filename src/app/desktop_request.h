#pragma once

#include <cstddef>

/// The interface between the program and its desktop module, which is loaded only when a command needs it:
/// plain C types, because each side has a copy of the core of its own.
extern "C" {

enum GlymaDesktopTask {
    glymaDesktopRun,           ///< the program itself, until it is told to end
    glymaDesktopQuit,          ///< tell the running program to end and wait until it has
    glymaDesktopDiagnose,      ///< look at what the desktop offers
    glymaDesktopPreferences,   ///< show the preferences of the running program, or of one that starts for it
    glymaDesktopSelection,     ///< read what was selected last
    glymaDesktopShowInfo,      ///< have the running program show what the characters of a text are
    glymaDesktopKeepClipboard, ///< what a program that has ended had on the clipboards
};

struct GlymaDesktopRequest {
    /// The program's; a module of another version refuses.
    const char* version;
    GlymaDesktopTask task;
    int argc;
    char** argv;
    /// For glymaDesktopPreferences: the page; empty: the one shown last.
    const char* tab;
    /// For glymaDesktopDiagnose: told each finding; `state` is a Diagnosis::State. Texts hold during the
    /// call.
    void (*report)(void* context, const char* name, int state, const char* why, const char* mend);
    void* context;
    /// For glymaDesktopSelection: told the text, UTF-8, which holds during the call; not called when nothing
    /// is selected.
    void (*receive)(void* context, const char* text, std::size_t size);
    /// For glymaDesktopShowInfo: UTF-8, ended by a null character.
    const char* text;
};

/// \return the exit status of the program.
using GlymaDesktopMain = int (*)(const GlymaDesktopRequest* request);
}

namespace glyma {
inline constexpr const char* desktopEntryPoint = "glymaDesktopMain";
}
