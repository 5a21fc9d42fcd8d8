#pragma once

#include "picker/qt/glyphs.h"
#include "picker/qt/theme.h"

#include <QCoreApplication>
#include <QRectF>

#include <array>
#include <string_view>

class QPainter;

namespace glyma::qt {

inline constexpr std::array<std::string_view, 11> noResultsEmoticons = {
    R"(¯\_(ツ)_/¯)", "(╯°□°)╯︵ ┻━┻", "┻━┻︵ヽ(`Д´)ﾉ︵ ┻━┻", "(ノಠ益ಠ)ノ彡┻━┻", "ʕノ•ᴥ•ʔノ ︵ ┻━┻", "ʕ •ᴥ•ʔ",
    "ʕ ·(エ)· ʔ",    "ʕ – ㉨ – ʔ",    "⊂(￣(ｴ)￣)⊃",         "(=ʘᆽʘ=)∫",       "ฅ(^•ﻌ•^ฅ)",
};

/// Shown in place of the list when nothing matches. Main thread.
class NoResultsView {
    Q_DECLARE_TR_FUNCTIONS(glyma::qt::NoResultsView)

public:
    explicit NoResultsView(Glyphs& glyphs)
        : glyphs_(glyphs) {}

    /// Picks one of the emoticons, at random among those that the installed fonts can draw.
    void appear();
    void paint(QPainter& painter, const QRectF& area, const Theme& theme);

private:
    Glyphs& glyphs_;
    std::string_view emoticon_ = noResultsEmoticons.front();
};

} // namespace glyma::qt
