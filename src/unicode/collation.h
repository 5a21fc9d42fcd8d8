#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace glyma::unicode {

/// Orders names as a reader of the user's language expects, numbers by value. One instance a thread.
class Collator {
public:
    Collator();
    ~Collator();
    Collator(Collator&&) noexcept;
    Collator& operator=(Collator&&) noexcept;

    /// Bytes that compare (as unsigned) like the texts do.
    std::string sortKey(std::string_view text) const;
    bool less(std::string_view left, std::string_view right) const;

private:
    struct Implementation;
    std::unique_ptr<Implementation> implementation_;
};

} // namespace glyma::unicode
