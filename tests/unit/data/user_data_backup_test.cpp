#include "data/json_date.h"
#include "data/user_data_backup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <chrono>

namespace glyma {
namespace {

using namespace std::chrono_literals;
using nlohmann::json;
using testing::HasSubstr;

UserDataBackup sample() {
    UserDataBackup backup;
    backup.exportDate = jsonReferenceDate + 1500ms;
    backup.charUsage = {{"\U0001F600", {7, jsonReferenceDate + 2s}}, {"/", {1, std::nullopt}}};
    backup.termSelections = {{"a/b\n\"", "\u2764\uFE0F", 3, jsonReferenceDate - 250ms}};
    backup.blockStates = {{"Arrows", UserDataBackup::AllEnabled{}},
                          {"Cyrillic", UserDataBackup::AllDisabled{}},
                          {"Dingbats", UserDataBackup::Partial{{"\u2764\uFE0F", "/"}}}};
    return backup;
}

TEST(UserDataBackup, IsOneLineOfTheWrittenForm) {
    EXPECT_EQ(
        encode(sample()),
        R"({"blockStates":{"Arrows":{"allEnabled":{}},"Cyrillic":{"allDisabled":{}},)"
        R"("Dingbats":{"partial":{"enabledChars":["❤️","\/"]}}},)"
        R"("charUsage":{"\/":{"count":1},"😀":{"count":7,"lastUsed":2.0}},"exportDate":1.5,)"
        R"("termSelections":[{"char":"❤️","count":3,"lastUsed":-0.25,"term":"a\/b\n\""}],"version":1})");
    UserDataBackup empty;
    empty.exportDate = jsonReferenceDate;
    EXPECT_EQ(encode(empty),
              R"({"blockStates":{},"charUsage":{},"exportDate":0.0,"termSelections":[],"version":1})");
}

TEST(UserDataBackup, ComesBackAsItWas) {
    EXPECT_EQ(decodeUserDataBackup(encode(sample())), sample());
    auto broken = sample();
    broken.termSelections[0].term = "x\xFFy";
    EXPECT_EQ(decodeUserDataBackup(encode(broken))->termSelections[0].term, "x\uFFFDy");
}

TEST(UserDataBackup, TheFileNameIsInUtcWhateverTheTimeZone) {
    const auto time = std::chrono::sys_days(std::chrono::year(2025) / 3 / 14) + 9h + 30min + 15s + 999ms;
    for (const auto* zone : {"UTC", "America/Los_Angeles"}) {
        ::setenv("TZ", zone, 1);
        ::tzset();
        EXPECT_EQ(backupFileName(time), "user-data-backup-2025-03-14T093015.json");
    }
    ::unsetenv("TZ");
}

class BackupReading : public testing::Test {
protected:
    /// What becomes of a sound document when a value, named by a JSON pointer, is replaced.
    std::expected<UserDataBackup, BackupRejection> with(const char* place, const json& value) const {
        auto changed = document;
        changed[json::json_pointer(place)] = value;
        return decodeUserDataBackup(changed.dump());
    }
    BackupRejection rejection(const char* place, const char* value) const {
        const auto decoded = with(place, json::parse(value));
        EXPECT_FALSE(decoded) << place << ' ' << value;
        return decoded ? BackupRejection{} : decoded.error();
    }

    json document = json::parse(encode(sample()));
};

TEST_F(BackupReading, EveryMemberIsRequiredButTheLastUseOfACharacter) {
    for (const auto* place : {"/version", "/exportDate", "/charUsage", "/termSelections", "/blockStates",
                              "/charUsage/\U0001F600/count", "/termSelections/0/term",
                              "/termSelections/0/char", "/termSelections/0/count",
                              "/termSelections/0/lastUsed", "/blockStates/Dingbats/partial/enabledChars"}) {
        const json::json_pointer pointer(place);
        auto changed = document;
        changed[pointer.parent_pointer()].erase(pointer.back());
        const auto decoded = decodeUserDataBackup(changed.dump());
        ASSERT_FALSE(decoded) << place;
        EXPECT_EQ("/" + decoded.error().path, place);
        EXPECT_EQ(decoded.error().message, "is missing");
    }
    document["charUsage"]["\U0001F600"].erase("lastUsed");
    EXPECT_EQ(decodeUserDataBackup(document.dump())->charUsage.at("\U0001F600").lastUsed, std::nullopt);
}

