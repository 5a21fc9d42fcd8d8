#pragma once

#include "monitor/query_reading.h"
#include "monitor/selection_dispatch.h"
#include "monitor/typed_text.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace glyma {

/// The query of one showing of the picker, followed in the target's text: what was read last, and what the
/// keys heard since will make of it, as long as they alone change the text. Keys are heard before the target
/// applies them, so a reading may show the text as it was some keys ago; only one that cannot be of that kind
/// overrules the keys or closes the picker.
class PolledQuery {
public:
    /// What a reading means for the picker.
    enum class Finding {
        nothing, ///< unreadable, or from before the latest keys
        same,
        changed,    ///< query() is another one
        emptied,    ///< deleted back to the trigger
        lost,       ///< the trigger has gone, or the caret has left it
        mistrusted, ///< the element does not show what is typed into it
    };

    /// \param typed  what the first key after the trigger typed.
    PolledQuery(std::string trigger, TypedText typed);

    /// As the text will show it.
    const std::string& query() const { return query_; }
    /// Characters that the text will have behind the trigger when the keys have been applied.
    std::ptrdiff_t keystrokeCount() const { return typed_.keystrokeCount(); }

    void type(std::string_view text);
    void deleteLast();
    /// Something happened (a command, a click) after which the text may be any.
    void disturb();
    /// The text has come to rest: what changes it from now on are keys.
    void settle();

    /// \param tick  number of the reading since the latest key, from 1; readings are 20 ms apart.
    Finding take(const QueryReading& reading, int tick);
    /// Whether the reading is what the keys make of the text.
    bool accountsForKeys(const QueryReading& reading) const;
    /// And whether the text cannot have been the same before some of the keys.
    bool certainlyAccountsForKeys(const QueryReading& reading) const;
    /// Whether the reading may be the text as it was before the latest keys.
    bool mayBeLate(const QueryReading& reading) const;
    bool isDisturbed() const { return isDisturbed_; }

    /// What to delete for a choice, judged by the latest reading. Absent when that is not certain.
    std::optional<Deletion> deletion(const QueryReading& reading) const;

private:
    QueryReading readingAsTyped() const;
    void followKeys();
    void keysHaveArrived();
    void restartFrom(const std::string& query);
    bool isEarlier(const QueryReading& reading) const;
    bool hasLostItsTrigger(const QueryReading& reading) const;
    bool isFromBeforeTheKeys(const QueryReading& reading) const;

    std::string trigger_;
    std::string query_;
    /// The text as it was read and the keys since.
    TypedText typed_;
    std::vector<std::string> earlier_; ///< what the text showed before each key not accounted for
    std::string ahead_;                ///< what the text showed before its keys were heard of
    std::string anchor_;               ///< what leads to the trigger, as it was read last
    bool hasArrived_ = false;   ///< a reading has accounted for the keys: none is from before the trigger
    bool isBehind_ = true;      ///< no reading has accounted for the keys yet
    bool isDisturbed_ = false;  ///< since the text was at rest
    bool wasDisturbed_ = false; ///< ever
    bool wasRead_ = false;      ///< a query was found in the text
};

} // namespace glyma
