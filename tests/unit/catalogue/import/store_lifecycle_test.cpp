#include "catalogue/catalogue_files.h"
#include "catalogue/user_data_files.h"
#include "failing_disk.h"
#include "import_fixture.h"

#include <nlohmann/json.hpp>

#include <chrono>
#include <utility>

namespace glyma {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

const auto long_ago = std::filesystem::file_time_type(std::chrono::file_clock::from_sys(
    std::chrono::sys_days{std::chrono::year{2025} / 3 / 9} + 8h + 7min + 6s));

constexpr auto backupName = "user-data-backup-2024-05-01T120000.json";

class StoreLifecycleTest : public ImportTest {
protected:
    /// A store of an earlier start that has learned something.
    void startOnce() {
        auto store = *lifecycle().makeContainer();
        need(store.insertCharacters(std::vector{makeUnicodeChar("a", "letter", {}, "Basic Latin")}));
        need(store.insertTermSelections(std::vector{makeTermSelection("term", "a", Timestamp{})}));
    }
    void setTime() const { std::filesystem::last_write_time(storeFile(), long_ago); }
};

TEST_F(StoreLifecycleTest, TheFingerprintNamesSchemaImporterAndFileSizes) {
    write(files.path() / "Blocks.txt", "12345");
    write(files.path() / "UnicodeData.txt", "1234567");
    write(files.path() / "annotations.json", "{}");
    files.remove("Unikemet.txt");
    EXPECT_EQ(
        lifecycle().computeDataFingerprint(),
        "schema:1.0.0|importer:2|Blocks.txt:5|UnicodeData.txt:7|annotations.json:2|emoji-popularity.json:2");
}

TEST_F(StoreLifecycleTest, TheFirstStartSetsNothingAside) {
    auto store = lifecycle().makeContainer();
    ASSERT_TRUE(store) << store.error();
    EXPECT_EQ(store->file(), storeFile());
    EXPECT_EQ(need(store->characterCount()), 0);
    EXPECT_EQ(settings.value("glymaDataFingerprint"), nlohmann::json(lifecycle().computeDataFingerprint()));
    for (const auto& name : filesInFolder())
        EXPECT_THAT(name, Not(HasSubstr("store.")));
}

TEST_F(StoreLifecycleTest, TheStoreStaysWhileTheReferenceDataDo) {
    startOnce();
    EXPECT_EQ(need(lifecycle().makeContainer()->characterCount()), 1);
    EXPECT_THAT(filesInFolder(), ElementsAre("Glyma.store"));
}

TEST_F(StoreLifecycleTest, OtherReferenceDataMakeRoomAndKeepWhatWasLearned) {
    startOnce();
    const auto taught = need(need(Store::open(storeFile())).userData(clock.now()));
    write(folder / "Glyma.search-image", "old");
    write(folder / "Glyma.search-image.a1B2c3", "unfinished");
    files.replace("emoji-popularity.json", "[\"😀\"]");
    lines.clear();
    EXPECT_EQ(need(lifecycle().makeContainer()->characterCount()), 0);
    EXPECT_THAT(filesInFolder(), UnorderedElementsAre("Glyma.store", backupName));
    EXPECT_EQ(decodeUserDataBackup(bytesOf(folder / backupName)), taught);
    EXPECT_THAT(lines.lines(),
                ElementsAre("Glyma: data fingerprint changed — deleting store for reimport",
                            "Glyma: exported user data backup — 0 used chars, 1 term selections, 0 blocks",
                            "Glyma: store files deleted at " + (folder / "Glyma").string()));
}

TEST_F(StoreLifecycleTest, AnEmptyStoreTakesNoBackupsPlace) {
    startOnce();
    for (const auto* popularity : {"[1]", "[1,2]"}) {
        files.replace("emoji-popularity.json", popularity);
        clock.advance(5s);
        ASSERT_TRUE(lifecycle().makeContainer());
    }
    EXPECT_THAT(filesInFolder(),
                UnorderedElementsAre("Glyma.store", "user-data-backup-2024-05-01T120005.json"));
}

TEST_F(StoreLifecycleTest, WithoutABackupTheOldStoreStaysInUseUntilOneCanBeWritten) {
    startOnce();
    std::filesystem::create_directory(folder / backupName); // nothing can be moved to its place
    files.replace("emoji-popularity.json", "[1]");
    for (auto starts = 0; starts < 2; ++starts) {
        lines.clear();
        const auto store = lifecycle().makeContainer();
        EXPECT_EQ(need(store->characterCount()), 1);
        EXPECT_EQ(need(store->termSelections()).size(), 1U);
        EXPECT_THAT(lines.lines(),
                    Contains(testing::AllOf(testing::StartsWith("Glyma: ⚠️ user data export failed — "),
                                            testing::EndsWith("; keeping previous backup (if any)"))));
        EXPECT_THAT(lines.lines(), Contains(HasSubstr("the old catalogue stays in use")));
    }
    EXPECT_THAT(filesInFolder(), UnorderedElementsAre("Glyma.store", backupName))
        << "nothing is left of the attempts";
    clock.advance(1s);
    EXPECT_EQ(need(lifecycle().makeContainer()->characterCount()), 0);
    EXPECT_THAT(filesInFolder(), Contains("user-data-backup-2024-05-01T120001.json"));
}

TEST_F(StoreLifecycleTest, AStoreThatCannotBeReadIsKeptWhenTheDataChange) {
    startOnce();
    write(storeFile(), std::string(5000, 'x'));
    setTime();
    files.replace("emoji-popularity.json", "[1]");
    EXPECT_EQ(need(lifecycle().makeContainer()->characterCount()), 0);
    EXPECT_THAT(filesInFolder(),
                UnorderedElementsAre("Glyma.store", "Glyma.store.damaged-2025-03-09T080706"));
}

TEST_F(StoreLifecycleTest, ABackupIsTheNewestAlsoWhenTheClockWasAhead) {
    startOnce();
    write(folder / "user-data-backup-2031-01-01T000000.json", "{}");
    const auto ahead = std::filesystem::file_time_type::clock::now() + 24h * 2000;
    std::filesystem::last_write_time(folder / "user-data-backup-2031-01-01T000000.json", ahead);
    files.replace("emoji-popularity.json", "[1]");
    ASSERT_TRUE(lifecycle().makeContainer());
    EXPECT_EQ(newestUserDataBackup(folder), folder / backupName);
}

class LegacyStore : public StoreLifecycleTest {
protected:
    LegacyStore() {
        startOnce();
        std::filesystem::rename(storeFile(), place / "default.store");
    }
};

TEST_F(LegacyStore, IsTakenOverWithTheCompanionsThatThereAre) {
    std::filesystem::remove_all(folder);
    // A write-ahead log with what was learned last, as a sudden end leaves it.
    SQLite::Database writer(place / "default.store", SQLite::OPEN_READWRITE);
    writer.exec("PRAGMA wal_autocheckpoint = 0");
    writer.exec("UPDATE TermSelection SET count = 5");
    for (const auto* suffix : {"", "-wal"})
        std::filesystem::copy_file(place.path() / (std::string("default.store") + suffix),
                                   place.path() / (std::string("copy") + suffix));
    writer.exec("PRAGMA wal_checkpoint(TRUNCATE)");
    for (const auto* suffix : {"", "-wal"})
        std::filesystem::rename(place.path() / (std::string("copy") + suffix),
                                place.path() / (std::string("default.store") + suffix));
    std::filesystem::remove(place / "default.store-shm");

    const auto store = lifecycle().makeContainer();
    ASSERT_TRUE(store) << store.error();
    EXPECT_EQ(need(store->termSelections()).at(0).count, 5);
    EXPECT_FALSE(std::filesystem::exists(place / "default.store"));
    EXPECT_FALSE(std::filesystem::exists(place / "default.store-wal"));
    EXPECT_THAT(lines.lines(), Contains("Glyma: migrated store from " + (place / "default.store").string() +
                                        " to " + storeFile().string()));
}

TEST_F(LegacyStore, IsLeftAloneWhereThereIsAStoreOrItIsNoneOfOurs) {
    const auto legacy = place / "default.store";
    { const auto present = need(Store::open(storeFile())); }
    ASSERT_TRUE(lifecycle().makeContainer());
    EXPECT_TRUE(std::filesystem::exists(legacy));
    std::filesystem::remove(storeFile());
    write(legacy, "SQLite format 3 of another program");
    EXPECT_EQ(need(lifecycle().makeContainer()->characterCount()), 0);
    EXPECT_TRUE(std::filesystem::exists(legacy));
}

/// Settings that look whether the old store is still in place when they are told the new fingerprint.
class WatchingSettings : public simulated::SimulatedSettings {
public:
    explicit WatchingSettings(std::filesystem::path file)
        : file_(std::move(file)) {}
    void set(std::string_view key, nlohmann::json value) override {
        storeWasInPlace = storeWasInPlace || std::filesystem::exists(file_);
        SimulatedSettings::set(key, std::move(value));
    }
    bool storeWasInPlace = false;

private:
    std::filesystem::path file_;
};

TEST_F(StoreLifecycleTest, TheFingerprintIsStoredOnceTheOldStoreIsGone) {
    startOnce();
    WatchingSettings watching(storeFile());
    StoreLifecycle other(folder, resources, watching, clock, log);
    ASSERT_TRUE(other.makeContainer());
    EXPECT_TRUE(watching.value("glymaDataFingerprint"));
    EXPECT_FALSE(watching.storeWasInPlace);
}

TEST_F(StoreLifecycleTest, AnUnusableStoreIsSetAsideAsItIs) {
    startOnce();
    const std::string junk(5000, 'x');
    write(storeFile(), junk);
    write(folder / "Glyma.store-wal", "log");
    setTime();
    EXPECT_EQ(need(lifecycle().makeContainer()->characterCount()), 0);
    const std::string name = "Glyma.store.damaged-2025-03-09T080706";
    ASSERT_THAT(filesInFolder(), UnorderedElementsAre("Glyma.store", name, name + "-wal"));
    EXPECT_EQ(bytesOf(folder / name), junk);
    EXPECT_EQ(bytesOf(folder / (name + "-wal")), "log");
    EXPECT_THAT(lines.lines(), Contains(HasSubstr("file is not a database")));

    write(storeFile(), junk);
    setTime();
    EXPECT_EQ(need(lifecycle().makeContainer()->characterCount()), 0);
    EXPECT_THAT(filesInFolder(), Contains(name + "-2"));
    EXPECT_EQ(bytesOf(folder / name), junk);
}

TEST_F(StoreLifecycleTest, DamageMetInUseIsMendedAtTheNextStart) {
    startOnce();
    write(Store::damageMark(storeFile()), "malformed");
    EXPECT_EQ(need(lifecycle().makeContainer()->characterCount()), 0);
    EXPECT_FALSE(std::filesystem::exists(Store::damageMark(storeFile())));
    EXPECT_EQ(filesInFolder().size(), 2U);
}

TEST_F(StoreLifecycleTest, APlaceThatCannotBeWrittenIsAnErrorWithARemedy) {
    write(folder / "file", "");
    const auto store = StoreLifecycle(folder / "file/Glyma", resources, settings, clock, log).makeContainer();
    ASSERT_FALSE(store);
    EXPECT_THAT(store.error(), HasSubstr("unable to open database file"));
    EXPECT_THAT(store.error(), HasSubstr("Check that the folder can be written to"));
}

TEST_F(StoreLifecycleTest, AFullDiskSetsNoGoodStoreAside) {
    FailingDisk disk;
    startOnce();
    disk.fillAfter(0);
    EXPECT_EQ(need(lifecycle().makeContainer()->characterCount()), 1);
    std::filesystem::remove(storeFile());
    const auto store = lifecycle().makeContainer();
    ASSERT_FALSE(store);
    EXPECT_THAT(store.error(), HasSubstr("full"));
    disk.empty();
    EXPECT_EQ(need(lifecycle().makeContainer()->characterCount()), 0);
    EXPECT_EQ(filesInFolder().size(), 1U);
}

TEST_F(StoreLifecycleTest, EverythingGoesAndNothingElse) {
    startOnce();
    for (const auto* name :
         {"Glyma.store-wal", "Glyma.store-shm", "Glyma.store-damage", "Glyma.store.damaged-2025-03-09T080706",
          "Glyma.store.damaged-2025-03-09T080706-wal", "Glyma.search-image", "Glyma.search-image.a1B2c3",
          "user-data-backup-2024-05-01T120000.json", "user-data-backup.json",
          "user-data-backup-2024-05-01T120000.json.a1B2c3"})
        write(folder / name, "");
    const std::vector<std::string> others{"Glyma.lock", "Glyma.storefront", "settings.json",
                                          "user-data-backup.txt", "my-user-data-backup.json"};
    for (const auto& name : others)
        write(folder / name, "");
    EXPECT_EQ(catalogueFiles(folder).size(), 11U);
    EXPECT_THAT(deleteCatalogue(folder), IsEmpty());
    EXPECT_THAT(filesInFolder(), testing::UnorderedElementsAreArray(others));
    EXPECT_THAT(deleteCatalogue(folder / "absent"), IsEmpty());
}

} // namespace
} // namespace glyma
