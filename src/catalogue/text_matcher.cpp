#include "catalogue/text_matcher.h"

#include "catalogue/fuzzy_score.h"
#include "catalogue/search_scores.h"

#include <algorithm>
#include <bit>
#include <optional>
#include <span>

namespace glyma {

namespace {

using Term = QueryTerms::Term;

/// Whether a word of the field begins with the needle, behind `at`.
bool wordStarts(const char* at, const Needle& needle) {
    for (;; at += 64) {
        const auto ends = candidates(at, fieldEnd, fieldEnd, 0);
        const auto inField = ends == 0 ? ~std::uint64_t{0} : (ends & -ends) - 1;
        auto words = candidates(at, ' ', needle.text().front(), 1) & inField;
        for (; words != 0; words &= words - 1)
            if (needle.standsAt(at + std::countr_zero(words) + 1))
                return true;
        if (ends != 0)
            return false;
    }
}

/// The score of a field in which the needle stands first at `at`.
int scoreAt(const char* at, const Needle& needle, const FieldScores& scores) {
    if (at[-1] == fieldEnd)
        return at[needle.size()] == fieldEnd ? scores.exact : scores.start;
    if (at[-1] == ' ' || wordStarts(at + 1, needle))
        return scores.start;
    return scores.substring;
}

int plainScore(std::string_view field, const Needle& needle, const FieldScores& scores) {
    const auto place = firstOccurrence(field, needle);
    return place == std::string_view::npos ? 0 : scoreAt(field.data() + place, needle, scores);
}

/// Whether the needle's bytes occur in the field in their order: without that no rule matches.
bool occursInOrder(const Needle& needle, std::string_view field) {
    const auto* wanted = needle.text().data();
    const auto* const end = wanted + needle.size();
    for (const auto byte : field) {
        wanted += byte == *wanted;
        if (wanted == end)
            return true;
    }
    return false;
}

std::optional<int> fuzzyFieldScore(std::string_view field, const Needle& needle, const FieldScores& scores) {
    if (!occursInOrder(needle, field))
        return std::nullopt;
    if (const auto plain = plainScore(field, needle, scores); plain != 0)
        return plain;
    if (const auto fuzzy = fuzzyScore(needle.text(), field))
        return static_cast<int>(2 * *fuzzy) + scores.fuzzyBase;
    return std::nullopt;
}

std::optional<int> plainTermScore(const SearchSection& section, std::uint32_t entry, const Term& term) {
    if (covers(section.arrays().nameMask[entry], term.mask))
        if (const auto score = plainScore(section.foldedName(entry), term.needle, nameScores))
            return score;
    // No term contains a fieldEnd: the first place in all keywords is in the first keyword that has one.
    if (covers(section.arrays().keywordsMask[entry], term.mask))
        if (const auto score = plainScore(section.foldedKeywords(entry), term.needle, keywordScores))
            return score;
    return std::nullopt;
}

std::optional<int> fuzzyTermScore(const SearchSection& section, std::uint32_t entry, const Term& term) {
    if (covers(section.arrays().nameMask[entry], term.mask))
        if (const auto score = fuzzyFieldScore(section.foldedName(entry), term.needle, nameScores))
            return score;
    if (!covers(section.arrays().keywordsMask[entry], term.mask))
        return std::nullopt;
    // Only a keyword with the rarest byte can match.
    const auto keywords = section.foldedKeywords(entry);
    std::optional<int> score;
    forEachOccurrence(keywords, term.rarestByte, [&](std::size_t place) {
        const auto begin = keywords.rfind(fieldEnd, place) + 1; // npos + 1 is the first keyword's begin
        const auto end = keywords.find(fieldEnd, place);
        score = fuzzyFieldScore(keywords.substr(begin, end - begin), term.needle, keywordScores);
        return score ? keywords.size() : end;
    });
    return score;
}

class Matcher {
public:
    Matcher(const SearchSection& section, const QueryTerms& query, const MatchRules& rules)
        : section_(section)
        , terms_(query.terms())
        , rules_(rules) {}

