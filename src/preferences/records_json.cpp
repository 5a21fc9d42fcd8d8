#include "preferences/records_json.h"

#include "preferences/uuid.h"

#include <nlohmann/json.hpp>

#include <limits>

namespace glyma {

using nlohmann::json;

namespace {

/// Reads the fields of one object and remembers whether all were there.
class FieldReader {
public:
    explicit FieldReader(const json& object)
        : object_(object)
        , complete_(object.is_object()) {}

    bool complete() const { return complete_; }

    void read(const char* key, std::string& field) {
        if (const auto* value = find(key, &json::is_string))
            field = value->get<std::string>();
    }
    void read(const char* key, bool& field) {
        if (const auto* value = find(key, &json::is_boolean))
            field = value->get<bool>();
    }
    void read(const char* key, std::vector<std::string>& field) {
        const auto* value = find(key, &json::is_array);
        if (!value)
            return;
        field.clear();
        for (const auto& element : *value) {
            if (!element.is_string()) {
                complete_ = false;
                return;
            }
            field.push_back(element.get<std::string>());
        }
    }
    template<std::unsigned_integral Number>
    void read(const char* key, Number& field) {
        const auto* value = find(key, &json::is_number_unsigned);
        if (!value)
            return;
        const auto number = value->get<std::uint64_t>();
        complete_ = complete_ && number <= std::numeric_limits<Number>::max();
        field = static_cast<Number>(number);
    }

private:
    const json* find(const char* key, bool (json::*hasType)() const noexcept) {
        const auto place = object_.is_object() ? object_.find(key) : object_.end();
        if (place != object_.end() && ((*place).*hasType)())
            return &*place;
        complete_ = false;
        return nullptr;
    }

    const json& object_;
    bool complete_;
};

} // namespace

json encode(const UserReplacement& record) {
    return {{"id", record.id}, {"name", record.name}, {"keywords", record.keywords}, {"text", record.text}};
}

json encode(const ExcludedApp& record) {
    return {{"bundleID", record.bundleID}, {"name", record.name}, {"isExcluded", record.isExcluded}};
}

json encode(const ExcludedWebsite& record) {
    return {{"domain", record.domain}, {"isExcluded", record.isExcluded}};
}

json encode(const GlobalShortcut& record) {
    return {{"keyCode", record.keyCode},
            {"modifierRawValue", record.modifierRawValue},
            {"display", record.display}};
}

template<>
std::optional<UserReplacement> decode(const json& value) {
    UserReplacement record;
    FieldReader reader(value);
    reader.read("id", record.id);
    reader.read("name", record.name);
    reader.read("keywords", record.keywords);
    reader.read("text", record.text);
    auto id = canonicalUuid(record.id);
    if (!reader.complete() || !id)
        return std::nullopt;
    record.id = std::move(*id);
    return record;
}

template<>
std::optional<ExcludedApp> decode(const json& value) {
    ExcludedApp record;
    FieldReader reader(value);
    reader.read("bundleID", record.bundleID);
    reader.read("name", record.name);
    reader.read("isExcluded", record.isExcluded);
    return reader.complete() ? std::optional(record) : std::nullopt;
}

template<>
std::optional<ExcludedWebsite> decode(const json& value) {
    ExcludedWebsite record;
    FieldReader reader(value);
    reader.read("domain", record.domain);
    reader.read("isExcluded", record.isExcluded);
    return reader.complete() ? std::optional(record) : std::nullopt;
}

template<>
std::optional<GlobalShortcut> decode(const json& value) {
    GlobalShortcut record;
    FieldReader reader(value);
    reader.read("keyCode", record.keyCode);
    reader.read("modifierRawValue", record.modifierRawValue);
    reader.read("display", record.display);
    return reader.complete() ? std::optional(record) : std::nullopt;
}

template<typename Record>
std::optional<std::vector<Record>> decodeList(const json& value) {
    if (!value.is_array())
        return std::nullopt;
    std::vector<Record> records;
    for (const auto& element : value) {
        auto record = decode<Record>(element);
        if (!record)
            return std::nullopt;
        records.push_back(std::move(*record));
    }
    return records;
}

template<typename Record>
json encodeList(const std::vector<Record>& records) {
    auto list = json::array();
    for (const auto& record : records)
        list.push_back(encode(record));
    return list;
}

template std::optional<std::vector<UserReplacement>> decodeList(const json&);
template std::optional<std::vector<ExcludedApp>> decodeList(const json&);
template std::optional<std::vector<ExcludedWebsite>> decodeList(const json&);
template json encodeList(const std::vector<UserReplacement>&);
template json encodeList(const std::vector<ExcludedApp>&);
template json encodeList(const std::vector<ExcludedWebsite>&);

} // namespace glyma
