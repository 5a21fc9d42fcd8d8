#include "data/store_rows.h"

#include "unicode/collation.h"
#include "unicode/text.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <functional>
#include <numeric>
#include <string_view>
#include <thread>
#include <unordered_map>

namespace glyma {

namespace {

constexpr std::size_t rowsWorthAThread = 2000;

/// Calls work(begin, end) for slices that cover 0 to count, on several threads when that pays.
void inSlices(std::size_t count, const std::function<void(std::size_t, std::size_t)>& work) {
    const auto wanted = count / rowsWorthAThread;
    const auto threads =
        std::clamp<std::size_t>(wanted, 1, std::max(1U, std::thread::hardware_concurrency()));
    std::vector<std::jthread> others;
    for (std::size_t slice = 1; slice < threads; ++slice)
        others.emplace_back(work, count * slice / threads, count * (slice + 1) / threads);
    work(0, count / threads);
}

std::string foldedPieces(std::string_view joined) {
    std::string result;
    for (std::size_t start = 0; start < joined.size();) {
        const auto end = std::min(joined.find(',', start), joined.size());
        result += unicode::fold(joined.substr(start, end - start));
        if (end < joined.size())
            result += ',';
        start = end + 1;
    }
    return result;
}

std::vector<const UnicodeChar*> withoutDuplicates(std::span<const UnicodeChar> characters) {
    std::unordered_map<std::string_view, std::size_t> positions;
    positions.reserve(characters.size());
    std::vector<const UnicodeChar*> result;
    result.reserve(characters.size());
    for (const auto& character : characters) {
        const auto [found, isNew] = positions.try_emplace(character.character, result.size());
        if (isNew)
            result.push_back(&character);
        else
            result[found->second] = &character;
    }
    return result;
}

} // namespace

DerivedTexts deriveTexts(const UnicodeChar& character) {
    const auto keywords =
        nlohmann::json(character.keywords).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    return {keywords, unicode::fold(character.name), foldedPieces(character.keywordsRaw)};
}

std::vector<OrderedRow> orderedRows(std::span<const UnicodeChar> characters) {
    struct Entry {
        OrderedRow row;
        std::string key;
    };
    const auto distinct = withoutDuplicates(characters);
    std::vector<Entry> entries(distinct.size());
    inSlices(entries.size(), [&](std::size_t begin, std::size_t end) {
        const unicode::Collator collator;
        for (auto index = begin; index < end; ++index) {
            const auto& character = *distinct[index];
            entries[index] = {{&character, deriveTexts(character)}, collator.sortKey(character.name)};
        }
    });
    std::ranges::stable_sort(entries, [](const Entry& left, const Entry& right) {
        const auto leftIsPlain = left.row.character->keywordsRaw.empty();
        const auto rightIsPlain = right.row.character->keywordsRaw.empty();
        return leftIsPlain != rightIsPlain ? rightIsPlain : left.key < right.key;
    });
    std::vector<OrderedRow> rows;
    rows.reserve(entries.size());
    for (auto& entry : entries)
        rows.push_back(std::move(entry.row));
    return rows;
}

std::vector<std::size_t> nameOrder(std::span<const std::string> names) {
    const unicode::Collator collator;
    std::vector<std::string> keys;
    keys.reserve(names.size());
    for (const auto& name : names)
        keys.push_back(collator.sortKey(name));
    std::vector<std::size_t> order(names.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::stable_sort(order, {}, [&](std::size_t index) -> const std::string& { return keys[index]; });
    return order;
}

} // namespace glyma
