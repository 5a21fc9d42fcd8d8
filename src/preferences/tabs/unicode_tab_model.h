#pragma once

#include "catalogue/unicode_data_manager.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace glyma {

/// The catalogue as the preferences' Unicode tab shows and switches it: the blocks, the characters of the
/// selected one, what of them the filters let through. Fills itself when an import ends. Main thread.
class UnicodeTabModel {
public:
    enum class CheckState { off, mixed, on };
    /// How many of the selected characters are shown in detail.
    static constexpr std::size_t detailLimit = 12;

    /// \param catalogue  outlives the model.
    explicit UnicodeTabModel(UnicodeDataManager& catalogue);

    bool isImporting() const { return isImporting_; }
    /// The import's phase.
    const std::string& importStatus() const { return importStatus_; }
    /// Why the last import failed; empty when it did not.
    const std::string& importFailure() const { return importFailure_; }

    // Blocks, by name
    const std::vector<UnicodeBlock>& blocks() const { return blocks_; }
    /// Positions in blocks().
    const std::vector<std::size_t>& shownBlocks() const { return shownBlocks_; }
    std::int64_t enabledCount(const UnicodeBlock& block) const;
    CheckState checkState(const UnicodeBlock& block) const;
    void setBlockFilter(const std::string& text);
    /// A name that is not there, as none, shows no characters. The selection of characters ends.
    void selectBlock(const std::optional<std::string>& name);
    const std::optional<std::string>& selectedBlockName() const { return selectedBlockName_; }
    /// Switches all of its characters on, or off when all are on.
    void toggleBlock(const std::string& name);

    // The characters of the selected block, by name
    const std::vector<UnicodeChar>& blockChars() const { return blockChars_; }
    /// Positions in blockChars().
    const std::vector<std::size_t>& shownChars() const { return shownChars_; }
    /// What it hides is no longer selected, so that nothing is switched unseen.
    void setCharFilter(const std::string& text);
    void selectChars(std::set<std::string> characters);
    const std::set<std::string>& selectedChars() const { return selectedChars_; }
    /// Switches the character and, when it is selected, the other selected ones to what it then is.
    void toggleChar(const std::string& character);
    /// The first of the selected ones, detailLimit of them.
    std::vector<std::string> detailedChars() const;
    /// How many of the selected ones these leave out.
    std::size_t selectedOmitted() const;

    Signal<> importChanged;
    Signal<> shownBlocksChanged;
    Signal<> shownCharsChanged;
    Signal<> selectionChanged;
    /// Checks, counts and uses differ; the rows are the same.
    Signal<> valuesChanged;

private:
    void load();
    void loadChars();
    void filterBlocks();
    void filterChars();
    void refreshUses();
    UnicodeBlock* find(const std::string& name);

    UnicodeDataManager& catalogue_;
    bool isImporting_;
    std::string importStatus_;
    std::string importFailure_;
    std::vector<UnicodeBlock> blocks_;
    std::map<std::string, std::int64_t> enabledCounts_;
    std::string blockFilter_;
    std::vector<std::size_t> shownBlocks_;
    std::optional<std::string> selectedBlockName_;
    std::vector<UnicodeChar> blockChars_;
    std::vector<std::string> charTexts_; ///< what the filter looks at; filled when one is first set
    std::string charFilter_;
    std::vector<std::size_t> shownChars_;
    std::set<std::string> selectedChars_;
    std::vector<Subscription> subscriptions_;
};

} // namespace glyma
