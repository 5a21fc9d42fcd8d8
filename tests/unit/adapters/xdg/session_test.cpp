#include "platform/linux/xdg/autostart_login_item.h"
#include "platform/linux/xdg/desktop_entry.h"
#include "platform/linux/xdg/folders.h"
#include "temporary_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>

namespace glyma::xdg {
namespace {

namespace fs = std::filesystem;

Environment environmentOf(std::map<std::string, std::string> values) {
    return [values = std::move(values)](const char* name) -> std::optional<std::string> {
        const auto place = values.find(name);
        return place != values.end() ? std::optional(place->second) : std::nullopt;
    };
}

TEST(Folders, FollowTheBaseDirectoryRules) {
    const auto plain = findFolders(environmentOf({{"HOME", "/home/u"}}), "/opt/x/bin/glyma");
    EXPECT_EQ(plain.config, "/home/u/.config/glyma");
    EXPECT_EQ(plain.data, "/home/u/.local/share/Glyma");
    EXPECT_EQ(plain.autostart, "/home/u/.config/autostart");
    EXPECT_EQ(plain.systemData,
              (std::vector<fs::path>{"/home/u/.local/share", "/usr/local/share", "/usr/share"}));

    const auto set = findFolders(environmentOf({{"HOME", "/home/u"},
                                                {"XDG_CONFIG_HOME", "/c"},
                                                {"XDG_DATA_HOME", "relative"},
                                                {"XDG_DATA_DIRS", "/a::b:/c"},
                                                {"GLYMA_DATA_DIR", "/override"},
                                                {"GLYMA_RESOURCE_DIR", "/r"}}),
                                 "/opt/x/bin/glyma");
    EXPECT_EQ(set.config, "/c/glyma");
    EXPECT_EQ(set.data, "/override");
    EXPECT_EQ(set.resources, "/r");
    EXPECT_EQ(set.systemData, (std::vector<fs::path>{"/home/u/.local/share", "/a", "/c"}));

    const auto homeless =
        findFolders(environmentOf({{"XDG_CONFIG_HOME", ""}, {"GLYMA_CONFIG_DIR", "here"}}), "");
    EXPECT_EQ(homeless.config, fs::current_path() / "here");
    EXPECT_TRUE(homeless.data.is_absolute());
}

TEST(Folders, AnInstalledProgramUsesTheResourcesBesideIt) {
    TemporaryFolder prefix;
    const auto executable = prefix.path() / "bin/glyma";
    const auto environment = environmentOf({{"HOME", "/home/u"}});
    EXPECT_NE(findFolders(environment, executable).resources, prefix.path() / "share/glyma");
    fs::create_directories(prefix.path() / "share/glyma");
    EXPECT_EQ(findFolders(environment, executable).resources, prefix.path() / "share/glyma");
}

TEST(AutostartLoginItem, WhatItEnablesTheSessionStartsAndTheUserCanSwitchOff) {
    TemporaryFolder temporary;
    const auto folder = temporary.path() / "config/autostart";
    AutostartLoginItem item(folder, "/opt/my app/glyma");
    EXPECT_FALSE(item.isEnabled());
    EXPECT_TRUE(item.disable().has_value()) << "nothing to remove is no failure";
    ASSERT_TRUE(item.enable().has_value());
    EXPECT_TRUE(item.isEnabled());

    const auto file = folder / "glyma.desktop";
    const auto text = readText(file);
    EXPECT_NE(text.find("\nExec=\"/opt/my app/glyma\"\n"), std::string::npos);
    EXPECT_EQ(std::system(("desktop-file-validate '" + file.string() + "'").c_str()), 0);
    const auto written = fs::last_write_time(file);
    ASSERT_TRUE(item.enable().has_value());
    EXPECT_EQ(fs::last_write_time(file), written) << "an entry that is right is left alone";
    for (const auto* line :
         {"Hidden=true\n", "X-GNOME-Autostart-enabled=false\n", "Exec=\n", "Type=Link\n"}) {
        writeText(file, text + line);
        EXPECT_FALSE(item.isEnabled()) << line;
    }
    writeText(file, "damaged");
    EXPECT_FALSE(item.isEnabled());
    ASSERT_TRUE(item.enable().has_value());
    EXPECT_TRUE(item.isEnabled());
    ASSERT_TRUE(item.disable().has_value());
    EXPECT_FALSE(fs::exists(file));

    writeText(folder / "x", "");
    AutostartLoginItem blocked(folder / "x", "/bin/glyma");
    for (const auto& refused : {blocked.enable(), AutostartLoginItem(folder, "").enable()}) {
        ASSERT_FALSE(refused.has_value());
        EXPECT_TRUE(refused.error().english().starts_with("Glyma cannot be started at login: "))
            << refused.error().english();
    }
    EXPECT_NE(blocked.enable().error().english().find((folder / "x").string()), std::string::npos);
    EXPECT_FALSE(blocked.isEnabled());
    // A folder in the place of the entry, which cannot be removed.
    writeText(file / "x", "");
    const auto kept = item.disable();
    ASSERT_FALSE(kept.has_value());
    EXPECT_TRUE(kept.error().english().starts_with("Glyma is still started at login: " + file.string()))
        << kept.error().english();
}

TEST(DesktopEntry, ExecQuotingSurvivesBothLayers) {
    // The reader undoes the layer of string values; what is left must be the argument quoted for Exec.
    const auto entry = parseDesktopEntry("[Desktop Entry]\nExec=" + quotedForExec("/a b/$c`\"\\%") + "\n");
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->exec, R"("/a b/\$c\`\"\\%%")");
}

} // namespace
} // namespace glyma::xdg
