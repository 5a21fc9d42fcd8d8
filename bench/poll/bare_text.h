#pragma once

#include <optional>
#include <string>

struct DBusConnection;

namespace glyma::bench {

/// The text of an application's text view, asked for with nothing but the D-Bus calls that this takes.
class BareText {
public:
    /// Finds the first element of the role "text" on the desktop.
    static std::optional<BareText> find();

    /// What a poll asks: is something selected, where is the caret, what stands before it.
    std::optional<std::string> beforeCaret() const;

private:
    struct Node {
        std::string name; ///< on the bus
        std::string path;
    };
    BareText(DBusConnection* connection, Node node)
        : connection_(connection)
        , node_(std::move(node)) {}
    static std::optional<Node> search(DBusConnection* connection, const Node& from, int depth);

    DBusConnection* connection_;
    Node node_;
};

} // namespace glyma::bench
