#include "catalogue/radix_sort.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace glyma {

namespace {

constexpr unsigned digitBits = 11;
constexpr std::size_t worthCounting = 64;

} // namespace

void radixSort(std::vector<std::uint64_t>& values, unsigned lowBit, unsigned bits) {
    const auto mask = bits >= 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << bits) - 1;
    if (values.size() < worthCounting) {
        std::ranges::stable_sort(values, {}, [&](std::uint64_t value) { return value >> lowBit & mask; });
        return;
    }
    std::vector<std::uint64_t> sorted(values.size());
    for (unsigned done = 0; done < bits; done += digitBits) {
        const auto digit = [shift = lowBit + done, digitMask = mask >> done & ((1u << digitBits) - 1)](
                               std::uint64_t value) { return value >> shift & digitMask; };
        std::array<std::uint32_t, 1u << digitBits> places{};
        for (const auto value : values)
            ++places[digit(value)];
        std::uint32_t next = 0;
        for (auto& place : places) {
            const auto count = place;
            place = next;
            next += count;
        }
        for (const auto value : values)
            sorted[places[digit(value)]++] = value;
        values.swap(sorted);
    }
}

} // namespace glyma
