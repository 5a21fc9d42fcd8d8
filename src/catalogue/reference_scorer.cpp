#include "catalogue/reference_scorer.h"

#include "unicode/text.h"

#include <algorithm>
#include <chrono>

namespace glyma::reference {

namespace {

std::int64_t wholeDays(Timestamp from, Timestamp to) {
    return std::chrono::duration_cast<std::chrono::hours>(to - from).count() / 24;
}

bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

std::optional<std::int64_t> termScore(const EmojiEntry& entry, const std::string& term, bool fuzzy) {
    const auto& name = entry.foldedName;
    if (name == term)
        return 130;
    if (name.starts_with(term))
        return 110;
    if (contains(name, term))
        return contains(name, " " + term) ? 110 : 90;
    if (fuzzy)
        if (const auto score = fuzzyScore(term, name))
            return 2 * *score + 30;
    for (const auto& keyword : entry.foldedKeywords) {
        if (keyword == term)
            return 100;
        if (keyword.starts_with(term))
            return 80;
        if (contains(keyword, term))
            return contains(keyword, " " + term) ? 80 : 60;
        if (fuzzy)
            if (const auto score = fuzzyScore(term, keyword))
                return 2 * *score;
    }
    return std::nullopt;
}

std::int64_t popularityBonus(const EmojiEntry& entry, std::int64_t total) {
    if (entry.popularityRank == notRanked)
        return 0;
    const auto share =
        static_cast<double>(entry.popularityRank) / static_cast<double>(std::max<std::int64_t>(total, 1));
    return static_cast<std::int64_t>((1.0 - share) * 30.0);
}

std::int64_t usageBonus(const EmojiEntry& entry, Timestamp now) {
    auto bonus = std::min<std::int64_t>(entry.usageCount, 6) * 5;
    if (entry.lastUsed) {
        const auto days = wholeDays(*entry.lastUsed, now);
        if (days == 0)
            bonus += 30;
        else if (days < 8)
            bonus += 20;
        else if (days <= 30)
            bonus += 10;
    }
    return bonus;
}

std::int64_t termBonus(const std::string& character, const std::string& foldedQuery,
                       const LearnedTerms& terms, Timestamp now) {
    std::int64_t bonus = 0;
    for (const auto& [term, characters] : terms) {
        const auto found = characters.find(character);
        if (foldedQuery.empty() || !term.starts_with(foldedQuery) || found == characters.end())
            continue;
        const auto& record = found->second;
        if (term != foldedQuery) {
            bonus += std::min<std::int64_t>(record.count, 3) * 5;
            continue;
        }
        bonus += std::min<std::int64_t>(record.count, 5) * 10;
        const auto days = wholeDays(record.lastUsed, now);
        if (days == 0)
            bonus += 20;
        else if (days < 8)
            bonus += 10;
    }
    return bonus;
}

} // namespace

std::vector<std::string> queryTerms(const std::string& foldedQuery) {
    std::vector<std::string> terms(1);
    for (const auto byte : foldedQuery) {
        if (byte == ' ')
            terms.emplace_back();
        else
            terms.back() += byte;
    }
    std::erase(terms, "");
    return terms;
}

std::optional<std::int64_t> fuzzyScore(const std::string& pattern, const std::string& target) {
    const auto wanted = unicode::graphemes(pattern);
    const auto given = unicode::graphemes(target);
    std::int64_t score = 0;
    std::int64_t previous = -2;
    std::size_t next = 0;
    for (std::size_t at = 0; at < given.size() && next < wanted.size(); ++at) {
        if (given[at] != wanted[next])
            continue;
        const auto place = static_cast<std::int64_t>(at);
        if (place == previous + 1)
            score += 10;
        if (place == 0 || given[at - 1] == " ")
            score += 5;
        previous = place;
        ++next;
    }
    if (next < wanted.size())
        return std::nullopt;
    if (given.size() >= wanted.size() && std::equal(wanted.begin(), wanted.end(), given.begin()))
        score += 20;
    return score;
}

std::optional<std::int64_t> textScore(const EmojiEntry& entry, const std::vector<std::string>& terms,
                                      bool fuzzy) {
    std::int64_t sum = 0;
    for (const auto& term : terms) {
        const auto score = termScore(entry, term, fuzzy);
        if (!score)
            return std::nullopt;
        sum += *score;
    }
    return sum / static_cast<std::int64_t>(terms.size());
}

bool storeFinds(const EmojiEntry& entry, const std::vector<std::string>& terms) {
    return std::all_of(terms.begin(), terms.begin() + std::min<std::ptrdiff_t>(4, std::ssize(terms)),
                       [&](const std::string& term) { return contains(entry.foldedName, term); });
}

std::vector<Scored> scoreEntries(const std::vector<EmojiEntry>& entries, const std::string& query,
                                 const Circumstances& circumstances) {
    std::vector<Scored> scored;
    const auto folded = unicode::fold(query);
    const auto terms = queryTerms(folded);
    if (terms.empty())
        return scored;
    for (const auto& entry : entries) {
        const auto text = textScore(entry, terms, circumstances.fuzzy);
        if (!text)
            continue;
        const RankingInfo info{*text, popularityBonus(entry, circumstances.popularityTotal),
                               usageBonus(entry, circumstances.now),
                               termBonus(entry.character, folded, circumstances.terms, circumstances.now),
                               entry.isCached ? 150 : 0};
        scored.push_back({&entry, info.total(), info});
    }
    return scored;
}

void sortScored(std::vector<Scored>& scored) {
    std::ranges::stable_sort(scored, [](const Scored& left, const Scored& right) {
        if (left.total != right.total)
            return left.total > right.total;
        return left.entry->popularityRank < right.entry->popularityRank;
    });
}

} // namespace glyma::reference
