#include "data/cldr_importer.h"

#include "data/resource_text.h"
#include "unicode/ascii.h"
#include "unicode/properties.h"

#include <nlohmann/json.hpp>

#include <utility>

namespace glyma {
namespace {

using CharData = CLDRImporter::CharData;
using Json = nlohmann::json;

constexpr const char* wrongShape = "Unexpected top-level JSON structure";

/// Collects {"annotations": {"annotations": {CHARACTER: {"tts": [NAME, ...], "default": [KEYWORD, ...]}}}}
/// while the file is read: a document in memory costs several times as much. `matched_` counts the containers
/// on that road that are open, `depth_` all that are open.
class AnnotationReader final : public Json::json_sax_t {
public:
    std::vector<CharData> take() { return std::move(result_); }
    bool foundAnnotations() const { return foundAnnotations_; }
    const std::string& error() const { return error_; }

    bool null() override { return scalar(); }
    bool boolean(bool) override { return scalar(); }
    bool number_integer(Json::number_integer_t) override { return scalar(); }
    bool number_unsigned(Json::number_unsigned_t) override { return scalar(); }
    bool number_float(Json::number_float_t, const std::string&) override { return scalar(); }
    bool binary(Json::binary_t&) override { return scalar(); }
    bool string(std::string& value) override {
        if (inList())
            list().push_back(std::move(value));
        return true;
    }

    bool key(std::string& value) override {
        if (matched_ == depth_)
            key_ = value;
        return true;
    }
    bool start_object(std::size_t) override {
        spoilList();
        const bool expected = matched_ == depth_ && (matched_ == Nothing || matched_ == Annotations ||
                                                     (matched_ < Annotations && key_ == "annotations"));
        ++depth_;
        if (expected && ++matched_ == Entry)
            beginEntry();
        foundAnnotations_ |= matched_ == Annotations;
        return true;
    }
    bool end_object() override {
        --depth_;
        if (matched_ > depth_ && matched_-- == Entry)
            endEntry();
        return true;
    }
    bool start_array(std::size_t) override {
        spoilList();
        const bool expected = matched_ == depth_ && matched_ == Entry && (key_ == "tts" || key_ == "default");
        ++depth_;
        if (expected) {
            ++matched_;
            list_ = key_ == "tts" ? &names_ : &entry_.keywords;
            list_->clear();
            spoiled_ = false;
        }
        return true;
    }
    bool end_array() override {
        --depth_;
        if (matched_ > depth_) {
            --matched_;
            if (spoiled_)
                list_->clear();
        }
        return true;
    }
    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& exception) override {
        error_ = exception.what();
        return false;
    }

private:
    enum Matched { Nothing, Top, Outer, Annotations, Entry, List };

    bool inList() const { return matched_ == List && depth_ == List; }
    std::vector<std::string>& list() { return *list_; }
    /// A list that holds anything but strings counts as absent.
    void spoilList() { spoiled_ |= inList(); }
    bool scalar() {
        spoilList();
        return true;
    }

    void beginEntry() {
        entry_ = {};
        entry_.character = key_;
        names_.clear();
    }
    void endEntry() {
        // A key that is all ASCII is a plain keyboard character.
        if (unicode::isAscii(entry_.character) || names_.empty() || names_.front().empty())
            return;
        entry_.character = unicode::withEmojiPresentation(entry_.character);
        entry_.name = std::move(names_.front());
        result_.push_back(std::move(entry_));
    }

    std::vector<CharData> result_;
    std::string error_;
    bool foundAnnotations_ = false;

    int depth_ = 0;
    int matched_ = Nothing;
    std::string key_;
    CharData entry_;
    std::vector<std::string> names_;
    std::vector<std::string>* list_ = nullptr;
    bool spoiled_ = false;
};

} // namespace

std::expected<std::vector<CharData>, std::string> CLDRImporter::parse(std::string_view json) {
    AnnotationReader reader;
    if (!Json::sax_parse(json.begin(), json.end(), &reader))
        return std::unexpected(reader.error());
    if (!reader.foundAnnotations())
        return std::unexpected(std::string(wrongShape));
    return reader.take();
}

std::expected<std::vector<CharData>, std::string> CLDRImporter::load() const {
    const auto file = readResource(resources_, "annotations", "json");
    if (!file)
        return std::unexpected(file.error());
    log_.debug("Glyma: loading CLDR annotations from {}…", file->path.filename().string());
    auto annotations = parse(file->text);
    if (!annotations)
        return std::unexpected(file->problem(fmt::format("cannot be used ({})", annotations.error())));
    if (annotations->empty())
        return std::unexpected(file->problem("holds no annotations"));
    return annotations;
}

} // namespace glyma
