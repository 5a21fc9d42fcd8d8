#pragma once

#include <algorithm>
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
        for (std::size_t place = 1; place < text.size(); ++place) {
            if (rarity(text[place]) > rarity(text[rarest_])) {
                second_ = rarest_;
                rarest_ = place;
            } else if (second_ == rarest_ || rarity(text[place]) > rarity(text[second_])) {
                second_ = place;
            }
        }
    }

    std::string_view text() const { return text_; }
    std::size_t size() const { return text_.size(); }

    /// The places at + 0 to at + 63, as bits, where the needle's two rarest bytes stand.
    std::uint64_t candidatesAt(const char* at) const {
        const auto [left, right] = std::minmax(rarest_, second_);
        return candidates(at + left, text_[left], text_[right], right - left);
    }

    /// Of length one, for its rarest byte alone.
    Needle rarestByte() const { return Needle(text_.substr(rarest_, 1)); }

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
    /// English letters from the most frequent on; what is not among them is rare in names.
    static std::size_t rarity(char byte) { return std::string_view("eaiorntslghdpcmyubfwkvxjqz").find(byte); }

    std::string_view text_;
    std::uint64_t head_ = 0;
    std::uint64_t headMask_ = 0;
    std::size_t rarest_ = 0; ///< place of the rarest byte
    std::size_t second_ = 0; ///< of the second rarest; the same in a text of one byte
};

/// Tells where the needle stands in a text, from front to back.
/// \param text   with scanPadding readable bytes behind it.
/// \param visit  takes the place and returns the first place, behind it, that it wants to hear of next.
template<typename Visitor>
void forEachOccurrence(std::string_view text, const Needle& needle, Visitor&& visit) {
    if (text.size() < needle.size())
        return;
    const auto lastPlace = text.size() - needle.size();
    for (std::size_t block = 0; block <= lastPlace;) {
        auto places = needle.candidatesAt(text.data() + block);
        if (lastPlace - block < 63)
            places &= (std::uint64_t{2} << (lastPlace - block)) - 1;
        auto next = block + 64;
        for (; places != 0; places &= places - 1) {
            const auto place = block + static_cast<unsigned>(std::countr_zero(places));
            if (needle.standsAt(text.data() + place)) {
                next = visit(place);
                break;
            }
        }
        block = next;
    }
}

/// The first place where the needle stands, or npos.
/// \param text  with scanPadding readable bytes behind it.
inline std::size_t firstOccurrence(std::string_view text, const Needle& needle) {
    auto found = std::string_view::npos;
    forEachOccurrence(text, needle, [&](std::size_t place) {
        found = place;
        return text.size();
    });
    return found;
}

} // namespace glyma
