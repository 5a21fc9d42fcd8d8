#include "preferences/default_replacements.h"

#include "preferences/uuid.h"

#include <array>
#include <string_view>

namespace glyma {

namespace {

struct Snippet {
    std::string_view name;
    std::string_view text;
};

/// By code points: many of these glyphs look like others.
// clang-format off
constexpr std::array snippets{
    Snippet{"Laugh in Chinese", "\u54C8\u54C8\u54C8"}, // 哈哈哈
    Snippet{"Shrug", "\u00AF\\\uFF3F(\u30C4)\uFF3F/\u00AF"}, // ¯\＿(ツ)＿/¯
    Snippet{"Lenny Face", "( \u0361\u00B0 \u035C\u0296 \u0361\u00B0)"}, // ( ͡° ͜ʖ ͡°)
    Snippet{"Disapproval", "\u0CA0_\u0CA0"}, // ಠ_ಠ
    Snippet{"Angry disapproval", "\u0CA0\u76CA\u0CA0"}, // ಠ益ಠ
    Snippet{"Bat", "\u239B\u239D(\u2022\u2C45\u2022)\u23A0\u239E"}, // ⎛⎝(•ⱅ•)⎠⎞
    Snippet{"Kiss", "(\u0E51\u02C7\u03B5\u02C7\u0E51)"}, // (๑ˇεˇ๑)
    Snippet{"Flower Girl", "(\u25D5\u203F\u25D5\u273F)"}, // (◕‿◕✿)
    Snippet{"Crying", "( \u0F0E\u0EB6 \u06DD \u0F0E\u0EB6 )"}, // ( ༎ຶ ۝ ༎ຶ )
    Snippet{"Cat", "(=\u0298\u11BD\u0298=)\u222B"}, // (=ʘᆽʘ=)∫
    Snippet{"Cat", "\u0E05(^\u2022\uFECC\u2022^\u0E05)"}, // ฅ(^•ﻌ•^ฅ)
    Snippet{"Bear", "\u0295 \u2022\u1D25\u2022\u0294"}, // ʕ •ᴥ•ʔ
    Snippet{"Bear", "\u0295 \u00B7(\u30A8)\u00B7 \u0294"}, // ʕ ·(エ)· ʔ
    Snippet{"Bear", "\u0295 \u2013 \u3268 \u2013 \u0294"}, // ʕ – ㉨ – ʔ
    Snippet{"Bear", "\u2282(\uFFE3(\uFF74)\uFFE3)\u2283"}, // ⊂(￣(ｴ)￣)⊃
    Snippet{"Dancing Gary", "\u1555( \u141B )\u1557"}, // ᕕ( ᐛ )ᕗ
    Snippet{"Table flip", "(\u256F\u00B0\u25A1\u00B0)\u256F\uFE35 \u253B\u2501\u253B"}, // (╯°□°)╯︵ ┻━┻
    Snippet{"Table flip", "\u253B\u2501\u253B\uFE35\u30FD(`\u0414\u00B4)\uFF89\uFE35 \u253B\u2501\u253B"}, // ┻━┻︵ヽ(`Д´)ﾉ︵ ┻━┻
    Snippet{"Table flip", "(\u30CE\u0CA0\u76CA\u0CA0)\u30CE\u5F61\u253B\u2501\u253B"}, // (ノಠ益ಠ)ノ彡┻━┻
    Snippet{"Acid", "\u2282(\u25C9\u203F\u25C9)\u3064"}, // ⊂(◉‿◉)つ
    Snippet{"Bear flip", "\u0295\u30CE\u2022\u1D25\u2022\u0294\u30CE \uFE35 \u253B\u2501\u253B"}, // ʕノ•ᴥ•ʔノ ︵ ┻━┻
    Snippet{"Bear hug", "\u0295\u3063\u2022\u1D25\u2022\u0294\u3063"}, // ʕっ•ᴥ•ʔっ
    Snippet{"Blush", "(\u02F5 \u0361\u00B0 \u035C\u0296 \u0361\u00B0\u02F5)"}, // (˵ ͡° ͜ʖ ͡°˵)
    Snippet{"Dance", "\u1555(\u2310\u25A0_\u25A0)\u1557 \u266A\u266C"}, // ᕕ(⌐■_■)ᕗ ♪♬
    Snippet{"Derp", "\u2609 \u203F \u2686"}, // ☉ ‿ ⚆
    Snippet{"Dog", "(\u25D5\u1D25\u25D5\u028B)"}, // (◕ᴥ◕ʋ)
    Snippet{"Flexing", "\u1559(`\u25BD\u00B4)\u1557"}, // ᕙ(`▽´)ᕗ
    Snippet{"Glasses", "(\u2310 \u0361\u25A0 \u035C\u0296 \u0361\u25A0)"}, // (⌐ ͡■ ͜ʖ ͡■)
    Snippet{"Glasses off", "( \u0361\u00B0 \u035C\u0296 \u0361\u00B0)\uFF89\u2310\u25A0-\u25A0"}, // ( ͡° ͜ʖ ͡°)ﾉ⌐■-■
    Snippet{"Loading", "\u2588\u2588\u2588\u2592\u2592\u2592\u2592\u2592\u2592\u2592"}, // ███▒▒▒▒▒▒▒
    Snippet{"LOL", "L(\u00B0 O \u00B0L)"}, // L(° O °L)
    Snippet{"Love bear", "\u0295\u2665\u1D25\u2665\u0294"}, // ʕ♥ᴥ♥ʔ
    Snippet{"Magic", "\u30FD(\uFF40\u0414\u00B4)\u2283\u2501\u2606\uFF9F. * \uFF65 \uFF61\uFF9F,"}, // ヽ(｀Д´)⊃━☆ﾟ. * ･ ｡ﾟ,
    Snippet{"Bear OK", "\u0D26\u0D4D\u0D26\u0D3F\u0295\u2022\u1D25\u2022 \u0294"}, // ദ്ദിʕ•ᴥ• ʔ
};
// clang-format on

const std::vector<std::string> laughKeywords{"laugh", "chinese"};
const std::vector<std::string> emoticonKeywords{"ASCII", "text", "emoticon"};

} // namespace

std::vector<UserReplacement> defaultReplacements() {
    UuidMaker makeUuid;
    std::vector<UserReplacement> replacements;
    replacements.reserve(snippets.size());
    for (const auto& [name, text] : snippets)
        replacements.push_back({.id = makeUuid(),
                                .name = std::string(name),
                                .keywords = replacements.empty() ? laughKeywords : emoticonKeywords,
                                .text = std::string(text)});
    return replacements;
}

} // namespace glyma
