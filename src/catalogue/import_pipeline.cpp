#include "catalogue/import_pipeline.h"

#include "catalogue/imported_characters.h"
#include "catalogue/user_data_files.h"

#include <exception>
#include <future>
#include <stdexcept>
#include <type_traits>
#include <utility>
#include <vector>

namespace glyma {

namespace {

/// Ends an import; run() is where it is caught.
class Abort : public std::runtime_error {
public:
    using runtime_error::runtime_error;
};

template<typename Value>
Value orAbort(std::expected<Value, std::string> result) {
    if (!result)
        throw Abort(result.error());
    if constexpr (!std::is_void_v<Value>)
        return *std::move(result);
}

class Import {
public:
    Import(const ImportPipeline& pipeline, Store& store)
        : pipeline_(pipeline)
        , store_(store) {}

    ImportSummary fill() {
        const auto wasEmpty = orAbort(store_.characterCount()) == 0;
        read();
        ImportedCharacters characters(data_, kept_);
        build(characters);
        auto transaction = orAbort(store_.begin());
        if (wasEmpty && orAbort(store_.characterCount()) > 0)
            return foundImported();
        insert(characters);
        begin("Restoring user data");
        restoreNewestUserData(store_, pipeline_.log);
        return finish(transaction, characters);
    }

    ImportSummary rebuild() {
        read();
        ImportedCharacters characters(data_, kept_);
        build(characters);
        auto transaction = orAbort(store_.begin());
        const auto taught = orAbort(store_.userData({}));
        orAbort(store_.removeCatalogue());
        insert(characters);
        begin("Restoring user data");
        orAbort(store_.restoreUserData(taught));
        return finish(transaction, characters);
    }

private:
    void begin(std::string_view phase) const {
        if (pipeline_.progress)
            pipeline_.progress(phase);
    }

    /// The files are read side by side; what each gave is taken in the order of the phases.
    void read() {
        const CLDRImporter cldr(pipeline_.resources, pipeline_.log);
        const UniKemetImporter uniKemet(pipeline_.resources, pipeline_.log);
        auto annotations = std::async(std::launch::async, [&] { return cldr.load(); });
        auto descriptions = std::async(std::launch::async, [&] { return uniKemet.load(); });
        // Finding the installed fonts takes as long as reading the largest file.
        auto fonts = std::async(std::launch::async, [&] { return pipeline_.fonts.canDraw(" "); });
        readCharacters();
        fonts.get();
        keepDrawable();
        readAnnotations(annotations);
        readDescriptions(descriptions);
    }

    void readCharacters() {
        const UnicodeDataImporter unicodeData(pipeline_.resources);
        begin("Importing Blocks.txt");
        data_.blocks = orAbort(unicodeData.loadBlocks());
        pipeline_.log.debug("Glyma: parsed {} Unicode blocks", data_.blocks.size());
        begin("Importing UnicodeData.txt");
        data_.characters = orAbort(unicodeData.loadCharacters(data_.blocks));
        pipeline_.log.debug("Glyma: parsed {} characters from UnicodeData.txt", data_.characters.size());
    }

    void keepDrawable() {
        begin("Checking font coverage");
        for (std::size_t index = 0; index < data_.characters.size(); ++index) {
            const auto& character = data_.characters[index].character;
            if (!character.empty() && pipeline_.fonts.canDraw(character))
                kept_.push_back(index);
        }
        pipeline_.log.debug("Glyma: filtered {} unrenderable characters",
                            data_.characters.size() - kept_.size());
    }

    void readAnnotations(
        std::future<std::expected<std::vector<CLDRImporter::CharData>, std::string>>& annotations) {
        begin("Importing annotations.json");
        data_.annotations = orAbort(annotations.get());
        pipeline_.log.debug("Glyma: parsed {} CLDR annotations", data_.annotations.size());
    }

    void
    readDescriptions(std::future<std::expected<UniKemetImporter::Descriptions, std::string>>& descriptions) {
        begin("Importing Unikemet.txt");
        if (auto loaded = descriptions.get())
            data_.descriptions = *std::move(loaded);
        else
            pipeline_.log.debug("Glyma: ⚠️ Unikemet import failed — {}", loaded.error());
    }

    void build(ImportedCharacters& characters) {
        begin("Inserting characters");
        characters.build([&](std::string_view sequence) { return pipeline_.fonts.canDraw(sequence); });
    }

    void insert(const ImportedCharacters& characters) {
        orAbort(store_.insertCharacters(characters.records()));
        pipeline_.log.debug("Glyma: enriched {} characters with Unikemet descriptions",
                            characters.enrichedCount());
        begin("Inserting Unicode blocks");
        orAbort(store_.insertBlocks(characters.blocks()));
        begin("Finalizing");
    }

    /// All in one transaction, what was taught included: were the catalogue on disk before, an end in between
    /// would leave a store that looks complete and has forgotten everything.
    ImportSummary finish(Store::Transaction& transaction, const ImportedCharacters& characters) {
        orAbort(transaction.commit());
        const ImportSummary summary{std::ssize(characters.records()), std::ssize(data_.blocks)};
        pipeline_.log.debug("Glyma: ✓ imported {} chars + {} blocks", summary.characters, summary.blocks);
        return summary;
    }

    /// Another process was faster.
    ImportSummary foundImported() const {
        begin("Inserting Unicode blocks");
        begin("Finalizing");
        begin("Restoring user data");
        return {orAbort(store_.characterCount()), std::ssize(orAbort(store_.blocks()))};
    }

    const ImportPipeline& pipeline_;
    Store& store_;
    ReferenceData data_;
    std::vector<std::size_t> kept_;
};

template<typename Work>
std::expected<ImportSummary, std::string> attempt(Log& log, const Work& work) {
    try {
        return work();
    } catch (const std::exception& error) {
        log.debug("Glyma: ⚠️ import failed — {}", error.what());
        return std::unexpected(error.what());
    }
}

} // namespace

std::expected<ImportSummary, std::string> ImportPipeline::run(Store& store) const {
    return attempt(log, [&] { return Import(*this, store).fill(); });
}

std::expected<ImportSummary, std::string> ImportPipeline::rebuild(Store& store) const {
    return attempt(log, [&] { return Import(*this, store).rebuild(); });
}

} // namespace glyma
