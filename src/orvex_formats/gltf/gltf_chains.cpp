#include "orvex_formats/gltf/private/gltf_chains.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <system_error>

#include "orvex_formats/private/refusal.h"

namespace orvex::formats {

namespace {

constexpr std::uint32_t deepest = 10000;

/// Counts the nodes above each.
class Depths {
public:
    explicit Depths(const std::vector<std::uint32_t>& parents)
        : parents(parents)
        , depths(parents.size(), unknown) {}

    void run() {
        for (std::uint32_t node = 0; node < parents.size(); ++node)
            if (set_those_from(node) > deepest)
                refuse("nodes[%u]: more than %u nodes lie above the node", node, deepest);
    }

private:
    /// @return the depth of the node
    std::uint32_t set_those_from(std::uint32_t node) {
        // Up to one whose depth is known, or to a root.
        std::uint32_t length = 0, at = node;
        for (; at != no_parent && depths[at] == unknown; at = parents[at])
            if (++length > parents.size())
                refuse("nodes[%u]: the node is its own ancestor, or a descendant of one that is",
                       node);
        // And the same way again.
        std::uint32_t depth = length + (at == no_parent ? 0 : depths[at] + 1);
        for (at = node; length > 0; at = parents[at], --length)
            depths[at] = --depth;
        return depths[node];
    }

    static constexpr std::uint32_t unknown = UINT32_MAX;

    const std::vector<std::uint32_t>& parents;
    std::vector<std::uint32_t> depths;
};

/// Goes through a text for no more than the children of nodes.
class ChildScan {
public:
    explicit ChildScan(std::string_view json)
        : left(json)
        , most_nodes(json.size() / 3 + 1) {} // each takes {} and a comma

    /// The parents of all nodes, as far as the text goes.
    std::vector<std::uint32_t> run() {
        if (find_nodes())
            while (take_node()) {
            }
        parents.resize(std::max<std::size_t>(parents.size(), num_nodes), no_parent);
        return std::move(parents);
    }

private:
    /// The next letter that isn't part of a text, which is kept in `last_text`; 0 at the end.
    char take() {
        while (!left.empty()) {
            const char letter = left.front();
            left.remove_prefix(1);
            if (letter == '"')
                take_text();
            else if (letter > ' ')
                return letter;
        }
        return '\0';
    }

    void take_text() {
        std::size_t end = left.find('"');
        while (end != left.npos && is_escaped(end))
            end = left.find('"', end + 1);
        last_text = left.substr(0, end);
        left.remove_prefix(std::min(end, left.size() - 1) + (left.empty() ? 0 : 1));
    }

    bool is_escaped(std::size_t place) const {
        std::size_t num_slashes = 0;
        while (num_slashes < place && left[place - 1 - num_slashes] == '\\')
            ++num_slashes;
        return num_slashes % 2 == 1;
    }

    /// Goes behind the end of the list or the object that has begun.
    /// @param stop  a key of it whose list is entered instead
    /// @return whether it was
    bool pass(std::string_view stop) {
        for (int depth = 1; depth > 0;) {
            const char letter = take();
            if (letter == '\0')
                return false;
            if (depth == 1 && letter == ':' && last_text == stop)
                return take() == '[';
            if (letter == '{' || letter == '[')
                ++depth;
            else if (letter == '}' || letter == ']')
                --depth;
        }
        return false;
    }

    bool find_nodes() { return take() == '{' && pass("nodes"); }

    bool take_node() {
        char letter = take();
        if (letter == ',')
            letter = take();
        if (letter != '{' || num_nodes >= most_nodes)
            return false;
        const auto node = static_cast<std::uint32_t>(num_nodes++);
        if (!pass("children"))
            return true;
        return take_children(node) && (pass({}), true);
    }

    /// @return whether the list was one of whole numbers
    bool take_children(std::uint32_t node) {
        for (;;) {
            while (!left.empty() && (left.front() <= ' ' || left.front() == ','))
                left.remove_prefix(1);
            std::uint32_t child = 0;
            const auto [behind, error] =
                std::from_chars(left.data(), left.data() + left.size(), child);
            if (error != std::errc{})
                return take() == ']';
            left.remove_prefix(static_cast<std::size_t>(behind - left.data()));
            if (child >= most_nodes || left.empty() || !ends_number(left.front()))
                return false;
            if (child >= parents.size())
                parents.resize(child + 1, no_parent);
            parents[child] = node;
        }
    }

    static bool ends_number(char letter) { return letter <= ' ' || letter == ',' || letter == ']'; }

    std::string_view left, last_text;
    const std::size_t most_nodes;
    std::size_t num_nodes = 0;
    std::vector<std::uint32_t> parents;
};

} // namespace

void check_chains(const std::vector<std::uint32_t>& parents) {
    Depths(parents).run();
}

void check_chains(std::string_view json) {
    check_chains(ChildScan(json).run());
}

} // namespace orvex::formats
