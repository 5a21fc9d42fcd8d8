#pragma once

#include "catalogue/catalogue_index.h"
#include "catalogue/catalogue_values.h"
#include "catalogue/learned_terms.h"
#include "catalogue/reference_scorer.h"

#include <memory>
#include <random>
#include <string>
#include <vector>

namespace glyma::test {

/// An entry with its folded fields.
EmojiEntry makeEntry(std::string character, std::string name, std::vector<std::string> keywords = {},
                     std::int64_t rank = notRanked);

/// A made-up catalogue in both forms: as the program searches it and as plain entries.
struct SampleCatalogue {
    std::vector<EmojiEntry> keyworded, personal, rest;
    std::int64_t popularityTotal = 0;
    reference::LearnedTerms terms;
    Timestamp now;

    /// keyworded and personal, in index order.
    std::vector<EmojiEntry> indexed() const;
    CatalogueIndex index() const;
    LearnedTerms learnedTerms() const;
};

/// Names and keywords of few words over and over, so that queries match many entries in every way there is.
SampleCatalogue makeSampleCatalogue(std::mt19937_64& random);
/// Parts of words, of several words, misspelt words, with spaces, capitals, accents.
std::string makeQuery(std::mt19937_64& random);

} // namespace glyma::test
