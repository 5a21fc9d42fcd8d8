#pragma once

#include "catalogue/unicode_data_manager.h"
#include "data/search_reader.h"
#include "platform/simulated/services.h"
#include "platform/simulated/virtual_clock.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace glyma::test {

/// A catalogue of a few characters around a store of its own, in a simulated desktop.
class CatalogueFixture : public ::testing::Test {
protected:
    CatalogueFixture();
    ~CatalogueFixture() override;

    struct Delivery {
        std::vector<std::string> identities;
        std::vector<RankingInfo> infos;
        bool isFinal = false;
    };

    /// Writes a reference file.
    void writeResource(const std::string& name, const std::string& text) const;
    /// "Emoji" with keywords, "Signs" without, both blocks switched on.
    void fillStore();
    /// Another run of the program on the same store and settings.
    void startManager();
    /// All deliveries of a search that is left to end.
    std::vector<Delivery> search(const std::string& query);
    std::vector<std::string> finalIdentities(const std::string& query) {
        return search(query).back().identities;
    }
    /// The ranking of one result, from the final delivery.
    RankingInfo infoOf(const std::string& query, const std::string& identity);
    Delivery delivery(const PickerItems& items, bool isFinal) const;
    std::vector<std::string> logLines(const std::string& part) const;
    std::filesystem::path storeFile() const { return folder_ / "Glyma.store"; }
    std::filesystem::path imageFile() const { return folder_ / "Glyma.search-image"; }

    std::filesystem::path folder_;
    simulated::VirtualClock clock_;
    simulated::SimulatedSettings settings_;
    simulated::SimulatedLog sink_;
    simulated::SimulatedLoginItem loginItem_;
    simulated::SimulatedInstalledApplications applications_;
    simulated::SimulatedFonts fonts_;
    DebugConfig debug_{settings_};
    Log log_{sink_, debug_};
    UserPreferences preferences_{settings_, loginItem_, applications_, log_};
    std::unique_ptr<ResourceLocator> resources_;
    std::unique_ptr<UnicodeDataManager> manager_;
};

} // namespace glyma::test
