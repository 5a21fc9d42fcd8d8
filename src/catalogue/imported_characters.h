#pragma once

#include "data/cldr_importer.h"
#include "data/records.h"
#include "data/unicode_data_importer.h"
#include "data/unikemet_importer.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace glyma {

/// What the reference files say, as they were read.
struct ReferenceData {
    std::vector<UnicodeDataImporter::BlockData> blocks;
    std::vector<UnicodeDataImporter::CharData> characters;
    std::vector<CLDRImporter::CharData> annotations;
    UniKemetImporter::Descriptions descriptions; ///< may be empty
};

/// Turns the reference data into catalogue records: which characters and sequences there are, what they are
/// called, by what they are found and which start switched on. One import; one thread.
class ImportedCharacters {
public:
    /// \param data  must outlive this.
    /// \param kept  the positions in data.characters of those that can be drawn, ascending.
    ImportedCharacters(const ReferenceData& data, std::span<const std::size_t> kept);

    /// \param canDraw  decides about the sequences, which only the annotations know.
    void build(const std::function<bool(std::string_view)>& canDraw);

    const std::vector<UnicodeChar>& records() const { return records_; }
    /// One for each block of the data, with the figures of what was built.
    std::vector<UnicodeBlock> blocks() const;
    /// How many characters got their keywords from the descriptions.
    std::int64_t enrichedCount() const { return enrichedCount_; }

private:
    struct Figures {
        std::int64_t characterCount = 0;
        std::int64_t sampleCount = 0;
        std::string sampleChars;
    };

    void addCharacter(const UnicodeDataImporter::CharData& source);
    void addSequence(const CLDRImporter::CharData& source);
    const CLDRImporter::CharData* annotation(std::string_view character) const;
    std::vector<std::string> describingKeywords(std::int64_t codepoint);
    void add(UnicodeChar record);

    const ReferenceData& data_;
    std::span<const std::size_t> kept_;
    std::unordered_map<std::string_view, const CLDRImporter::CharData*> annotations_;
    std::unordered_map<std::string, Figures> figures_; ///< by block
    std::vector<UnicodeChar> records_;
    std::int64_t enrichedCount_ = 0;
};

} // namespace glyma
