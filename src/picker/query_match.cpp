#include "picker/query_match.h"

#include "unicode/text.h"

#include <algorithm>
#include <cstddef>

namespace glyma {

namespace {

/// A text in its folded form, each scalar with the grapheme cluster of the original that it came from.
/// Folding may lengthen, shorten or empty a cluster.
struct FoldedText {
    std::u32string scalars;
    std::vector<std::size_t> clusterOf;
};

/// One cluster at a time, so that positions can be traced back. Lower-casing alone looks beyond a cluster,
/// and only for the sigma that ends a word; both sigmas count as one.
std::u32string foldedCluster(std::string_view cluster) {
    auto folded = unicode::scalars(unicode::fold(cluster));
    std::ranges::replace(folded, U'\u03C2', U'\u03C3');
    return folded;
}

FoldedText foldedText(std::span<const std::string_view> clusters) {
    FoldedText result;
    for (std::size_t index = 0; index < clusters.size(); ++index)
        for (const char32_t scalar : foldedCluster(clusters[index])) {
            result.scalars.push_back(scalar);
            result.clusterOf.push_back(index);
        }
    return result;
}

bool isSubsequence(std::u32string_view word, std::u32string_view text) {
    std::size_t next = 0;
    for (const char32_t scalar : text)
        if (next < word.size() && word[next] == scalar)
            ++next;
    return next == word.size();
}

bool wordMatches(std::u32string_view word, std::u32string_view text, bool isFuzzy) {
    return isFuzzy ? isSubsequence(word, text) : text.find(word) != text.npos;
}

bool startsWord(std::u32string_view text, std::size_t position) {
    return position == 0 ||
           std::u32string_view(U" -:(\"'“‘,").find(text[position - 1]) != std::u32string_view::npos;
}

std::size_t bestPiece(std::u32string_view word, std::u32string_view text) {
    const auto first = text.find(word);
    for (auto place = first; place != text.npos; place = text.find(word, place + 1))
        if (startsWord(text, place))
            return place;
    return first;
}

/// Marks the clusters that the word is found in.
void mark(std::u32string_view word, const FoldedText& text, bool isFuzzy, std::vector<bool>& marked) {
    if (const auto piece = bestPiece(word, text.scalars); piece != std::u32string::npos) {
        for (std::size_t offset = 0; offset < word.size(); ++offset)
            marked[text.clusterOf[piece + offset]] = true;
        return;
    }
    if (!isFuzzy || !isSubsequence(word, text.scalars))
        return;
    std::size_t next = 0;
    for (std::size_t place = 0; place < text.scalars.size() && next < word.size(); ++place)
        if (text.scalars[place] == word[next]) {
            marked[text.clusterOf[place]] = true;
            ++next;
        }
}

} // namespace

QueryMatch::QueryMatch(std::string_view query, bool isFuzzy)
    : isFuzzy_(isFuzzy) {
    const auto clusters = unicode::graphemes(query);
    const auto folded = foldedText(clusters).scalars;
    for (std::size_t start = 0; start < folded.size();) {
        const auto end = std::min(folded.find(U' ', start), folded.size());
        if (end > start)
            words_.push_back(folded.substr(start, end - start));
        start = end + 1;
    }
}

bool QueryMatch::matches(std::string_view text) const {
    if (words_.empty())
        return false;
    const auto folded = foldedText(unicode::graphemes(text)).scalars;
    return std::ranges::all_of(words_, [&](const auto& word) { return wordMatches(word, folded, isFuzzy_); });
}

std::vector<TextRun> QueryMatch::runs(std::string_view text) const {
    if (text.empty())
        return {};
    if (words_.empty())
        return {{text, false}};
    const auto clusters = unicode::graphemes(text);
    const auto folded = foldedText(clusters);
    std::vector<bool> marked(clusters.size(), false);
    for (const auto& word : words_)
        mark(word, folded, isFuzzy_, marked);

    std::vector<TextRun> result;
    for (std::size_t index = 0; index < clusters.size(); ++index) {
        const auto cluster = clusters[index];
        if (!result.empty() && result.back().isEmphasised == marked[index])
            result.back().text = {result.back().text.data(), result.back().text.size() + cluster.size()};
        else
            result.push_back({cluster, marked[index]});
    }
    return result;
}

std::optional<std::string_view> QueryMatch::matchedKeyword(std::string_view name,
                                                           std::span<const std::string> keywords) const {
    if (words_.empty() || matches(name))
        return std::nullopt;
    const auto found = std::ranges::find_if(keywords, [&](const auto& keyword) { return matches(keyword); });
    return found == keywords.end() ? std::nullopt : std::optional<std::string_view>(*found);
}

} // namespace glyma
