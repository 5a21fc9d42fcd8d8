#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace glyma {

/// What the core has to say to the user: an English text, worded so that the windows can say it in the user's
/// language (translation/message_text.h). The command line and the log say it in English.
class Message {
#ifdef LUPDATE
    // Never compiled: Qt's lupdate, which passes over the condition, learns from it whose texts tr() marks.
    Q_DECLARE_TR_FUNCTIONS(glyma::Message)
#endif

public:
    /// Nothing to say.
    Message() = default;
    /// A text from elsewhere, UTF-8; said as it is where no translation is known.
    Message(std::string text)
        : pattern_(std::move(text)) {}
    Message(const char* text)
        : pattern_(text) {}

    /// \param english  a literal, with %1 to %9 in the places of what differs each time.
    static Message tr(const char* english) {
        return {english};
    }
    /// Fills the next place, from %1 on.
    Message arg(std::string value) &&;
    Message arg(int value) &&;

    bool isEmpty() const {
        return pattern_.empty();
    }
    const std::string& pattern() const {
        return pattern_;
    }
    /// The values put into the places of the pattern or of its translation.
    std::string filled(std::string_view pattern) const;
    std::string english() const {
        return filled(pattern_);
    }

    bool operator==(const Message&) const = default;

private:
    std::string pattern_;
    std::vector<std::string> values_;
};

/// Says a message in some language; UTF-8.
using Wording = std::function<std::string(const Message&)>;

inline std::string inEnglish(const Message& message) {
    return message.english();
}

} // namespace glyma
