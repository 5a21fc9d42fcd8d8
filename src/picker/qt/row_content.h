#pragma once

#include "catalogue/catalogue_values.h"
#include "picker/query_match.h"

#include <optional>
#include <string>
#include <vector>

namespace glyma::qt {

/// What a row shows, settled before anything is drawn. Views live as long as the item.
struct RowContent {
    enum class Icon {
        character, ///< `icon`
        snippet,   ///< a picture of lines of text
        random,    ///< a random character, changing
    };
    Icon iconKind = Icon::character;
    std::string icon;
    std::vector<TextRun> name;
    std::string keyword; ///< "… " and the keyword that matched, else empty
    std::string detail;  ///< a snippet's text in one line
    std::string ranking;
};

struct RowOptions {
    std::optional<std::string> skinToneModifier;
    bool isAltHeld = false;
    bool showRankingInfo = false;
};

RowContent rowContent(const PickerItem& item, const QueryMatch& match, const RowOptions& options);

/// Whether the row's icon comes from the emoji pool (true) or the Unicode pool (false); none for other rows.
std::optional<bool> randomPoolOf(const PickerItem& item);

} // namespace glyma::qt
