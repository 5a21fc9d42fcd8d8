#pragma once

namespace glyma {

/// What the preferences ask of the program around them. Main thread.
class ProgramOperations {
public:
    virtual ~ProgramOperations() = default;

    /// Shows the page that tells of newer versions in the user's browser.
    virtual void openUpdatePage() = 0;
    /// Ends the program and removes the catalogue's store with its companions, the backups and the settings,
    /// and nothing else. Asks nobody: that is the caller's part. Returns at once.
    virtual void deleteContainerAndQuit() = 0;
    virtual void quit() = 0;
};

} // namespace glyma
