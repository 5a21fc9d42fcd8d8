#include "failing_disk.h"
#include "store_fixture.h"

#include <fmt/format.h>

#include <chrono>
#include <functional>
#include <unistd.h>

namespace glyma {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

std::vector<UnicodeChar> manyCharacters(int count, std::size_t keywordLength = 8) {
    const std::vector<std::string> keywords{std::string(keywordLength, 'k')};
    std::vector<UnicodeChar> characters;
    for (int index = 0; index < count; ++index)
        characters.push_back(makeUnicodeChar(fmt::format("c{}", index), fmt::format("name {}", index),
                                             index % 3 == 0 ? keywords : std::vector<std::string>{},
                                             "Block"));
    return characters;
}

void makeStore(const std::filesystem::path& file) {
    auto store = need(Store::open(file));
    need(store.insertCharacters(manyCharacters(2000)));
}

void overwrite(const std::filesystem::path& file, std::streamoff offset, const std::string& bytes) {
    std::fstream stream(file, std::ios::binary | std::ios::in | std::ios::out);
    stream.seekp(offset);
    stream << bytes;
}

/// Overwrites the pages that hold rows with this text; nothing but reading those rows meets them.
void garbleRows(const std::filesystem::path& file, std::string_view text) {
    constexpr std::size_t pageSize = 4096;
    constexpr char tableLeaf = 0x0D;
    const auto bytes = bytesOf(file);
    for (std::size_t page = pageSize; page + pageSize <= bytes.size(); page += pageSize)
        if (bytes[page] == tableLeaf && bytes.substr(page, pageSize).find(text) != std::string::npos)
            overwrite(file, static_cast<std::streamoff>(page), std::string(pageSize, '\xEE'));
}

void change(const std::filesystem::path& file, const char* sql) {
    SQLite::Database database(file.string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    database.exec(sql);
}

struct Fault {
    const char* name;
    std::function<void(const std::filesystem::path&)> make;
    const char* reason;
};

class UnusableFile : public testing::TestWithParam<Fault> {};

TEST_P(UnusableFile, IsRefusedWithAReasonAndLeftAsItIs) {
    const TemporaryFolder folder;
    const auto file = folder / "Glyma.store";
    GetParam().make(file);
    const auto before = std::filesystem::is_regular_file(file) ? bytesOf(file) : "";
    const auto store = Store::open(file);
    ASSERT_FALSE(store);
    EXPECT_THAT(store.error(), HasSubstr(GetParam().reason));
    EXPECT_THAT(store.error(), HasSubstr(file.string()));
    EXPECT_TRUE(Store::isUnusable(file));
    EXPECT_TRUE(std::filesystem::exists(file));
    EXPECT_EQ(std::filesystem::is_regular_file(file) ? bytesOf(file) : "", before);
}

INSTANTIATE_TEST_SUITE_P(
    Store, UnusableFile,
    testing::Values(
        Fault{"Text", [](auto& file) { write(file, "this is no database, however long the text may be\n"); },
              "file is not a database"},
        Fault{"ShorterThanAHeader", [](auto& file) { write(file, std::string("SQLite format 3\0", 16)); },
              "file is not a database"},
        Fault{"Folder", [](auto& file) { std::filesystem::create_directory(file); }, "not a regular file"},
        Fault{"Truncated",
              [](auto& file) {
                  makeStore(file);
                  std::filesystem::resize_file(file, std::filesystem::file_size(file) / 2);
              },
              "malformed"},
        Fault{"GarbledTableOfContents",
              [](auto& file) {
                  makeStore(file);
                  overwrite(file, 100, std::string(3000, '\x5A'));
              },
              "malformed"},
        Fault{"OtherVersion",
              [](auto& file) { makeStore(file), change(file, "PRAGMA user_version = 20103"); },
              "schema version 2.1.3, not 1.0.0"},
        Fault{"OtherProgram", [](auto& file) { change(file, "CREATE TABLE message (id)"); },
              "a database of another program"},
        Fault{"MissingTable", [](auto& file) { makeStore(file), change(file, "DROP TABLE TermSelection"); },
              "no such table"},
        Fault{"MissingColumn",
              [](auto& file) {
                  makeStore(file), change(file, "ALTER TABLE UnicodeBlock RENAME sampleChars TO x");
              },
              "no such column"}),
    [](const auto& fault) { return fault.param.name; });

TEST(StoreFailure, AnEmptyFileOrDatabaseBecomesAStore) {
    const TemporaryFolder folder;
    write(folder / "file", "");
    change(folder / "database", "PRAGMA journal_mode = WAL");
    EXPECT_EQ(need(need(Store::open(folder / "file")).characterCount()), 0);
    EXPECT_EQ(need(need(Store::open(folder / "database")).characterCount()), 0);
}

TEST(StoreFailure, OnlyTheUserCanReadAStore) {
    const TemporaryFolder folder;
    auto store = need(Store::open(folder / "Glyma.store"));
    need(store.insertTermSelections(std::vector{makeTermSelection("typed", "c", Timestamp{})}));
    using std::filesystem::perms;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
        EXPECT_EQ(entry.status().permissions() & (perms::group_all | perms::others_all), perms::none)
            << entry.path();
}

TEST(StoreFailure, APlaceThatCannotBeWrittenIsNoFaultOfTheFile) {
    const TemporaryFolder folder;
    const auto nowhere = folder / "no such folder/Glyma.store";
    const auto absent = Store::open(nowhere);
    ASSERT_FALSE(absent);
    EXPECT_THAT(absent.error(), HasSubstr("unable to open database file"));
    EXPECT_FALSE(Store::isUnusable(nowhere));

    if (geteuid() == 0)
        GTEST_SKIP() << "root may write everywhere";
    const auto file = folder / "Glyma.store";
    makeStore(file);
    const auto before = bytesOf(file);
    std::filesystem::permissions(folder.path(),
                                 std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
    EXPECT_FALSE(Store::open(file));
    EXPECT_FALSE(Store::isUnusable(file));
    EXPECT_EQ(bytesOf(file), before);
}

TEST(StoreFailure, DamageMetWhileReadingIsAnErrorAndRemembered) {
    const TemporaryFolder folder;
    const auto file = folder / "Glyma.store";
    makeStore(file);
    garbleRows(file, "name 15");
    {
        const auto store = need(Store::open(file));
        auto failures = 0;
        failures += store.visitKeyworded([](const CharacterRow&) {}) ? 0 : 1;
        failures += store.visitWithoutKeywords([](const CharacterRow&) {}) ? 0 : 1;
        EXPECT_GT(failures, 0);
    }
    const auto again = Store::open(file);
    ASSERT_FALSE(again);
    EXPECT_THAT(again.error(), HasSubstr("damaged"));
    EXPECT_TRUE(Store::isUnusable(file));
}

/// Runs the work on a disk that is full after 0, 1, 2 ... writes until it once succeeds. After each failure
/// the file must open again and `check` hold.
void failAtEveryWrite(const std::function<void(const std::filesystem::path&)>& prepare,
                      const std::function<Store::Result<void>(Store&, FailingDisk&)>& work,
                      const std::function<void(const Store&)>& check) {
    FailingDisk disk;
    auto failures = 0;
    for (long writes = 0;; writes += 1 + writes / 8) {
        const TemporaryFolder folder;
        const auto file = folder / "Glyma.store";
        prepare(file);
        auto store = need(Store::open(file));
        disk.fillAfter(writes);
        const auto result = work(store, disk);
        const auto failed = disk.hasFailed();
        disk.empty();
        if (!failed) {
            EXPECT_TRUE(result) << result.error();
            break;
        }
        if (!result) {
            ++failures;
            EXPECT_THAT(result.error(), HasSubstr("database or disk is full"));
            check(store);
            store = need(Store::open(file));
            check(store);
        }
        ASSERT_FALSE(std::filesystem::exists(Store::damageMark(file)));
    }
    EXPECT_GT(failures, 0);
}

TEST(StoreFailure, AFullDiskLeavesNothingOfAFailedFilling) {
    failAtEveryWrite([](const auto&) {},
                     [](Store& store, FailingDisk&) { return store.insertCharacters(manyCharacters(1500)); },
                     [](const Store& store) { EXPECT_EQ(need(store.characterCount()), 0); });
}

TEST(StoreFailure, AFullDiskEndsATransactionAsAWhole) {
    failAtEveryWrite(
        [](const auto&) {},
        [](Store& store, FailingDisk& disk) -> Store::Result<void> {
            auto transaction = store.begin();
            if (!transaction)
                return std::unexpected(transaction.error());
            // More than SQLite keeps in memory: it writes before the commit.
            const auto first = store.insertCharacters(manyCharacters(1500, 1500));
            // SQLite has ended the transaction: what follows must not be written on its own.
            if (!first)
                disk.empty();
            const auto second = store.insertBlocks(std::vector<UnicodeBlock>{{"Block", 1, 2, 3, "s", true}});
            const auto end = transaction->commit();
            for (const auto& result : {first, second, end})
                if (!result)
                    return result;
            return {};
        },
        [](const Store& store) {
            EXPECT_EQ(need(store.characterCount()), 0);
            EXPECT_THAT(need(store.blocks()), IsEmpty());
        });
}

TEST(StoreFailure, AFullDiskKeepsWhatWasLearnedBefore) {
    const auto use = [](std::int64_t count) {
        auto selection = makeTermSelection("term", "c1", Timestamp{});
        selection.count = count;
        auto character = makeUnicodeChar("c1", "", {}, "");
        character.usageCount = count;
        return [=](Store& store) { return store.recordUse(character, selection); };
    };
    failAtEveryWrite(
        [&](const auto& file) {
            makeStore(file);
            auto store = need(Store::open(file));
            need(use(1)(store));
        },
        [&](Store& store, FailingDisk&) { return use(2)(store); },
        [](const Store& store) {
            EXPECT_EQ(need(store.character("c1"))->usageCount, 1);
            EXPECT_EQ(need(store.termSelection("term|c1"))->count, 1);
        });
}

} // namespace
} // namespace glyma
