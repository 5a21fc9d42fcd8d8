#include "sample_store.h"

#include "catalogue/import_pipeline.h"
#include "platform/simulated/services.h"

#include <fmt/format.h>

#include <cstdlib>

namespace glyma::bench {

namespace {

class EveryFont : public FontCoverage {
public:
    bool canDraw(std::string_view) override { return true; }
};

template<typename Value>
Value orExit(std::expected<Value, std::string> result) {
    if (!result) {
        fmt::print(stderr, "{}\n", result.error());
        std::exit(1);
    }
    if constexpr (!std::is_void_v<Value>)
        return *std::move(result);
}

} // namespace

Store makeSampleStore(const std::filesystem::path& file, const std::filesystem::path& resources) {
    simulated::SimulatedSettings settings;
    simulated::SimulatedLog sink;
    const DebugConfig config(settings);
    Log log(sink, config);
    EveryFont fonts;
    const ResourceLocator locator(resources);
    auto store = orExit(Store::open(file));
    orExit(ImportPipeline{locator, fonts, log, {}}.run(store));
    auto transaction = orExit(store.begin());
    for (const auto& block : orExit(store.blocks())) {
        orExit(store.setCharactersEnabled(block.name, true));
        orExit(store.setBlockEnabled(block.name, true));
    }
    orExit(transaction.commit());
    return store;
}

} // namespace glyma::bench