TEST_F(BackupReading, AWrongTypeRejectsTheWholeAndNamesThePlace) {
    struct Case {
        const char* place;
        std::vector<const char*> wrong;
    };
    const std::vector<const char*> noIntegers{"true", "1.5", "\"1\"", "null", "9223372036854775808"};
    for (const auto& [place, wrong] :
         {Case{"/version", noIntegers}, Case{"/exportDate", {"true", "\"1\"", "null"}},
          Case{"/charUsage", {"[]", "null"}}, Case{"/charUsage/x", {"1"}},
          Case{"/charUsage/\U0001F600/count", noIntegers},
          Case{"/charUsage/\U0001F600/lastUsed", {"\"1\"", "false"}}, Case{"/termSelections", {"{}"}},
          Case{"/termSelections/0", {"[]"}}, Case{"/termSelections/0/term", {"1"}},
          Case{"/termSelections/0/char", {"null"}}, Case{"/termSelections/0/count", noIntegers},
          Case{"/termSelections/0/lastUsed", {"null"}}, Case{"/blockStates", {"[]"}},
          Case{"/blockStates/Arrows", {"\"allEnabled\"", "[]"}},
          Case{"/blockStates/Arrows/allEnabled", {"null", "true", "[]"}},
          Case{"/blockStates/Cyrillic/allDisabled", {"null", "1"}},
          Case{"/blockStates/Dingbats/partial", {"[]"}},
          Case{"/blockStates/Dingbats/partial/enabledChars", {"\"x\"", "{}"}},
          Case{"/blockStates/Dingbats/partial/enabledChars/1", {"1"}}})
        for (const auto* value : wrong)
            EXPECT_EQ("/" + rejection(place, value).path, place) << value;
}

TEST_F(BackupReading, ABlockIsInExactlyOneState) {
    for (const auto* state : {"{}", R"({"allEnabled":{},"allDisabled":{}})", R"({"someEnabled":{}})"}) {
        const auto why = rejection("/blockStates/Arrows", state);
        EXPECT_EQ(why.message, "Invalid number of keys found, expected one.");
        EXPECT_EQ(why.path, "blockStates/Arrows");
    }
    const auto beside = with("/blockStates/Arrows", {{"allDisabled", {{"x", 1}}}, {"other", nullptr}});
    ASSERT_TRUE(beside) << beside.error().text();
    EXPECT_EQ(beside->blockStates.at("Arrows"), UserDataBackup::BlockState(UserDataBackup::AllDisabled{}));
    EXPECT_EQ(with("/blockStates/Arrows", {{"partial", {{"enabledChars", json::array()}}}})
                  ->blockStates.at("Arrows"),
              UserDataBackup::BlockState(UserDataBackup::Partial{}));
}

TEST_F(BackupReading, WholeNumbersAreDatesAndUnknownMembersAreIgnored) {
    EXPECT_EQ(with("/exportDate", 0)->exportDate, jsonReferenceDate);
    EXPECT_EQ(with("/termSelections/0/lastUsed", 5)->termSelections[0].lastUsed, jsonReferenceDate + 5s);
    EXPECT_EQ(with("/more", {1, 2}), sample());
    EXPECT_EQ(with("/version", 2)->version, 2) << "what to do with it is for the restore to decide";
}

TEST_F(BackupReading, WhatIsNoJsonIsRejectedWithoutQuotingIt) {
    const auto bytes = encode(sample());
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        const auto decoded = decodeUserDataBackup(std::string_view(bytes).substr(0, length));
        ASSERT_FALSE(decoded) << length;
        EXPECT_THAT(decoded.error().text(), HasSubstr("not JSON in UTF-8, from byte "));
    }
    EXPECT_FALSE(decodeUserDataBackup(bytes + "x"));
    EXPECT_FALSE(decodeUserDataBackup(R"({"version":1,"secret )"
                                      "\xC3\x28"
                                      R"(":1})"));
    EXPECT_FALSE(decodeUserDataBackup("[1e999]"));
    EXPECT_FALSE(decodeUserDataBackup(std::string(1'000'000, '[')));
}

} // namespace
} // namespace glyma
