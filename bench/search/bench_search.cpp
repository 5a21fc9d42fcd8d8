#include "catalogue/byte_scan.h"
#include "catalogue/catalogue_texts.h"
#include "catalogue/personal_entries.h"
#include "catalogue/ranking.h"
#include "catalogue/reference_scorer.h"
#include "catalogue/section_builder.h"
#include "sample_store.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <bit>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <string_view>

namespace glyma::bench {
namespace {

using Clock = std::chrono::steady_clock;
using Microseconds = std::chrono::duration<double, std::micro>;

// As they are typed, letter by letter.
constexpr std::array<std::string_view, 30> queries{
    "s",     "sm",        "smi",       "smil",          "smile", "h",    "he",      "hea",
    "heart", "red heart", "ca",        "cat",           "cat f", "arr",  "arrow",   "fi",
    "fire",  "gri",       "grinning",  "grinning face", "fla",   "flag", "flag ja", "mus",
    "music", "thumb",     "thumbs up", "right arrow",   "woman", "xyzzy"};
const int rounds = std::getenv("BENCH_ROUNDS") != nullptr ? std::atoi(std::getenv("BENCH_ROUNDS")) : 300;

/// Times of one alternative, for each query.
class Times {
public:
    void add(std::size_t query, Microseconds time) {
        minima_.resize(std::max(minima_.size(), query + 1), Microseconds::max());
        minima_[query] = std::min(minima_[query], time);
        all_.push_back(time);
    }
    double sumOfMinima() const {
        Microseconds sum{};
        for (const auto minimum : minima_)
            if (minimum != Microseconds::max()) // not measured
                sum += minimum;
        return sum.count();
    }
    double minimum(std::size_t query) const { return minima_[query].count(); }
    double median() { return percentile(0.5); }
    double percentile95() { return percentile(0.95); }

private:
    double percentile(double share) {
        const auto place =
            all_.begin() + static_cast<std::ptrdiff_t>(static_cast<double>(all_.size()) * share);
        std::ranges::nth_element(all_, place);
        return place->count();
    }
    std::vector<Microseconds> minima_;
    std::vector<Microseconds> all_;
};

volatile std::size_t sink = 0;

template<typename Work>
Microseconds timed(Work&& work) {
    const auto start = Clock::now();
    sink = sink + work();
    return Clock::now() - start;
}

class SearchBench {
public:
    SearchBench(const std::filesystem::path& storeFile, const std::filesystem::path& resources)
        : store_(makeSampleStore(storeFile, resources)) {
        const auto popularity = loadPopularity(ResourceLocator(resources), nullptr);
        const auto keyworded = readKeyworded(store_, popularity);
        const auto rest = readRest(store_);
        if (!keyworded || !rest)
            std::exit(1);
        index_ = CatalogueIndex(*keyworded, sectionOf(specialEntries()), *rest, popularity.total, {});
        for (std::uint32_t entry = 0; entry < index_.indexedSize(); ++entry)
            entries_.push_back(index_.entry(entry));
        circumstances_.popularityTotal = popularity.total;
        fmt::print("{} entries and {} bytes of folded text in the index, {} and {} in the rest\n",
                   index_.indexedSize(), index_.keyworded().folded().size(), index_.rest().size(),
                   index_.rest().folded().size());
    }