    std::vector<TextMatch> run() {
        matches_.reserve(std::min<std::size_t>(section_.size(), 256));
        const auto inName = std::min(rules_.termsInName, terms_.size());
        if (terms_.size() == 1 && inName == 0 && hasLetterScores())
            matchLetter(letterIndex(terms_.front().needle.text().front()));
        else if (rules_.fuzzy && inName == 0)
            matchEvery();
        else
            matchFound(inName);
        return std::move(matches_);
    }

private:
    bool hasLetterScores() const {
        const auto& needle = terms_.front().needle;
        return needle.size() == 1 && letterIndex(needle.text().front()) >= 0 &&
               !section_.arrays().letterScores.empty();
    }

    void matchLetter(int letter) {
        const auto size = section_.size();
        const auto scores =
            section_.arrays().letterScores.subspan(static_cast<std::size_t>(letter) * size, size);
        matches_.resize(size);
        std::size_t count = 0;
        for (std::uint32_t entry = 0; entry < size; ++entry) {
            matches_[count] = {entry, scores[entry]};
            count += scores[entry] != 0;
        }
        matches_.resize(count);
    }

    /// Of the first `count` terms.
    std::size_t longestTerm(std::size_t count) const {
        const auto sizeOf = [](const Term& term) { return term.needle.size(); };
        const auto longest = std::ranges::max_element(std::span(terms_).first(count), {}, sizeOf);
        return static_cast<std::size_t>(&*longest - terms_.data());
    }

    void matchEvery() {
        const auto longest = longestTerm(terms_.size()); // rejects most
        for (std::uint32_t entry = 0; entry < section_.size(); ++entry)
            if (const auto score = termScore(entry, longest))
                scoreOthers(entry, *score, longest);
    }

    /// Looks for one term in all texts at once and for the others where it stands.
    void matchFound(std::size_t inName) {
        const auto scanned = longestTerm(inName == 0 ? terms_.size() : inName);
        const auto& needle = terms_[scanned].needle;
        const auto text = section_.folded();
        forEachOccurrence(text, needle, [&](std::size_t place) -> std::size_t {
            const auto entry = section_.entryAt(place);
            const auto isInName = place < section_.arrays().keywordsStart[entry];
            if (isInName || inName == 0) {
                const auto score =
                    scoreAt(text.data() + place, needle, isInName ? nameScores : keywordScores);
                scoreOthers(entry, score, scanned);
            }
            return section_.arrays().nameStart[entry + 1];
        });
    }

    /// Adds the entry when all terms but `scored`, which has `score`, match.
    void scoreOthers(std::uint32_t entry, int score, std::size_t scored) {
        for (std::size_t index = 0; index < terms_.size(); ++index) {
            if (index == scored)
                continue;
            const auto term = termScore(entry, index);
            if (!term)
                return;
            score += *term;
        }
        matches_.push_back({entry, score / static_cast<int>(terms_.size())});
    }

    std::optional<int> termScore(std::uint32_t entry, std::size_t index) const {
        const auto& term = terms_[index];
        if (index < rules_.termsInName) {
            const auto score = plainScore(section_.foldedName(entry), term.needle, nameScores);
            return score != 0 ? std::optional(score) : std::nullopt;
        }
        return rules_.fuzzy ? fuzzyTermScore(section_, entry, term) : plainTermScore(section_, entry, term);
    }

    const SearchSection& section_;
    const std::vector<Term>& terms_;
    const MatchRules& rules_;
    std::vector<TextMatch> matches_;
};

} // namespace

std::vector<TextMatch> matchText(const SearchSection& section, const QueryTerms& query,
                                 const MatchRules& rules) {
    if (query.empty() || section.size() == 0)
        return {};
    return Matcher(section, query, rules).run();
}

std::vector<std::uint8_t> letterScores(const SearchSection& section) {
    constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyz0123456789";
    static_assert(letters.size() == letterCount && keywordScores.exact < 256 && nameScores.exact < 256);
    std::vector<std::uint8_t> scores(letters.size() * section.size());
    for (std::size_t letter = 0; letter < letters.size(); ++letter) {
        const QueryTerms query(letters.substr(letter, 1));
        for (const auto& match : matchText(section, query, {}))
            scores[letter * section.size() + match.entry] = static_cast<std::uint8_t>(match.score);
    }
    return scores;
}

} // namespace glyma
