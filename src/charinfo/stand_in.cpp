#include "charinfo/stand_in.h"

#include "unicode/properties.h"
#include "unicode/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace glyma {

namespace {

struct Abbreviation {
    char32_t scalar;
    std::string_view text;
};

// Aliases of the kind "abbreviation" in the Unicode Character Database (NameAliases.txt) where there is one,
// else as the code charts show them.
constexpr auto abbreviations = std::to_array<Abbreviation>({
    {0x0020, "SP"},    {0x00A0, "NBSP"},  {0x00AD, "SHY"},  {0x034F, "CGJ"},    {0x061C, "ALM"},
    {0x115F, "HCF"},   {0x1160, "HJF"},   {0x1680, "OSPM"}, {0x17B4, "KIV AQ"}, {0x17B5, "KIV AA"},
    {0x180B, "FVS1"},  {0x180C, "FVS2"},  {0x180D, "FVS3"}, {0x180E, "MVS"},    {0x180F, "FVS4"},
    {0x2000, "NQSP"},  {0x2001, "MQSP"},  {0x2002, "ENSP"}, {0x2003, "EMSP"},   {0x2004, "3/MSP"},
    {0x2005, "4/MSP"}, {0x2006, "6/MSP"}, {0x2007, "FSP"},  {0x2008, "PSP"},    {0x2009, "THSP"},
    {0x200A, "HSP"},   {0x200B, "ZWSP"},  {0x200C, "ZWNJ"}, {0x200D, "ZWJ"},    {0x200E, "LRM"},
    {0x200F, "RLM"},   {0x2028, "LSEP"},  {0x2029, "PSEP"}, {0x202A, "LRE"},    {0x202B, "RLE"},
    {0x202C, "PDF"},   {0x202D, "LRO"},   {0x202E, "RLO"},  {0x202F, "NNBSP"},  {0x205F, "MMSP"},
    {0x2060, "WJ"},    {0x2061, "f()"},   {0x2062, "×"},    {0x2063, ","},      {0x2064, "+"},
    {0x2066, "LRI"},   {0x2067, "RLI"},   {0x2068, "FSI"},  {0x2069, "PDI"},    {0x206A, "ISS"},
    {0x206B, "ASS"},   {0x206C, "IAFS"},  {0x206D, "AAFS"}, {0x206E, "NADS"},   {0x206F, "NODS"},
    {0x2800, "BRSP"},  {0x3000, "IDSP"},  {0x3164, "HF"},   {0xFEFF, "BOM"},    {0xFFA0, "HWHF"},
    {0xFFF9, "IAA"},   {0xFFFA, "IAS"},   {0xFFFB, "IAT"},  {0xE0001, "LANG"},  {0xE007F, "TAG END"},
});

constexpr char32_t firstTag = 0xE0020;
constexpr char32_t lastTag = 0xE007E;

std::string standInOf(char32_t scalar) {
    const auto known = std::ranges::lower_bound(abbreviations, scalar, {}, &Abbreviation::scalar);
    if (known != abbreviations.end() && known->scalar == scalar)
        return std::string(known->text);
    if (scalar >= 0xFE00 && scalar <= 0xFE0F)
        return fmt::format("VS{}", scalar - 0xFE00 + 1);
    if (scalar >= 0xE0100 && scalar <= 0xE01EF)
        return fmt::format("VS{}", scalar - 0xE0100 + 17);
    if (scalar >= firstTag && scalar <= lastTag)
        return fmt::format("TAG {}", static_cast<char>(scalar - firstTag + ' '));
    return unicode::isInvisible(scalar) ? fmt::format("{:04X}", static_cast<std::uint32_t>(scalar))
                                        : std::string();
}

} // namespace

std::string invisibleStandIn(std::string_view character) {
    std::string text;
    for (const auto scalar : unicode::scalars(character)) {
        const auto standIn = standInOf(scalar);
        if (standIn.empty())
            return {};
        text.append(text.empty() ? "" : " ").append(standIn);
    }
    return text;
}

std::string missingGlyphStandIn(std::string_view character) {
    return fmt::format("{:04X}", static_cast<std::uint32_t>(unicode::firstScalar(character)));
}

std::string withCarrier(std::string_view character) {
    constexpr std::string_view dottedCircle = "\u25CC";
    if (!unicode::isMark(unicode::firstScalar(character)))
        return std::string(character);
    return std::string(dottedCircle).append(character);
}

} // namespace glyma
