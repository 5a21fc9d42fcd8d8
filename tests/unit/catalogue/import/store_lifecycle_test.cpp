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

class StoreLifecycleTest : public ImportTest {
protected:
    std::vector<std::string> filesInFolder() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
            names.push_back(entry.path().filename().string());
        return names;
    }
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
    setTime();
    files.replace("emoji-popularity.json", "[\"😀\"]");
    EXPECT_EQ(need(lifecycle().makeContainer()->characterCount()), 0);
    ASSERT_THAT(filesInFolder(),
                UnorderedElementsAre("Glyma.store", "Glyma.store.replaced-2025-03-09T080706"));
    EXPECT_EQ(
        need(need(Store::open(folder / "Glyma.store.replaced-2025-03-09T080706")).termSelections()).size(),
        1U);
    EXPECT_EQ(need(lifecycle().makeContainer()->characterCount()), 0);
    EXPECT_EQ(filesInFolder().size(), 2U);
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
    StoreLifecycle other(folder.path(), resources, watching, log);
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
    const auto store = StoreLifecycle(folder / "file/Glyma", resources, settings, log).makeContainer();
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

TEST_F(StoreLifecycleTest, DeletingTakesTheCompanionsAlong) {
    startOnce();
    for (const auto* name : {"Glyma.store-wal", "Glyma.store-shm", "Glyma.store-damage", "other"})
        write(folder / name, "");
    lifecycle().deleteStoreFiles();
    EXPECT_THAT(filesInFolder(), ElementsAre("other"));
    lifecycle().deleteStoreFiles();
}

} // namespace
} // namespace glyma
