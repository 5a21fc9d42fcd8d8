#pragma once

#include <cstdint>
#include <vector>

namespace glyma {

/// Sorts by the bits from `lowBit` on, `bits` of them, ascending; equal ones keep their order.
void radixSort(std::vector<std::uint64_t>& values, unsigned lowBit, unsigned bits);

} // namespace glyma
