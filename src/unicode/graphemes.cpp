#include "unicode/ascii.h"
#include "unicode/text.h"

#include <unicode/brkiter.h>
#include <unicode/utext.h>

#include <algorithm>
#include <memory>
#include <stdexcept>

namespace glyma::unicode {
namespace {

std::unique_ptr<icu::BreakIterator> makeBreakIterator() {
    auto status = U_ZERO_ERROR;
    std::unique_ptr<icu::BreakIterator> iterator(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    if (U_FAILURE(status))
        throw std::runtime_error("ICU has no character break rules");
    return iterator;
}

/// The boundaries of the clusters of one text. An iterator keeps state: each thread has its own.
class Boundaries {
public:
    explicit Boundaries(std::string_view text)
        : size_(text.size()) {
        auto status = U_ZERO_ERROR;
        utext_openUTF8(&text_, text.data(), static_cast<std::int64_t>(text.size()), &status);
        iterator().setText(&text_, status);
        if (U_FAILURE(status))
            throw std::runtime_error("ICU cannot read the text");
    }
    ~Boundaries() { utext_close(&text_); }
    Boundaries(const Boundaries&) = delete;
    Boundaries& operator=(const Boundaries&) = delete;

    /// The next boundary, or none at the end.
    bool next(std::size_t& offset) { return moved(iterator().next(), offset); }
    /// `count` boundaries on, or the end.
    std::size_t forward(std::size_t count) {
        std::size_t offset = 0;
        while (count-- > 0 && next(offset)) {
        }
        return offset;
    }
    /// `count` boundaries back from the end, or the beginning.
    std::size_t backward(std::size_t count) {
        iterator().last();
        auto offset = size_;
        while (count-- > 0 && moved(iterator().previous(), offset)) {
        }
        return offset;
    }

private:
    static icu::BreakIterator& iterator() {
        static const auto prototype = makeBreakIterator();
        thread_local const std::unique_ptr<icu::BreakIterator> own(prototype->clone());
        // The analyzer takes a thread_local for a local and destroys it here.
        return *own; // NOLINT(clang-analyzer-cplusplus.NewDelete)
    }
    static bool moved(std::int32_t boundary, std::size_t& offset) {
        if (boundary == icu::BreakIterator::DONE)
            return false;
        offset = static_cast<std::size_t>(boundary);
        return true;
    }

    std::size_t size_;
    UText text_ = UTEXT_INITIALIZER;
};

/// Every byte is a cluster: in ASCII only CR LF joins.
bool isPlain(std::string_view text) {
    return isAscii(text) && text.find('\r') == std::string_view::npos;
}

bool isOneScalar(std::string_view text) {
    std::size_t end = 0;
    return !text.empty() && (nextScalar(text, end), end == text.size());
}

} // namespace

std::vector<std::string_view> graphemes(std::string_view text) {
    std::vector<std::string_view> clusters;
    if (isOneScalar(text))
        return {text};
    if (isPlain(text)) {
        clusters.reserve(text.size());
        for (std::size_t at = 0; at < text.size(); ++at)
            clusters.push_back(text.substr(at, 1));
        return clusters;
    }
    Boundaries boundaries(text);
    for (std::size_t start = 0, end = 0; boundaries.next(end); start = end)
        clusters.push_back(text.substr(start, end - start));
    return clusters;
}

std::size_t graphemeCount(std::string_view text) {
    if (isPlain(text))
        return text.size();
    Boundaries boundaries(text);
    std::size_t count = 0;
    for (std::size_t end = 0; boundaries.next(end);)
        ++count;
    return count;
}

void visitGraphemes(std::string_view text, const std::function<bool(std::string_view)>& visit) {
    if (isPlain(text)) {
        for (std::size_t at = 0; at < text.size() && visit(text.substr(at, 1)); ++at) {
        }
        return;
    }
    Boundaries boundaries(text);
    for (std::size_t start = 0, end = 0; boundaries.next(end) && visit(text.substr(start, end - start));
         start = end) {
    }
}

std::string_view firstGraphemes(std::string_view text, std::size_t count) {
    if (isPlain(text))
        return text.substr(0, count);
    return text.substr(0, Boundaries(text).forward(count));
}

std::string_view lastGraphemes(std::string_view text, std::size_t count) {
    if (isPlain(text))
        return text.substr(text.size() - std::min(count, text.size()));
    return text.substr(Boundaries(text).backward(count));
}

std::string_view withoutLastGrapheme(std::string_view text) {
    if (isPlain(text))
        return text.substr(0, text.size() - std::min<std::size_t>(1, text.size()));
    return text.substr(0, Boundaries(text).backward(1));
}

} // namespace glyma::unicode
