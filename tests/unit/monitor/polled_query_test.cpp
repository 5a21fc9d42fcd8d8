#include "monitor/polled_query.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace glyma {
namespace {

using enum PolledQuery::Finding;

QueryReading readingOf(const char* text) {
    return queryIn(text, ":");
}

TEST(PolledQuery, FindsTheQueryBehindTheLastTriggerOnTheLine) {
    using enum QueryReading::Outcome;
    EXPECT_EQ(queryIn(std::nullopt, ":").outcome, unavailable);
    EXPECT_EQ(queryIn("", ":"), (QueryReading{noQuery, "", "", true}));
    EXPECT_EQ(queryIn("no trigger", ":").outcome, noQuery);
    EXPECT_EQ(queryIn("a:b\nc", ":").outcome, noQuery) << "a query never spans lines";
    EXPECT_EQ(queryIn("a:b\n:c d", ":").query, "c d");
    EXPECT_EQ(queryIn("12:30 :smi", ":").query, "smi");
    EXPECT_EQ(queryIn("a:", ":"), (QueryReading{query, "", "a:", false}));
    EXPECT_EQ(queryIn("👩‍🚒ü:é😀", ":").query, "é😀");
}

struct Step {
    const char* key;  ///< typed before the reading; "\b" deletes, "^" is a command, "" nothing
    const char* text; ///< read then; null: it cannot be
    int tick;
    PolledQuery::Finding finding;
    std::string query;
};

TEST(PolledQuery, TakesReadingsAgainstTheKeys) {
    const struct {
        const char* what;
        std::vector<Step> steps;
    } cases[] = {
        {"the text comes after the key", {{"m", ":s", 1, nothing, "sm"}, {"", ":sm", 2, same, "sm"}}},
        {"a key that the target does not take", {{"m", ":s", 5, nothing, "sm"}, {"", ":s", 6, changed, "s"}}},
        {"not even the trigger is there yet",
         {{"m", "x", 1, nothing, "sm"}, {"", "x:", 2, nothing, "sm"}, {"", "x:sm", 3, same, "sm"}}},
        {"never there", {{"m", "x", 5, nothing, "sm"}, {"", "x", 6, lost, "sm"}}},
        {"an element that shows nothing ever", {{"m", "", 5, nothing, "sm"}, {"", "", 6, mistrusted, "sm"}}},
        {"emptied by a command", {{"^", "", 1, nothing, "s"}, {"", "", 6, lost, "s"}}},
        {"unreadable", {{"m", nullptr, 1, nothing, "sm"}, {"", nullptr, 240, nothing, "sm"}}},
        {"completed by the target",
         {{"m", ":smile", 1, changed, "smile"}, {"y", ":smiley", 1, same, "smiley"}}},
        {"pasted and undone",
         {{"m", ":sm", 1, same, "sm"},
          {"^", ":sm", 1, same, "sm"},
          {"", ":smile", 2, changed, "smile"},
          {"^", ":sm", 1, changed, "sm"}}},
        {"undone together with the trigger", {{"m", ":sm", 1, same, "sm"}, {"^", "x", 1, lost, "sm"}}},
        {"deleted", {{"m", ":sm", 1, same, "sm"}, {"\b", ":sm", 1, nothing, "s"}, {"", ":s", 2, same, "s"}}},
        {"deleted again before the target has applied either",
         {{"m", ":s", 1, nothing, "sm"},
          {"\b", ":s", 1, same, "s"},
          {"", ":sm", 2, nothing, "s"},
          {"", ":s", 3, same, "s"}}},
        {"deleted back to the trigger",
         {{"m", ":sm", 1, same, "sm"},
          {"\b", ":sm", 1, nothing, "s"},
          {"\b", ":s", 1, nothing, "s"},
          {"", ":", 2, emptied, "s"}}},
        {"started over at once",
         {{"\b", ":s", 1, nothing, "s"}, {"h", ":", 1, nothing, "h"}, {"", ":h", 2, same, "h"}}},
        {"the trigger itself deleted",
         {{"\b", ":", 1, emptied, "s"}, {"\b", "x", 1, nothing, "s"}, {"", "x", 6, lost, "s"}}},
        {"the trigger as a query", {{":", ":s", 1, nothing, "s"}, {"", ":s:", 2, emptied, "s"}}},
        {"undone: the last trigger is an older one",
         {{"m", "12:30 :sm", 1, same, "sm"}, {"^", "12:30 ", 1, lost, "sm"}}},
        {"pasted with a trigger in it",
         {{"m", "12:30 :sm", 1, same, "sm"}, {"^", "12:30 :smx:y", 1, changed, "y"}}},
        {"a line feed", {{"m", ":sm", 1, same, "sm"}, {"", ":sm\n", 2, lost, "sm"}}},
    };
    for (const auto& [what, steps] : cases) {
        PolledQuery polled(":", TypedText("s"));
        for (const auto& [key, text, tick, finding, query] : steps) {
            SCOPED_TRACE(std::string(what) + ", " + (text ? text : "null"));
            const std::string pressed = key;
            if (pressed == "\b")
                polled.deleteLast();
            else if (pressed == "^")
                polled.disturb();
            else if (!pressed.empty())
                polled.type(pressed);
            EXPECT_EQ(polled.take(text ? readingOf(text) : QueryReading{}, tick), finding);
            EXPECT_EQ(polled.query(), query);
        }
    }
}

TEST(PolledQuery, TheTriggerTypedTwiceIsAQueryUntilSomethingFollowsIt) {
    PolledQuery polled(":", TypedText(":"));
    EXPECT_EQ(polled.query(), ":");
    EXPECT_EQ(polled.deletion(readingOf("a::")), (Deletion{2, "::"}));
    polled.type("s");
    EXPECT_EQ(polled.query(), "s");
    EXPECT_EQ(polled.take(readingOf("a::"), 1), nothing) << "the second trigger, not a deletion";
    EXPECT_EQ(polled.take(readingOf("a::s"), 2), same);
    EXPECT_EQ(polled.deletion(readingOf("a::s")), (Deletion{2, ":s"}));
}

TEST(PolledQuery, CountsOnceAKeyThatIsHeardAfterTheTextHasShownIt) {
    PolledQuery polled(":", TypedText("c"));
    EXPECT_EQ(polled.take(readingOf("x:cat"), 1), PolledQuery::Finding::changed);
    polled.type("a");
    polled.type("t");
    EXPECT_EQ(polled.query(), "cat");
    EXPECT_EQ(polled.keystrokeCount(), 3);
    polled.type("t");
    EXPECT_EQ(polled.query(), "catt");
}

TEST(PolledQuery, DeletesWhatTheTextHolds) {
    PolledQuery polled(":", TypedText("s"));
    for (const auto* key : {"m", "i", "l", "e", "y", "s"})
        polled.type(key);
    EXPECT_TRUE(polled.accountsForKeys(readingOf("x:smileys")));
    EXPECT_TRUE(polled.mayBeLate(readingOf("x:smil")));
    EXPECT_EQ(polled.deletion(readingOf("x:smil")), (Deletion{5, ":smil"})) << "four of seven were taken";
    EXPECT_EQ(polled.deletion(readingOf("x:e\u0301👩‍🚒")), (Deletion{3, ":e\u0301👩‍🚒"}));
    EXPECT_EQ(polled.deletion(readingOf("nothing left")), std::nullopt);
    EXPECT_EQ(polled.deletion({}), (Deletion{8, ":smileys"})) << "only keys have changed the text";
    polled.type("x");
    polled.deleteLast();
    EXPECT_TRUE(polled.accountsForKeys(readingOf("x:smileys")));
    EXPECT_FALSE(polled.certainlyAccountsForKeys(readingOf("x:smileys"))) << "the x may be still to come";
    polled.disturb();
    EXPECT_EQ(polled.deletion({}), std::nullopt) << "nobody knows what a command has done";
    EXPECT_FALSE(polled.mayBeLate(readingOf("x:smil")));
}

} // namespace
} // namespace glyma