    void run() {
        for (auto round = 0; round < rounds; ++round)
            for (std::size_t query = 0; query < queries.size(); ++query)
                // Another order each round: a repeated one would train the branch predictor.
                measure((query * 7 + static_cast<std::size_t>(round)) % queries.size(), round);
        ratio("phase1_vs_simd_scan", phase1_.sumOfMinima() / scan_.sumOfMinima(), 2.0, false);
        ratio("plain_scorer_vs_phase1", plain_.sumOfMinima() / phase1_.sumOfMinima(), 3.5, true);
        ratio("like_vs_phase2", like_.sumOfMinima() / phase2Long_.sumOfMinima(), 15, true);
        sanity("phase1_ms_p95", phase1_.percentile95(), 1);
        sanity("fuzzy_ms_p95", fuzzy_.percentile95(), 2);
        sanity("phase2_ms_p95", phase2_.percentile95(), 2);
        if (std::getenv("BENCH_QUERIES") != nullptr)
            for (std::size_t query = 0; query < queries.size(); ++query)
                fmt::print("{:14} scan {:6.1f} phase1 {:6.1f} fuzzy {:7.1f} phase2 {:7.1f} hits {}\n",
                           queries[query], scan_.minimum(query), phase1_.minimum(query),
                           fuzzy_.minimum(query), phase2_.minimum(query),
                           search(std::string(queries[query]), false, false));
        fmt::print(
            "medians in us: scan {:.1f} phase1 {:.1f} plain {:.1f} fuzzy {:.1f} phase2 {:.1f} like {:.1f}\n",
            scan_.median(), phase1_.median(), plain_.median(), fuzzy_.median(), phase2_.median(),
            like_.median());
    }

private:
    static void ratio(std::string_view name, double value, double limit, bool atLeast) {
        const auto holds = atLeast ? value >= limit : value <= limit;
        fmt::print("ratio {} {:.2f} {} {}\n", name, value, limit, holds ? "ok" : "FAIL");
    }
    static void sanity(std::string_view name, double microseconds, double limit) {
        fmt::print("sanity {} {:.3f} {} {}\n", name, microseconds / 1000, limit,
                   microseconds / 1000 <= limit ? "ok" : "FAIL");
    }

    void measure(std::size_t query, int round) {
        const std::string text(queries[query]);
        scan_.add(query, timed([&] { return scan(text); }));
        phase1_.add(query, timed([&] { return search(text, false, false); }));
        plain_.add(query, timed([&] { return plainSearch(text); }));
        fuzzy_.add(query, timed([&] { return search(text, true, false); }));
        const auto phase2 = timed([&] { return search(text, false, true); });
        phase2_.add(query, phase2);
        if (text.size() < 2 || query % 3 != 1 || round >= 200)
            return;
        phase2Long_.add(query, phase2);
        like_.add(query, timed([&] { return like(text); }));
    }

    std::size_t search(const std::string& text, bool fuzzy, bool withRest) const {
        const QueryTerms query(text);
        const auto rest = withRest ? matchRest(index_.rest(), query, fuzzy) : std::vector<TextMatch>{};
        return rank(index_, matchIndexed(index_, query, fuzzy), rest, {}, {}).size();
    }

    std::size_t plainSearch(const std::string& text) const {
        auto scored = reference::scoreEntries(entries_, text, circumstances_);
        reference::sortScored(scored);
        return scored.size();
    }

    /// What any search must do: find where the longest term stands, in all texts.
    std::size_t scan(const std::string& text) const {
        const QueryTerms query(text);
        const auto& needle = std::ranges::max_element(query.terms(), {}, [](const auto& term) {
                                 return term.needle.size();
                             })->needle;
        const auto folded = index_.keyworded().folded();
        std::size_t count = 0;
        for (std::size_t block = 0; block < folded.size(); block += 64) {
            auto places = needle.candidatesAt(folded.data() + block);
            if (needle.size() <= 2) // nothing is left to compare
                count += places != 0;
            else
                for (; places != 0; places &= places - 1)
                    count += needle.standsAt(folded.data() + block + std::countr_zero(places));
        }
        return count;
    }

    std::size_t like(std::string_view text) {
        likeStatement_.reset();
        likeStatement_.bind(1, "%" + std::string(text) + "%");
        std::size_t count = 0;
        while (likeStatement_.executeStep())
            count += likeStatement_.getColumn(0).getBytes() != 0;
        return count;
    }

    Store store_;
    CatalogueIndex index_;
    std::vector<EmojiEntry> entries_;
    reference::Circumstances circumstances_;
    SQLite::Database database_{store_.file().string()};
    SQLite::Statement likeStatement_{database_,
                                     "SELECT char, name FROM UnicodeChar WHERE keywordsRaw = '' AND "
                                     "isEnabled = 1 AND searchBagOfWords LIKE ?"};
    Times scan_, phase1_, plain_, fuzzy_, phase2_, phase2Long_, like_;
};

} // namespace
} // namespace glyma::bench

int main() {
    std::string folder = "/tmp/glyma-bench-XXXXXX";
    if (mkdtemp(folder.data()) == nullptr)
        return 1;
    glyma::bench::SearchBench(std::filesystem::path(folder) / "Glyma.store", GLYMA_SOURCE_DIR "/resources")
        .run();
    std::filesystem::remove_all(folder);
}
