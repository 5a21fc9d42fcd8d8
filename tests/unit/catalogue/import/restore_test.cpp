#include "catalogue/user_data_files.h"
#include "failing_disk.h"
#include "import_fixture.h"

#include <chrono>

namespace glyma {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

/// A backup with two uses of one character.
UserDataBackup sample() {
    UserDataBackup backup;
    backup.charUsage = {{"😀", {2, std::nullopt}}};
    backup.termSelections = {{"grin", "😀", 2, Timestamp()}};
    backup.blockStates = {{"Emoticons", UserDataBackup::Partial{{"😀"}}},
                          {"Dingbats", UserDataBackup::AllDisabled{}}};
    return backup;
}

class Restore : public ImportTest {
protected:
    void addBackup(const std::string& name, const std::string& bytes, std::chrono::hours age = 0h) const {
        write(folder / name, bytes);
        std::filesystem::last_write_time(folder / name, std::filesystem::file_time_type::clock::now() - age);
    }
    Store importAll() {
        auto store = need(Store::open(storeFile()));
        EXPECT_EQ(pipeline().run(store), (ImportSummary{17, 9}));
        return store;
    }
};

TEST_F(Restore, BringsBackUsageTermsAndBlocksAfterTheImport) {
    addBackup("user-data-backup-2024-05-01T120000.json", encode(sample()));
    const auto store = importAll();
    EXPECT_EQ(phases.back(), "Restoring user data");
    EXPECT_EQ(need(store.character("😀"))->usageCount, 2);
    EXPECT_EQ(need(store.termSelections()).size(), 1U);
    EXPECT_FALSE(need(store.character("😂"))->isEnabled);
    EXPECT_FALSE(need(store.character("❤\uFE0F"))->isEnabled);
    EXPECT_FALSE(need(store.enabledBlockNames()).contains("Dingbats"));
    EXPECT_TRUE(need(store.character("⌘"))->isEnabled) << "what the backup does not name starts as always";
    EXPECT_THAT(lines.lines(),
                Contains("Glyma: restored user data — 1 char usages, 1 term selections, 2 block states"));
    EXPECT_THAT(filesInFolder(), Contains("user-data-backup-2024-05-01T120000.json"));
}

TEST_F(Restore, TakesTheLastChangedWhateverTheNamesSay) {
    auto old = sample();
    old.charUsage["😀"].count = 1;
    addBackup("user-data-backup-2030-01-01T000000.json", encode(old), 2h);
    addBackup("user-data-backup.json", encode(sample()), 1h);
    addBackup("user-data-backup-2031-01-01T000000.json.a1B2c3", encode(old));
    addBackup("other.json", encode(old));
    std::filesystem::create_directory(folder / "user-data-backup-folder.json");
    EXPECT_EQ(need(importAll().character("😀"))->usageCount, 2);
}

TEST_F(Restore, ABackupThatCannotBeUsedChangesNothingAndStays) {
    const auto sound = encode(sample());
    auto otherVersion = sample();
    otherVersion.version = 2;
    auto wrongType = sound;
    wrongType.replace(wrongType.find("\"count\":2"), 9, "\"count\":2.5");
    const std::string name = "user-data-backup-2024-05-01T120000.json";
    for (const auto& [bytes, why] : std::vector<std::pair<std::string, std::string>>{
             {sound.substr(0, sound.size() / 2), "not JSON"},
             {encode(otherVersion), "version 2, not 1"},
             {wrongType, "expected an integer"},
             {"\xFF\xFE" + sound, "not JSON"},
             {"", "not JSON"},
             {std::string(100 * 1024 * 1024, '['), "larger than"}}) {
        std::filesystem::remove(storeFile());
        lines.clear();
        addBackup(name, bytes);
        const auto store = importAll();
        EXPECT_THAT(lines.lines(),
                    Contains(testing::AllOf(StartsWith("Glyma: ⚠️ user data restore failed — "),
                                            HasSubstr(name), HasSubstr(why))));
        EXPECT_THAT(need(store.usedCharacters()), IsEmpty());
        EXPECT_THAT(need(store.termSelections()), IsEmpty());
        EXPECT_TRUE(need(store.character("😂"))->isEnabled);
        EXPECT_EQ(std::filesystem::file_size(folder / name), bytes.size());
    }
}

TEST_F(Restore, AFullDiskLeavesEverythingRestoredOrNothingImported) {
    const auto bytes = encode(sample());
    FailingDisk disk;
    auto failures = 0;
    for (long writes = 0;; ++writes) {
        std::filesystem::remove_all(folder);
        std::filesystem::create_directory(folder);
        addBackup("user-data-backup-2024-05-01T120000.json", bytes);
        auto store = need(Store::open(storeFile()));
        disk.fillAfter(writes);
        const auto result = pipeline().run(store);
        const auto failed = disk.hasFailed();
        disk.empty();
        const auto taught = need(store.userData({}));
        EXPECT_EQ(taught.charUsage.size(), result ? 1U : 0U) << writes;
        EXPECT_EQ(need(store.characterCount()), result ? 17 : 0) << writes;
        if (!failed)
            break;
        if (result)
            continue; // only the tidying up after the commit met the full disk
        ++failures;
        EXPECT_THAT(result.error(), HasSubstr("full"));
        store = importAll();
        EXPECT_EQ(need(store.userData({})).charUsage.size(), 1U) << "the next start makes up for it";
    }
    EXPECT_GT(failures, 0);
}

TEST_F(Restore, RebuildingKeepsWhatTheStoreKnowsNotWhatABackupSays) {
    auto store = importAll();
    need(store.setUsage("😀", 7, std::nullopt));
    need(store.setCharacterEnabled("😂", false));
    const auto taught = need(store.userData({}));
    addBackup("user-data-backup-2024-05-01T120000.json", encode(sample()));
    files.replace("UnicodeData.txt",
                  "1F600;GRINNING FACE;So\n1F602;FACE WITH TEARS OF JOY;So\n2318;PLACE;So\n");
    phases.clear();
    const auto rebuilt = pipeline().rebuild(store);
    ASSERT_TRUE(rebuilt) << rebuilt.error();
    EXPECT_EQ(phases.size(), 9U);
    EXPECT_EQ(need(store.characterCount()), rebuilt->characters);
    EXPECT_EQ(need(store.character("A")), std::nullopt);
    EXPECT_EQ(need(store.userData({})).charUsage, taught.charUsage);
    EXPECT_FALSE(need(store.character("😂"))->isEnabled);

    files.remove("annotations.json");
    EXPECT_FALSE(pipeline().rebuild(store));
    EXPECT_EQ(need(store.characterCount()), rebuilt->characters) << "what cannot be rebuilt stays";
}

} // namespace
} // namespace glyma
