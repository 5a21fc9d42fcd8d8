#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

/// Substring search for a whole catalogue at once: 64 places at a time are tested for the first and the last
/// byte of the text sought; only where both agree is the rest compared.
namespace glyma {

/// How many bytes behind the end of a scanned text must be readable.
inline constexpr std::size_t scanPadding = 64;

/// The places at + 0 to at + 63, as bits, where `first` stands with `last` standing `distance` bytes further
/// on.
inline std::uint64_t portableCandidates(const char* at, char first, char last, std::size_t distance) {
    std::uint64_t places = 0;
    for (unsigned place = 0; place < 64; ++place)
        places |= static_cast<std::uint64_t>(at[place] == first && at[place + distance] == last) << place;
    return places;
}

#if defined(__SSE2__)
inline std::uint64_t candidates(const char* at, char first, char last, std::size_t distance) {
    const auto firsts = _mm_set1_epi8(first);
    const auto lasts = _mm_set1_epi8(last);
    const auto sixteen = [&](unsigned offset) {
        const auto heads = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at + offset));
        const auto tails = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at + offset + distance));
        const auto both = _mm_and_si128(_mm_cmpeq_epi8(heads, firsts), _mm_cmpeq_epi8(tails, lasts));
        return static_cast<std::uint64_t>(static_cast<unsigned>(_mm_movemask_epi8(both))) << offset;
    };
    return sixteen(0) | sixteen(16) | sixteen(32) | sixteen(48);
}
#else
inline std::uint64_t candidates(const char* at, char first, char last, std::size_t distance) {
    return portableCandidates(at, first, last, distance);
}
#endif

/// A text to look for; not empty. Refers to the text given.
class Needle {
public:
    explicit Needle(std::string_view text)
        : text_(text) {
        const auto bytes = text.size() < 8 ? text.size() : 8;
        std::memcpy(&head_, text.data(), bytes);
        std::memset(&headMask_, 0xFF, bytes);
    }

    std::string_view text() const { return text_; }
    std::size_t size() const { return text_.size(); }
    char first() const { return text_.front(); }
    char last() const { return text_.back(); }

    /// Whether it stands at `at`; reads no further than the first difference, or eight bytes.
    bool standsAt(const char* at) const {
        std::uint64_t head = 0;
        std::memcpy(&head, at, sizeof head);
        if ((head & headMask_) != head_)
            return false;
        for (std::size_t index = 8; index < text_.size(); ++index)
            if (at[index] != text_[index])
                return false;
        return true;
    }

private:
    std::string_view text_;
    std::uint64_t head_ = 0;
    std::uint64_t headMask_ = 0;
};

/// Tells where the needle stands in a text, overlapping places included, from front to back.
/// \param text   with scanPadding readable bytes behind it.
/// \param visit  takes the place and returns the first place that it wants to hear of next.
template<typename Visitor>
void forEachOccurrence(std::string_view text, const Needle& needle, Visitor&& visit) {
    if (text.size() < needle.size())
        return;
    const auto lastPlace = text.size() - needle.size();
    const auto distance = needle.size() - 1;
    std::size_t wanted = 0;
    for (std::size_t block = 0; block <= lastPlace; block += 64) {
        auto places = candidates(text.data() + block, needle.first(), needle.last(), distance);
        if (places == 0)
            continue;
        if (lastPlace - block < 63)
            places &= (std::uint64_t{2} << (lastPlace - block)) - 1;
        while (places != 0) {
            if (wanted > block) {
                if (wanted - block > 63)
                    break;
                places &= ~std::uint64_t{0} << (wanted - block);
                if (places == 0)
                    break;
            }
            const auto place = block + static_cast<unsigned>(std::countr_zero(places));
            places &= places - 1;
            if (needle.standsAt(text.data() + place))
                wanted = visit(place);
        }
    }
}

/// The first place where the needle stands, or npos.
/// \param text  with scanPadding readable bytes behind it.
inline std::size_t firstOccurrence(std::string_view text, const Needle& needle) {
    auto found = std::string_view::npos;
    forEachOccurrence(text, needle, [&](std::size_t place) {
        if (found == std::string_view::npos)
            found = place;
        return text.size();
    });
    return found;
}

} // namespace glyma
