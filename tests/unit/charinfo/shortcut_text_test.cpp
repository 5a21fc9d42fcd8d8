#include "charinfo/shortcut_text.h"

#include <gtest/gtest.h>

namespace glyma {
namespace {

TEST(ShortcutText, ShowsModifiersInTheirOrderThenTheKey) {
    using namespace modifier;
    EXPECT_EQ(displayText(34, command | shift, "i"), "⇧⌘I");
    EXPECT_EQ(displayText(34, command | shift | control | option | capsLock, "I"), "⌃⌥⇧⌘I");
    EXPECT_EQ(displayText(49, control, " "), "⌃Space");
    EXPECT_EQ(displayText(keycode::returnKey, option, "\r"), "⌥↩");
    EXPECT_EQ(displayText(96, control, "\uF708"), "⌃F5");
    EXPECT_EQ(displayText(24, control, "ß"), "⌃SS");
    EXPECT_EQ(displayText(30, control, "ж"), "⌃Ж");
    for (const auto* nothing : {"", "\x1B", "\x7F", "\uF746"})
        EXPECT_EQ(displayText(keycode::insert, control, nothing), "⌃Key 114");
}

TEST(ShortcutText, NamesKeysWhenReadOut) {
    using namespace modifier;
    EXPECT_EQ(spokenText({34, command | shift, "⇧⌘I"}), "Shift+Super+I");
    EXPECT_EQ(spokenText({126, control | option, "⌃⌥↑"}), "Control+Alt+Up");
    EXPECT_EQ(spokenText({114, option, "⌥Key 114"}), "Alt+Key 114");
    EXPECT_EQ(spokenText({34, option, "from elsewhere"}), "Alt+from elsewhere");
}

} // namespace
} // namespace glyma
