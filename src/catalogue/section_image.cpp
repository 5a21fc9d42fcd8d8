#include "catalogue/section_image.h"

#include "catalogue/byte_scan.h"
#include "data/whole_file.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace glyma {

namespace {

constexpr std::size_t arrayCount = 13;
constexpr std::size_t sectionCount = 2;
constexpr std::size_t alignment = 64;

struct ArrayPlace {
    std::uint64_t offset; ///< from the start of the file, in bytes
    std::uint64_t size;   ///< in bytes
};

struct Header {
    std::array<char, 8> magic{'G', 'l', 'y', 'm', 'a', 'T', 'x', '1'};
    std::uint64_t byteOrder = 0x0102030405060708;
    std::uint64_t fileSize = 0;
    std::int64_t popularityTotal = 0;
    std::array<char, 128> key{};
    std::array<std::array<ArrayPlace, arrayCount>, sectionCount> arrays{};
};

bool setKey(Header& header, std::string_view key) {
    std::ranges::copy(key.substr(0, header.key.size()), header.key.begin());
    return key.size() <= header.key.size();
}

class Descriptor {
public:
    explicit Descriptor(int value)
        : value_(value) {}
    ~Descriptor() {
        if (value_ >= 0)
            close(value_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int get() const { return value_; }

private:
    int value_;
};

std::vector<char> serialized(Header& header, const CatalogueTexts& texts) {
    std::vector<char> bytes(sizeof(Header));
    auto section = header.arrays.begin();
    for (const auto* source : {texts.keyworded.get(), texts.rest.get()}) {
        auto place = section++->begin();
        SectionArrays::visitArrays(source->arrays(), [&](auto array) {
            bytes.resize((bytes.size() + alignment - 1) / alignment * alignment);
            *place++ = {bytes.size(), array.size_bytes()};
            const auto* const data = reinterpret_cast<const char*>(array.data());
            bytes.insert(bytes.end(), data, data + array.size_bytes());
        });
    }
    header.fileSize = bytes.size();
    std::memcpy(bytes.data(), &header, sizeof header);
    return bytes;
}

/// A mapped file.
class Mapping {
public:
    explicit Mapping(const std::filesystem::path& file) {
        const Descriptor descriptor(open(file.c_str(), O_RDONLY | O_CLOEXEC));
        struct stat status {};
        if (descriptor.get() < 0 || fstat(descriptor.get(), &status) != 0 ||
            static_cast<std::size_t>(status.st_size) < sizeof(Header))
            return;
        size_ = static_cast<std::size_t>(status.st_size);
        data_ = mmap(nullptr, size_, PROT_READ, MAP_PRIVATE, descriptor.get(), 0);
    }
    ~Mapping() {
        if (*this)
            munmap(data_, size_);
    }
    Mapping(const Mapping&) = delete;
    Mapping& operator=(const Mapping&) = delete;

    explicit operator bool() const { return data_ != MAP_FAILED; }
    const char* data() const { return static_cast<const char*>(data_); }
    std::size_t size() const { return size_; }

private:
    void* data_ = MAP_FAILED;
    std::size_t size_ = 0;
};

bool ascendWithin(std::span<const std::uint32_t> offsets, std::size_t end) {
    return !offsets.empty() && offsets.back() <= end && std::ranges::is_sorted(offsets);
}

bool allBelow(auto values, std::size_t end) {
    return std::ranges::all_of(values, [&](auto value) { return value < end; });
}

/// Whether a search in these arrays stays inside them, whatever the file was made by.
bool isSound(const SectionArrays& arrays) {
    const auto entries = arrays.rank.size();
    if (arrays.nameStart.size() != entries + 1 || arrays.keywordsStart.size() != entries ||
        arrays.nameMask.size() != entries || arrays.keywordsMask.size() != entries ||
        arrays.shownStart.size() != entries + 1 || arrays.block.size() != entries ||
        arrays.byCharacter.size() != entries ||
        (!arrays.letterScores.empty() && arrays.letterScores.size() != entries * letterCount))
        return false;
    if (arrays.folded.size() <= scanPadding ||
        !ascendWithin(arrays.nameStart, arrays.folded.size() - scanPadding) ||
        !ascendWithin(arrays.shownStart, arrays.shown.size()) || arrays.nameStart.front() == 0)
        return false;
    const auto end = arrays.nameStart.back();
    if (arrays.entryOfChunk.size() < (entries == 0 ? 0 : (end + 63) / 64))
        return false;
    for (std::size_t entry = 0; entry < entries; ++entry)
        if (arrays.keywordsStart[entry] <= arrays.nameStart[entry] ||
            arrays.keywordsStart[entry] > arrays.nameStart[entry + 1])
            return false;
    const auto blocks = std::ranges::count(arrays.blockNames, fieldEnd);
    return allBelow(arrays.entryOfChunk, std::max<std::size_t>(entries, 1)) &&
           allBelow(arrays.byCharacter, entries) &&
           allBelow(arrays.block, static_cast<std::size_t>(blocks)) && arrays.folded.back() == fieldEnd;
}

std::shared_ptr<const SearchSection> sectionAt(const std::shared_ptr<const Mapping>& mapping,
                                               const std::array<ArrayPlace, arrayCount>& places) {
    SectionArrays arrays;
    auto place = places.begin();
    bool inside = true;
    SectionArrays::visitArrays(arrays, [&]<typename Element>(std::span<const Element>& array) {
        const auto [offset, size] = *place++;
        if (offset > mapping->size() || size > mapping->size() - offset || offset % alignment != 0)
            inside = false;
        else
            array = {reinterpret_cast<const Element*>(mapping->data() + offset), size / sizeof(Element)};
    });
    if (!inside || !isSound(arrays))
        return nullptr;
    return std::make_shared<const SearchSection>(arrays, mapping);
}

} // namespace

bool writeImage(const std::filesystem::path& file, std::string_view key, const CatalogueTexts& texts) {
    Header header;
    header.popularityTotal = texts.popularityTotal;
    if (!setKey(header, key))
        return false;
    return replaceWholeFile(file, serialized(header, texts)).has_value();
}

std::optional<CatalogueTexts> mapImage(const std::filesystem::path& file, std::string_view key) {
    const auto mapping = std::make_shared<const Mapping>(file);
    if (!*mapping)
        return std::nullopt;
    Header header;
    Header wanted;
    std::memcpy(&header, mapping->data(), sizeof header);
    if (!setKey(wanted, key) || header.magic != wanted.magic || header.byteOrder != wanted.byteOrder ||
        header.key != wanted.key || header.fileSize != mapping->size())
        return std::nullopt;
    CatalogueTexts texts{sectionAt(mapping, header.arrays[0]), sectionAt(mapping, header.arrays[1]),
                         header.popularityTotal};
    if (!texts.keyworded || !texts.rest)
        return std::nullopt;
    return texts;
}

} // namespace glyma
