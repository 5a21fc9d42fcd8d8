#include "data/user_data_backup.h"

#include "data/json_date.h"

#include <fmt/chrono.h>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <limits>
#include <utility>

namespace glyma {

using nlohmann::json;

namespace {

json encode(const UserDataBackup::CharUsage& usage) {
    json object{{"count", usage.count}};
    if (usage.lastUsed)
        object["lastUsed"] = toJsonDate(*usage.lastUsed);
    return object;
}

json encode(const UserDataBackup::TermSelectionRecord& selection) {
    return {{"term", selection.term},
            {"char", selection.character},
            {"count", selection.count},
            {"lastUsed", toJsonDate(selection.lastUsed)}};
}

struct BlockStateEncoder {
    json operator()(const UserDataBackup::AllEnabled&) const { return {{"allEnabled", json::object()}}; }
    json operator()(const UserDataBackup::AllDisabled&) const { return {{"allDisabled", json::object()}}; }
    json operator()(const UserDataBackup::Partial& state) const {
        return {{"partial", {{"enabledChars", state.enabledChars}}}};
    }
};

/// Ends the reading of a document; decodeUserDataBackup() is where it is caught.
class Rejected : public std::exception {
public:
    explicit Rejected(BackupRejection why)
        : rejection(std::move(why)) {}
    BackupRejection rejection;
};

/// A value of the document together with its place.
class Value {
public:
    Value(const json& value, std::string path)
        : value_(value)
        , path_(std::move(path)) {}

    [[noreturn]] void reject(std::string message) const { throw Rejected({path_, std::move(message)}); }

    std::optional<Value> find(const std::string& name) const {
        const auto place = object().find(name);
        if (place == value_.end())
            return std::nullopt;
        return Value(*place, below(name));
    }
    Value member(const std::string& name) const {
        if (auto found = find(name))
            return *std::move(found);
        Value(value_, below(name)).reject("is missing");
    }
    template<typename Visitor>
    void visitMembers(const Visitor& visitor) const {
        for (const auto& [name, value] : object().items())
            visitor(name, Value(value, below(name)));
    }
    template<typename Visitor>
    void visitElements(const Visitor& visitor) const {
        require(value_.is_array(), "expected an array");
        for (std::size_t index = 0; index < value_.size(); ++index)
            visitor(Value(value_[index], below(std::to_string(index))));
    }

    const json& object() const {
        require(value_.is_object(), "expected an object");
        return value_;
    }
    std::string string() const {
        require(value_.is_string(), "expected a string");
        return value_.get<std::string>();
    }
    std::int64_t integer() const {
        constexpr std::uint64_t largest = std::numeric_limits<std::int64_t>::max();
        require(value_.is_number_integer() &&
                    (!value_.is_number_unsigned() || value_.get<std::uint64_t>() <= largest),
                "expected an integer of 64 bits");
        return value_.get<std::int64_t>();
    }
    Timestamp date() const {
        require(value_.is_number(), "expected a number");
        return fromJsonDate(value_.get<double>());
    }

private:
    void require(bool condition, const char* message) const {
        if (!condition)
            reject(message);
    }
    std::string below(const std::string& name) const { return path_.empty() ? name : path_ + "/" + name; }

    const json& value_;
    std::string path_;
};

UserDataBackup::CharUsage decodeUsage(const Value& value) {
    UserDataBackup::CharUsage usage{value.member("count").integer(), std::nullopt};
    if (const auto lastUsed = value.find("lastUsed"))
        usage.lastUsed = lastUsed->date();
    return usage;
}

UserDataBackup::TermSelectionRecord decodeTermSelection(const Value& value) {
    return {value.member("term").string(), value.member("char").string(), value.member("count").integer(),
            value.member("lastUsed").date()};
}

UserDataBackup::BlockState decodeBlockState(const Value& value) {
    const auto allEnabled = value.find("allEnabled");
    const auto allDisabled = value.find("allDisabled");
    const auto partial = value.find("partial");
    if (allEnabled.has_value() + allDisabled.has_value() + partial.has_value() != 1)
        value.reject("Invalid number of keys found, expected one.");
    if (allEnabled) {
        allEnabled->object();
        return UserDataBackup::AllEnabled{};
    }
    if (allDisabled) {
        allDisabled->object();
        return UserDataBackup::AllDisabled{};
    }
    UserDataBackup::Partial state;
    partial->member("enabledChars").visitElements([&](const Value& character) {
        state.enabledChars.push_back(character.string());
    });
    return state;
}

UserDataBackup decode(const Value& document) {
    UserDataBackup backup;
    backup.version = document.member("version").integer();
    backup.exportDate = document.member("exportDate").date();
    document.member("charUsage").visitMembers([&](const std::string& character, const Value& usage) {
        backup.charUsage.emplace(character, decodeUsage(usage));
    });
    document.member("termSelections").visitElements([&](const Value& selection) {
        backup.termSelections.push_back(decodeTermSelection(selection));
    });
    document.member("blockStates").visitMembers([&](const std::string& block, const Value& state) {
        backup.blockStates.emplace(block, decodeBlockState(state));
    });
    return backup;
}

} // namespace

std::string BackupRejection::text() const {
    return path.empty() ? message : path + ": " + message;
}

std::string encode(const UserDataBackup& backup) {
    json document{{"version", backup.version},
                  {"exportDate", toJsonDate(backup.exportDate)},
                  {"charUsage", json::object()},
                  {"termSelections", json::array()},
                  {"blockStates", json::object()}};
    for (const auto& [character, usage] : backup.charUsage)
        document["charUsage"][character] = encode(usage);
    for (const auto& selection : backup.termSelections)
        document["termSelections"].push_back(encode(selection));
    for (const auto& [block, state] : backup.blockStates)
        document["blockStates"][block] = std::visit(BlockStateEncoder{}, state);
    std::string escaped;
    // In JSON a slash can only stand inside a string.
    for (const auto byte : document.dump(-1, ' ', false, json::error_handler_t::replace)) {
        if (byte == '/')
            escaped += '\\';
        escaped += byte;
    }
    return escaped;
}

std::expected<UserDataBackup, BackupRejection> decodeUserDataBackup(std::string_view bytes) {
    try {
        return decode(Value(json::parse(bytes), ""));
    } catch (const Rejected& rejected) {
        return std::unexpected(rejected.rejection);
    } catch (const json::parse_error& error) {
        // Its own words would quote the text around the place.
        return std::unexpected(
            BackupRejection{"", fmt::format("not JSON in UTF-8, from byte {} on", error.byte)});
    } catch (const std::exception&) {
        return std::unexpected(BackupRejection{"", "not JSON that can be read"});
    }
}

std::string backupFileName(Timestamp time) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
    return fmt::format("user-data-backup-{:%Y-%m-%dT%H%M%S}.json",
                       fmt::gmtime(std::chrono::system_clock::to_time_t(seconds)));
}

} // namespace glyma
