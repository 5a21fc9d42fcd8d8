#include "platform/linux/xdg/desktop_entries.h"
#include "temporary_folder.h"

#include <gmock/gmock.h>

namespace glyma::xdg {
namespace {

namespace fs = std::filesystem;

class DesktopEntriesTest : public testing::Test {
protected:
    void add(const fs::path& place, const std::string& keys) {
        writeText(place, "# comment\n[Desktop Entry]\nType=Application\nName=X\nExec=x\n" + keys +
                             "\n[Desktop Action New]\nHidden=true\nStartupWMClass=Action\n");
    }

    TemporaryFolder temporary;
    fs::path own = temporary.path() / "own/applications";
    fs::path system = temporary.path() / "system/applications";
    DesktopEntries entries{{own.parent_path(), temporary.path() / "absent", system.parent_path()},
                           (temporary.path() / "bin").string()};
};

TEST_F(DesktopEntriesTest, AnIdIsInstalledWhenItsFirstEntryCanBeStarted) {
    add(system / "org.example.Plain.desktop", "");
    add(system / "kde/okular.desktop", "");
    add(system / "a/b-c/d.desktop", "");
    add(system / "hidden.desktop", "Hidden=true");
    add(system / "deleted.desktop", "");
    add(own / "deleted.desktop", "Hidden = true");
    add(system / "needs.desktop", "TryExec=needed");
    add(system / "needs-absolute.desktop", "TryExec=/bin/sh");
    writeText(system / "damaged.desktop", "Type=Application\n[Desktop Entr");
    writeText(system / "link.desktop", "[Desktop Entry]\nType=Link\nURL=x\n");
    fs::create_directories(system / "folder.desktop");
    EXPECT_TRUE(entries.isInstalled("org.example.Plain"));
    EXPECT_TRUE(entries.isInstalled("kde-okular"));
    EXPECT_TRUE(entries.isInstalled("a-b-c-d"));
    EXPECT_TRUE(entries.isInstalled("needs-absolute"));
    for (const auto* id : {"org.example.plain", "okular", "hidden", "deleted", "needs", "damaged", "link",
                           "folder", "", "../applications/org.example.Plain", "kde/okular"})
        EXPECT_FALSE(entries.isInstalled(id)) << id;
    writeText(temporary.path() / "bin/needed", "");
    fs::permissions(temporary.path() / "bin/needed", fs::perms::owner_all);
    EXPECT_TRUE(entries.isInstalled("needs"));
}

TEST_F(DesktopEntriesTest, WindowsAreIdentifiedByTheBestClueTheyGive) {
    add(system / "org.example.Editor.desktop", "");
    add(system / "debian-xterm.desktop", "StartupWMClass=XTerm");
    add(system / "org.kde.konsole.desktop", "StartupWMClass=konsole");
    add(system / "browser.desktop", "StartupWMClass=Browser");
    add(system / "browser-mail.desktop", "StartupWMClass=crx_mail");
    add(system / "aaa-handler.desktop", "StartupWMClass=Browser\nNoDisplay=true");
    add(system / "Kitty.desktop", "");
    add(system / "some-app.desktop", "");
    add(system / "emacsclient.desktop", "StartupWMClass=Emacs");
    add(system / "gone.desktop", "Hidden=true\nStartupWMClass=Gone");
    const struct {
        WindowIdentity window;
        std::optional<std::string> expected;
    } cases[] = {
        {{"org.example.Editor", "xterm", "XTerm"}, "org.example.Editor"},
        {{"org.example.Editor.desktop", "", ""}, "org.example.Editor"},
        {{"org.example.Absent", "xterm", "XTerm"}, "debian-xterm"},
        {{"", "my-name", "XTerm"}, "debian-xterm"},
        {{"", "x", "Konsole"}, "org.kde.konsole"},
        {{"", "crx_mail", "Browser"}, "browser-mail"},
        {{"", "navigator", "Browser"}, "browser"},
        {{"", "emacs", "kitty"}, "Kitty"},
        {{"", "x", "Some App"}, "some-app"},
        {{"", "some-app", "Unknown"}, "some-app"},
        {{"", "gone", "Gone"}, "gone"},
        {{"", "action", "Action"}, "action"},
        {{"", "instance", "UnKnown"}, "unknown"},
        {{"", "Instance", ""}, "instance"},
        {{"org.example.Absent", "", ""}, std::nullopt},
        {{"", "", ""}, std::nullopt},
    };
    for (const auto& [window, expected] : cases)
        EXPECT_EQ(entries.identifierFor(window), expected)
            << window.applicationId << '/' << window.wmClassInstance << '/' << window.wmClassName;
}

TEST_F(DesktopEntriesTest, ListsWhatHasWindowsAndStandsInMenus) {
    writeText(system / "org.example.Editor.desktop",
              "[Desktop Entry]\nType=Application\nName[de]=Schreiber\nName=Editor\nName[de_AT]=Tinterl\n"
              "Name[fr]=Editeur\nIcon=/usr/share/pixmaps/an\\sicon.png\n");
    add(system / "kde/okular.desktop", "Icon=okular");
    add(system / "vim.desktop", "Terminal=true");
    add(system / "handler.desktop", "NoDisplay=true");
    add(system / "gone.desktop", "");
    add(own / "gone.desktop", "Hidden=true");
    add(system / "needs.desktop", "TryExec=needed");
    writeText(system / "nameless.desktop", "[Desktop Entry]\nType=Application\n");
    writeText(system / "damaged.desktop", "[Desktop Entry\nType=Application\nName=\xFF\xFE");
    writeText(system / "binary.desktop", std::string("\0\x7f"
                                                     "ELF\0\n=\n[]\n",
                                                     12));
    const InstalledApplication okular{"kde-okular", "X", "okular"};
    const InstalledApplication nameless{"nameless", "nameless", ""};
    const auto icon = "/usr/share/pixmaps/an icon.png";
    const struct {
        std::string locale, name;
    } cases[] = {
        {"de_AT.UTF-8@euro", "Tinterl"}, {"de_CH.UTF-8", "Schreiber"}, {"C", "Editor"}, {"", "Editor"}};
    for (const auto& [locale, name] : cases) {
        const DesktopEntries listed({own.parent_path(), system.parent_path()}, "", locale);
        const InstalledApplication editor{"org.example.Editor", name, icon};
        EXPECT_THAT(listed.withWindows(), testing::UnorderedElementsAre(editor, okular, nameless)) << locale;
        EXPECT_EQ(listed.find("org.example.Editor"), editor);
        EXPECT_EQ(listed.find("gone"), std::nullopt);
    }
}

TEST_F(DesktopEntriesTest, AProgramIsCalledAsItsEntryCallsIt) {
    const auto addProgram = [&](const fs::path& place, const std::string& keys) {
        writeText(place, "[Desktop Entry]\nType=Application\n" + keys);
    };
    addProgram(system / "debian-xterm.desktop", "Name=XTerm\nExec=xterm\n");
    addProgram(system / "org.example.Editor.desktop",
               "Name=Editor\nExec=\"/opt/an \\\\\"odd\\\\\" place/editor\" --new %U\n");
    addProgram(system / "org.example.Editor-settings.desktop",
               "Name=Editor Settings\nExec=editor --preferences\n");
    addProgram(system / "browser.desktop", "Name=Browser\nExec=/usr/lib/browser/browser %u\n");
    addProgram(system / "browser-mail.desktop", "Name=Mail\nExec=browser --app=mail\n");
    addProgram(system / "vim.desktop", "Name=Vim\nExec=vim\nTerminal=true\n");
    addProgram(system / "empty.desktop", "Name=Nothing\nExec=\n");
    const auto name = [&](const char* program) {
        const auto found = entries.findByProgram(program);
        return found ? found->name : "";
    };
    EXPECT_EQ(name("xterm"), "XTerm");
    EXPECT_EQ(name("browser"), "Browser") << "one of several is called after it";
    EXPECT_EQ(name("editor"), "") << "either may be meant";
    EXPECT_EQ(name("vim"), "") << "the terminal is another program";
    EXPECT_EQ(name("absent"), "");
    fs::remove(system / "org.example.Editor-settings.desktop");
    EXPECT_EQ(DesktopEntries({system.parent_path()}, "").findByProgram("editor")->name, "Editor");
}

TEST(LanguagesOf, PrefersWhatFitsMore) {
    EXPECT_THAT(languagesOf("sr_RS.UTF-8@latin"),
                testing::ElementsAre("sr_RS@latin", "sr_RS", "sr@latin", "sr"));
    EXPECT_THAT(languagesOf("de"), testing::ElementsAre("de"));
    EXPECT_THAT(languagesOf(""), testing::IsEmpty());
}

TEST_F(DesktopEntriesTest, AnApplicationInstalledLaterIsFound) {
    add(system / "sub/old.desktop", "StartupWMClass=Old");
    fs::last_write_time(system / "sub", fs::file_time_type::clock::now() - std::chrono::hours(1));
    const WindowIdentity window{"", "new", "New"};
    EXPECT_EQ(entries.identifierFor(window), "new");
    add(system / "sub/org.example.New.desktop", "StartupWMClass=New");
    EXPECT_EQ(entries.identifierFor(window), "sub-org.example.New");
    add(own / "org.example.Other.desktop", "StartupWMClass=Other");
    EXPECT_EQ(entries.identifierFor({"", "other", "Other"}), "org.example.Other");
}

} // namespace
} // namespace glyma::xdg
