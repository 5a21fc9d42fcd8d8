#include "unicode/collation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

using glyma::unicode::Collator;

namespace {

/// The language as the environment names it, for one test.
class Language {
public:
    explicit Language(const char* value) {
        if (const auto* before = std::getenv("LC_ALL"))
            before_ = before;
        setenv("LC_ALL", value, 1);
    }
    ~Language() {
        if (before_)
            setenv("LC_ALL", before_->c_str(), 1);
        else
            unsetenv("LC_ALL");
    }

private:
    std::optional<std::string> before_;
};

std::vector<std::string> sorted(const Collator& collator, std::vector<std::string> names) {
    std::ranges::sort(names, [&](const auto& left, const auto& right) { return collator.less(left, right); });
    return names;
}

TEST(Collator, OrdersNumbersByValueAndLettersBeforeCase) {
    const Language language("C.UTF-8");
    const Collator collator;
    EXPECT_EQ(
        sorted(collator, {"sign a10", "Zebra", "sign a9", "éclair", "eagle", "Sign a2", "zebra"}),
        (std::vector<std::string>{"eagle", "éclair", "Sign a2", "sign a9", "sign a10", "zebra", "Zebra"}));
}

TEST(Collator, FollowsTheLanguageOfTheUser) {
    {
        const Language swedish("sv_SE.UTF-8");
        EXPECT_EQ(sorted(Collator(), {"ö", "z", "o"}), (std::vector<std::string>{"o", "z", "ö"}));
    }
    const Language german("de_DE.UTF-8@euro");
    EXPECT_EQ(sorted(Collator(), {"ö", "z", "o"}), (std::vector<std::string>{"o", "ö", "z"}));
}

TEST(Collator, KeysCompareLikeTheTexts) {
    const Language language("en_US.UTF-8");
    const Collator collator;
    const std::vector<std::string> names = {"",
                                            "a",
                                            "a b",
                                            "ab",
                                            "A",
                                            "á",
                                            "z",
                                            "10",
                                            "9",
                                            "😀",
                                            "grin 😀",
                                            "中",
                                            "a\xFF",
                                            std::string(300, 'x') + "a",
                                            std::string(300, 'x') + "b"};
    for (const auto& left : names) {
        for (const auto& right : names)
            EXPECT_EQ(collator.less(left, right), collator.sortKey(left) < collator.sortKey(right))
                << left << " / " << right;
    }
}

} // namespace
