#include "preferences/tabs/unicode_tab_model.h"

#include "unicode/text.h"

#include <algorithm>

namespace glyma {

namespace {

/// All that the filter looks at, in one text. A filter has no line feed and so never matches across.
std::string filterText(const UnicodeChar& record) {
    return unicode::lowercased(record.name) + '\n' + unicode::lowercased(record.character) + '\n' +
           unicode::lowercased(record.keywordsRaw);
}

} // namespace

UnicodeTabModel::UnicodeTabModel(UnicodeDataManager& catalogue)
    : catalogue_(catalogue)
    , isImporting_(catalogue.isCurrentlyImporting()) {
    subscriptions_.push_back(catalogue.importStarted.connect([this] {
        isImporting_ = true;
        importStatus_.clear();
        importChanged.emit();
    }));
    subscriptions_.push_back(catalogue.importProgress.connect([this](const std::string& status) {
        importStatus_ = status;
        importChanged.emit();
    }));
    subscriptions_.push_back(catalogue.importComplete.connect([this](const std::string& failure) {
        isImporting_ = false;
        importFailure_ = failure;
        load();
        importChanged.emit();
    }));
    subscriptions_.push_back(catalogue.usageRecorded.connect([this] { refreshUses(); }));
    if (!isImporting_)
        load();
}

void UnicodeTabModel::load() {
    blocks_ = catalogue_.allBlocks();
    enabledCounts_ = catalogue_.enabledCounts();
    filterBlocks();
    selectBlock(selectedBlockName_);
}

UnicodeBlock* UnicodeTabModel::find(const std::string& name) {
    const auto block = std::ranges::find(blocks_, name, &UnicodeBlock::name);
    return block == blocks_.end() ? nullptr : &*block;
}

// --- Blocks

std::int64_t UnicodeTabModel::enabledCount(const UnicodeBlock& block) const {
    const auto found = enabledCounts_.find(block.name);
    return found == enabledCounts_.end() ? 0 : found->second;
}

UnicodeTabModel::CheckState UnicodeTabModel::checkState(const UnicodeBlock& block) const {
    const auto count = enabledCount(block);
    if (count == 0)
        return CheckState::off;
    return count < block.characterCount ? CheckState::mixed : CheckState::on;
}

void UnicodeTabModel::setBlockFilter(const std::string& text) {
    blockFilter_ = unicode::lowercased(text);
    filterBlocks();
}

void UnicodeTabModel::filterBlocks() {
    shownBlocks_.clear();
    for (std::size_t position = 0; position < blocks_.size(); ++position)
        if (unicode::lowercased(blocks_[position].name).find(blockFilter_) != std::string::npos)
            shownBlocks_.push_back(position);
    shownBlocksChanged.emit();
}

void UnicodeTabModel::selectBlock(const std::optional<std::string>& name) {
    selectedBlockName_ = name && find(*name) != nullptr ? name : std::nullopt;
    selectedChars_.clear();
    loadChars();
    selectionChanged.emit();
}

void UnicodeTabModel::toggleBlock(const std::string& name) {
    auto* const block = find(name);
    if (block == nullptr)
        return;
    const bool enabled = enabledCount(*block) < block->characterCount;
    block->isEnabled = enabled;
    enabledCounts_[name] = enabled ? block->characterCount : 0;
    if (name == selectedBlockName_)
        for (auto& record : blockChars_)
            record.isEnabled = enabled;
    catalogue_.setBlockCharactersEnabled(name, enabled);
    valuesChanged.emit();
}

// --- Characters

void UnicodeTabModel::loadChars() {
    blockChars_ =
        selectedBlockName_ ? catalogue_.charactersInBlock(*selectedBlockName_) : std::vector<UnicodeChar>();
    charTexts_.clear();
    filterChars();
}

void UnicodeTabModel::setCharFilter(const std::string& text) {
    charFilter_ = unicode::lowercased(text);
    filterChars();
    std::set<std::string> kept;
    for (const auto position : shownChars_)
        if (selectedChars_.contains(blockChars_[position].character))
            kept.insert(blockChars_[position].character);
    selectChars(std::move(kept));
}

void UnicodeTabModel::filterChars() {
    if (charTexts_.empty() && !charFilter_.empty())
        std::ranges::transform(blockChars_, std::back_inserter(charTexts_), filterText);
    shownChars_.clear();
    for (std::size_t position = 0; position < blockChars_.size(); ++position)
        if (charFilter_.empty() || charTexts_[position].find(charFilter_) != std::string::npos)
            shownChars_.push_back(position);
    shownCharsChanged.emit();
}

void UnicodeTabModel::selectChars(std::set<std::string> characters) {
    if (characters == selectedChars_)
        return;
    selectedChars_ = std::move(characters);
    selectionChanged.emit();
}

void UnicodeTabModel::toggleChar(const std::string& character) {
    const auto clicked = std::ranges::find(blockChars_, character, &UnicodeChar::character);
    if (clicked == blockChars_.end())
        return;
    const bool enabled = !clicked->isEnabled;
    const bool isSelected = selectedChars_.contains(character);
    std::vector<std::string> switched;
    std::int64_t count = 0;
    for (auto& record : blockChars_) {
        if (record.character == character || (isSelected && selectedChars_.contains(record.character))) {
            record.isEnabled = enabled;
            switched.push_back(record.character);
        }
        count += record.isEnabled ? 1 : 0;
    }
    auto& block = *find(*selectedBlockName_);
    block.isEnabled = count > 0;
    enabledCounts_[block.name] = count;
    catalogue_.setCharactersEnabled(block.name, block.isEnabled, std::move(switched), enabled);
    valuesChanged.emit();
}

std::vector<std::string> UnicodeTabModel::detailedChars() const {
    std::vector<std::string> characters;
    for (const auto& record : blockChars_)
        if (characters.size() < detailLimit && selectedChars_.contains(record.character))
            characters.push_back(record.character);
    return characters;
}

std::size_t UnicodeTabModel::selectedOmitted() const {
    return selectedChars_.size() - std::min(selectedChars_.size(), detailLimit);
}

void UnicodeTabModel::refreshUses() {
    if (!selectedBlockName_)
        return;
    const auto stored = catalogue_.charactersInBlock(*selectedBlockName_);
    if (!std::ranges::equal(stored, blockChars_, {}, &UnicodeChar::character, &UnicodeChar::character))
        return;
    for (std::size_t position = 0; position < stored.size(); ++position) {
        blockChars_[position].usageCount = stored[position].usageCount;
        blockChars_[position].lastUsed = stored[position].lastUsed;
    }
    valuesChanged.emit();
}

} // namespace glyma
