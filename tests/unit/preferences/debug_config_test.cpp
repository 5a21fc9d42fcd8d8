#include "platform/simulated/services.h"
#include "preferences/log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace glyma {
namespace {

using testing::ElementsAre;

TEST(DebugConfig, SwitchesOutliveTheProgramButUnredactedLoggingDoesNot) {
    simulated::SimulatedSettings settings;
    settings.set("debug.logUnredacted", true);
    {
        DebugConfig config(settings);
        EXPECT_FALSE(config.logUnredacted());
        config.setShowRankingInfo(true);
        config.setDebugLogsEnabled(true);
        config.setLogUnredacted(true);
    }
    settings.set("debug.showCaretOverlay", "yes");
    const DebugConfig config(settings);
    EXPECT_TRUE(config.showRankingInfo());
    EXPECT_TRUE(config.debugLogsEnabled());
    EXPECT_FALSE(config.logUnredacted());
    EXPECT_FALSE(config.showCaretOverlay()) << "a text is no switch";
}

TEST(DebugConfig, SwitchingLogsOffEndsUnredactedLoggingForGood) {
    simulated::SimulatedSettings settings;
    DebugConfig config(settings);
    config.setDebugLogsEnabled(true);
    config.setLogUnredacted(true);
    int changes = 0;
    const auto subscription = config.changed.connect([&] { ++changes; });
    config.setDebugLogsEnabled(false);
    EXPECT_FALSE(config.logUnredacted());
    EXPECT_EQ(changes, 2) << "both switches were redrawn";
    config.setDebugLogsEnabled(true);
    EXPECT_FALSE(config.logUnredacted());
    config.setDebugLogsEnabled(true);
    EXPECT_EQ(changes, 3) << "an equal value changes nothing";
}

TEST(Log, RedactedKeepsTheShapeAndNothingElse) {
    const struct {
        std::string_view text;
        std::string_view expected;
    } cases[] = {
        {"Hello World 42!", "Xxxxx Xxxxx 00!"},
        {"café", "xxxx"},
        {"cafe\u0301", "xxxx"},
        {"Über", "Xxxx"},
        {"\u01C5", "x"},                      // title case is not upper case
        {"\u4E09\u2167\u0664\u00BD", "xX00"}, // letters first, then every kind of number
        {"\u2026", "\u2022"},                 // punctuation beyond ASCII
        {"\U0001F44D\U0001F3FD", "\u2022"},   // one character, one bullet
        {"\U0001F468\u200D\U0001F469\u200D\U0001F467", "\u2022"},
        {"a\r\nb\t\u00A0c", "x\r\nx\t\u00A0x"},
        {"\a\x1b", "\u2022\u2022"},
        {":smile~+$<`", ":xxxxx~+$<`"},
        {"!\u0301", "\u2022"}, // a mark on ASCII punctuation
        {"a\xFFz", "x\u2022x"},
        {"", ""},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(redacted(text), expected) << text;
}

TEST(Log, DebugMessagesAreWrittenOnlyWhileWantedAndTypedTextOnlyWhenAllowed) {
    simulated::SimulatedSettings settings;
    simulated::SimulatedLog sink;
    DebugConfig config(settings);
    Log log(sink, config);
    log.debug("Glyma: {}", 1);
    config.setDebugLogsEnabled(true);
    log.debug("Glyma: {}", log.redactQuoted("a\"b"));
    config.setLogUnredacted(true);
    log.debug("Glyma: {}", log.redactQuoted("a\"b"));
    EXPECT_THAT(sink.lines(), ElementsAre(R"(Glyma: "x\"x")", R"(Glyma: "a\"b")"));
}

} // namespace
} // namespace glyma
