#include "preferences/typed_fields.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

namespace glyma {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(VisibleRows, AreANumberFromThreeToFifteenAndNothingElse) {
    for (const auto& [text, rows] :
         std::map<std::string, std::int64_t>{{"3", 3}, {"15", 15}, {"+5", 5}, {"007", 7}})
        EXPECT_EQ(parseVisibleRows(text), rows) << text;
    for (const std::string text : {"", "2", "16", "20", "-5", "+-5", "-+5", "++5", "+", "5.0", "5 ", " 5",
                                   "5x", "0x5", "٥", "99999999999999999999", "1e1"})
        EXPECT_EQ(parseVisibleRows(text), std::nullopt) << text;
    EXPECT_EQ(parseVisibleRows(std::string_view("5\0", 2)), std::nullopt);
}

TEST(Keywords, AreSplitAtCommasTrimmedAndNeverEmpty) {
    EXPECT_THAT(splitKeywords(" smile , ,grin"), ElementsAre("smile", "grin"));
    EXPECT_THAT(splitKeywords(" , ,\t,"), IsEmpty());
    EXPECT_THAT(splitKeywords(""), IsEmpty());
    EXPECT_THAT(splitKeywords("two words,\u3000ひらがな\u00A0,🙂,"),
                ElementsAre("two words", "ひらがな", "🙂"));
    EXPECT_EQ(joinKeywords(splitKeywords("a,b ,c")), "a, b, c");
}

TEST(Snippets, AreReplacedInPlaceAppendedAndRemovedByIdentifier) {
    const UserReplacement one{"1", "one", {}, "x"};
    const UserReplacement two{"2", "two", {}, "x"};
    auto changed = one;
    changed.name = "ein";
    EXPECT_THAT(withSaved({one, two}, changed), ElementsAre(changed, two));
    EXPECT_THAT(withSaved({one}, two), ElementsAre(one, two));
    EXPECT_THAT(without({one, two}, {"1", "7"}), ElementsAre(two));
}

} // namespace
} // namespace glyma
