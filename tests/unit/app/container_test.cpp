#include "../adapters/xdg/temporary_folder.h"
#include "app/container.h"
#include "app/update_page.h"
#include "platform/linux/xdg/autostart_login_item.h"

#include <gmock/gmock.h>

#include <set>

namespace glyma {
namespace {

namespace fs = std::filesystem;
using xdg::TemporaryFolder;
using xdg::writeText;

std::set<std::string> below(const fs::path& folder) {
    std::set<std::string> names;
    for (const auto& each : fs::recursive_directory_iterator(folder))
        names.insert(each.path().lexically_relative(folder).string());
    return names;
}

TEST(Container, OnlyWhatTheProgramWroteOfItsUserIsRemoved) {
    TemporaryFolder temporary;
    const xdg::Folders folders{.config = temporary.path() / "config",
                               .data = temporary.path() / "data",
                               .resources = {},
                               .autostart = temporary.path() / "autostart",
                               .systemData = {}};
    const auto data = {"Glyma.store",
                       "Glyma.store-wal",
                       "Glyma.store-shm",
                       "Glyma.search-image",
                       "Glyma.store.damaged-20260101T000000",
                       "Glyma.store.replaced-20260101T000000-wal",
                       "user-data-backup-1714564800.json",
                       "user-data-backup.json"};
    const std::set<std::string> others{"Glyma.storeroom", "my Glyma.store", "user-data-backup-1.json.txt",
                                       "notes.txt", "backup.json"};
    for (const auto* name : data)
        writeText(folders.data / name, "x");
    for (const auto& name : others)
        writeText(folders.data / name, "x");
    fs::create_directories(folders.data / "user-data-backup-folder.json");
    for (const auto* name :
         {"settings.json", ".settings.json.new", "settings.json.damaged-1", "settings.json~"})
        writeText(folders.config / name, "{}");
    writeText(temporary.path() / "elsewhere.json", "{}");
    fs::create_symlink(temporary.path() / "elsewhere.json", folders.data / "user-data-backup-2.json");

    xdg::AutostartLoginItem loginItem(folders.autostart, "/usr/bin/glyma");
    ASSERT_TRUE(loginItem.enable());
    writeText(folders.autostart / "other.desktop", "[Desktop Entry]");

    EXPECT_THAT(removeContainer(folders, loginItem), ::testing::IsEmpty());
    auto left = others;
    left.insert("user-data-backup-folder.json");
    EXPECT_EQ(below(folders.data), left);
    EXPECT_EQ(below(folders.config), std::set<std::string>{"settings.json~"});
    EXPECT_TRUE(fs::exists(temporary.path() / "elsewhere.json")) << "the link goes, not what it leads to";
    EXPECT_EQ(below(folders.autostart), std::set<std::string>{"other.desktop"});
    EXPECT_THAT(removeContainer(folders, loginItem), ::testing::IsEmpty()) << "nothing is there any more";
}

TEST(UpdatePage, CarriesTheVersion) {
    EXPECT_EQ(updatePageAddress("https://quillaby.example", "0.1.0"),
              "https://quillaby.example/projects/glyma/update/?v=0.1.0");
    EXPECT_EQ(updatePageAddress("https://quillaby.example/", ""),
              "https://quillaby.example/projects/glyma/update/?v=0");
    EXPECT_EQ(updatePageAddress("http://localhost:8080", "1.0 beta&x"),
              "http://localhost:8080/projects/glyma/update/?v=1.0%20beta%26x");
}

} // namespace
} // namespace glyma
