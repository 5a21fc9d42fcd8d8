#include "catalogue_fixture.h"

#include <cstdlib>
#include <fstream>

namespace glyma::test {

using namespace std::chrono_literals;

CatalogueFixture::CatalogueFixture() {
    std::string folder = (std::filesystem::temp_directory_path() / "glyma-catalogue-XXXXXX").string();
    if (mkdtemp(folder.data()) == nullptr)
        std::abort();
    folder_ = folder;
    resources_ = std::make_unique<ResourceLocator>(folder_ / "resources");
    writeResource("emoji-popularity.json", R"(["😀","❤️","😀","🔥"])");
    preferences_.setUserReplacements({});
    debug_.setDebugLogsEnabled(true);
}

CatalogueFixture::~CatalogueFixture() {
    manager_.reset();
    std::error_code error;
    std::filesystem::remove_all(folder_, error);
}

void CatalogueFixture::writeResource(const std::string& name, const std::string& text) const {
    std::filesystem::create_directories(resources_->folder());
    std::ofstream(resources_->folder() / name) << text;
}

void CatalogueFixture::fillStore() {
    auto store = Store::open(storeFile());
    ASSERT_TRUE(store) << store.error();
    const std::vector<UnicodeChar> characters{
        makeUnicodeChar("😀", "grinning face", {"smile", "", "happy face"}, "Emoticons"),
        makeUnicodeChar("❤️", "red heart", {"love"}, "Dingbats"),
        makeUnicodeChar("🔥", "fire", {"hot"}, "Miscellaneous Symbols and Pictographs"),
        makeUnicodeChar("👍", "thumbs up", {"yes"}, "Miscellaneous Symbols and Pictographs"),
        makeUnicodeChar("€", "EURO SIGN", {}, "Currency Symbols"),
        makeUnicodeChar("™", "TRADE MARK SIGN", {}, "Letterlike Symbols"),
        makeUnicodeChar("♥", "BLACK HEART SUIT", {}, "Miscellaneous Symbols")};
    ASSERT_TRUE(store->insertCharacters(characters));
    const std::vector<UnicodeBlock> blocks{{"Emoticons", 0x1F600, 0x1F64F, 1, "😀", true},
                                           {"Dingbats", 0x2700, 0x27BF, 1, "❤", false}};
    ASSERT_TRUE(store->insertBlocks(blocks));
}

void CatalogueFixture::startManager() {
    auto store = Store::open(storeFile());
    ASSERT_TRUE(store) << store.error();
    manager_ = std::make_unique<UnicodeDataManager>(
        CatalogueServices{clock_, clock_, clock_, settings_, preferences_, log_, *resources_, fonts_, 1},
        *std::move(store));
    manager_->start();
}

CatalogueFixture::Delivery CatalogueFixture::delivery(const PickerItems& items, bool isFinal) const {
    Delivery result{{}, {}, isFinal};
    for (const auto& item : items) {
        result.identities.push_back(identity(item));
        result.infos.push_back(
            std::visit([](const auto& entry) { return entry.rankingInfo.value_or(RankingInfo{}); }, item));
    }
    return result;
}

std::vector<CatalogueFixture::Delivery> CatalogueFixture::search(const std::string& query) {
    std::vector<Delivery> deliveries;
    const auto task = manager_->search(query, [&](const PickerItems& items, bool isFinal) {
        deliveries.push_back(delivery(items, isFinal));
    });
    EXPECT_EQ(deliveries.size(), 1u) << "the first phase delivers before search returns";
    clock_.advance(1s);
    return deliveries;
}

RankingInfo CatalogueFixture::infoOf(const std::string& query, const std::string& identity) {
    const auto last = search(query).back();
    for (std::size_t row = 0; row < last.identities.size(); ++row)
        if (last.identities[row] == identity)
            return last.infos[row];
    ADD_FAILURE() << identity << " is not among the results of " << query;
    return {};
}

std::vector<std::string> CatalogueFixture::logLines(const std::string& part) const {
    auto lines = sink_.lines();
    std::erase_if(lines, [&](const std::string& line) { return line.find(part) == std::string::npos; });
    return lines;
}

} // namespace glyma::test
