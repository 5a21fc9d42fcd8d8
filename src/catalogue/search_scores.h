#pragma once

/// What a match of one term is worth.
namespace glyma {

struct FieldScores {
    int exact;     ///< the field is the term
    int start;     ///< the field or one of its words starts with the term
    int substring; ///< the term stands elsewhere in the field
    int fuzzyBase; ///< added to twice the fuzzy score
};

inline constexpr FieldScores nameScores{130, 110, 90, 30};
inline constexpr FieldScores keywordScores{100, 80, 60, 0};

inline constexpr int cacheBonusOfIndexed = 150;
inline constexpr double popularityScale = 30.0;
/// The store is asked for so many terms at most; the others only score.
inline constexpr int storeQueryTerms = 4;

} // namespace glyma
