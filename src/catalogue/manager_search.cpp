#include "catalogue/manager_implementation.h"
#include "catalogue/search_scores.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <atomic>

namespace glyma {

namespace {

class SecondPhase : public SearchTask {
public:
    void cancel() override { cancelled_ = true; }
    bool isCancelled() const { return cancelled_; }

private:
    std::atomic<bool> cancelled_ = false;
};

PickerItems toItems(std::shared_ptr<const CatalogueIndex> index, std::vector<RankedEntry> ranked) {
    const auto size = ranked.size();
    return {size, [index = std::move(index), ranked = std::move(ranked)](std::size_t row) {
                auto entry = index->entry(ranked[row].entry);
                entry.rankingInfo = ranked[row].info();
                return toPickerItem(std::move(entry));
            }};
}

std::string tag(std::string_view label) {
    return fmt::format("[score {}]", label);
}

void logQuery(Log& log, std::string_view label, const std::string& query, const QueryTerms& terms) {
    if (!log.debugEnabled())
        return;
    std::vector<std::string> redacted;
    for (const auto& term : terms.terms())
        redacted.push_back(log.redactQuoted(term.needle.text()));
    log.debug("Glyma: {} raw={} normalized={} terms=[{}]", tag(label), log.redactQuoted(query),
              log.redactQuoted(terms.folded()), fmt::join(redacted, ", "));
}

/// How many entries the store's filter lets through that are not indexed already.
std::size_t filteredCount(const CatalogueIndex& index, const QueryTerms& terms,
                          const std::vector<TextMatch>& matches) {
    auto found = matches;
    if (terms.terms().size() > storeQueryTerms) { // the terms beyond score, but do not filter
        const auto end = terms.terms()[storeQueryTerms].needle.text().data() - terms.folded().data();
        found = matchRest(index.rest(), QueryTerms(terms.folded().substr(0, static_cast<std::size_t>(end))),
                          false);
    }
    return static_cast<std::size_t>(std::ranges::count_if(found, [&](const TextMatch& match) {
        return !std::ranges::binary_search(index.hiddenRest(), match.entry);
    }));
}

} // namespace

std::vector<RankedEntry> UnicodeDataManager::Implementation::firstPhase(const std::string& query,
                                                                        const QueryTerms& queryTerms) const {
    if (queryTerms.empty())
        return {};
    constexpr auto label = "phase 1";
    logQuery(services.log, label, query, queryTerms);
    const auto now = services.clock.now();
    auto ranked = rank(*index, matchIndexed(*index, queryTerms, services.preferences.useFuzzySearch()), {},
                       terms.bonuses(queryTerms.folded(), now), now);
    if (services.log.debugEnabled())
        services.log.debug("Glyma: {} {} results from {} entries", tag(label), ranked.size(),
                           index->indexedSize());
    return ranked;
}

std::vector<RankedEntry>
UnicodeDataManager::Implementation::secondPhase(const std::string& query, const QueryTerms& queryTerms,
                                                const CatalogueIndex& joined,
                                                const std::vector<TextMatch>& matches) const {
    constexpr auto label = "phase 2";
    logQuery(services.log, label, query, queryTerms);
    const auto now = services.clock.now();
    auto ranked = rank(joined, matchIndexed(joined, queryTerms, services.preferences.useFuzzySearch()),
                       matches, terms.bonuses(queryTerms.folded(), now), now);
    if (services.log.debugEnabled())
        services.log.debug("Glyma: {} {} results from {} entries", tag(label), ranked.size(),
                           joined.indexedSize() + filteredCount(joined, queryTerms, matches));
    return ranked;
}

std::shared_ptr<SearchTask> UnicodeDataManager::Implementation::search(const std::string& query,
                                                                       OnResults onResults) {
    const auto queryTerms = std::make_shared<const QueryTerms>(query);
    const auto isFinal = query.empty() || enabledBlockNames.empty();
    onResults(toItems(index, firstPhase(query, *queryTerms)), isFinal);
    if (isFinal || queryTerms->empty())
        return nullptr;

    auto task = std::make_shared<SecondPhase>();
    const auto source = rest ? rest : std::make_shared<LazyRest>(store.file(), nullptr);
    const auto fuzzy = services.preferences.useFuzzySearch();
    auto deliver = [this, query, queryTerms, source, onResults = std::move(onResults)](
                       std::shared_ptr<const SearchSection> section, const std::vector<TextMatch>& matches) {
        const auto joined = indexWith(source, std::move(section));
        onResults(toItems(joined, secondPhase(query, *queryTerms, *joined, matches)), true);
    };
    services.tasks.run([task, source, queryTerms, fuzzy, deliver = std::move(deliver),
                        life = std::weak_ptr(alive), &log = services.log, &scheduler = services.scheduler] {
        if (task->isCancelled())
            return;
        auto section = source->get();
        if (!section)
            log.debug("Glyma: ⚠️ background DB query failed — {}", section.error());
        const auto matches = section && !task->isCancelled() ? matchRest(**section, *queryTerms, fuzzy)
                                                             : std::vector<TextMatch>{};
        if (task->isCancelled())
            return;
        scheduler.post([task, deliver, life, matches, section = section.value_or(nullptr)] {
            if (life.lock() && !task->isCancelled())
                deliver(section, matches);
        });
    });
    return task;
}

} // namespace glyma
