#pragma once

/// @file
/// The elements of an XML text, one behind the other.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace orvex::formats {

/// Goes through a text once and builds no tree: what is bounded is the depth and the attributes of
/// one element. Entities that a text defines itself, and so bombs of them, are refused. Prefixes of
/// names are passed over, and so is text between elements.
class XmlReader {
public:
    enum class Step { begin, end, done };

    /// @param text   has to live longer
    /// @param place  what reasons call it
    XmlReader(std::string_view text, std::string place);

    /// The begin or the end of the next element; an element without content has both.
    /// @throw Refusal
    Step next();

    /// Of the element that begins or ends, without its prefix.
    std::string_view name() const { return element; }

    /// Whether it begins.
    bool is_at_begin() const { return is_begin; }

    /// A value of the element that begins, as it is written; null if there is none.
    const std::string_view* find(std::string_view attribute) const;
    /// The same with the five entities of XML put in; empty if there is none.
    std::string text(std::string_view attribute) const;
    /// A number. @throw Refusal  where it is none or isn't there
    template<class Number>
    Number number(std::string_view attribute) const;

    /// Goes on behind the end of the element that begins.
    void skip();

    [[noreturn]] void refuse_here(const char* what) const;

private:
    struct Attribute {
        std::string_view name, value;
    };

    void pass(std::string_view end);
    bool pass_what_is_no_element();
    std::string_view take_name();
    void take_attributes();
    void pass_blanks();
    Step find_next();
    Step begin_element();
    Step end_element();

    std::string_view all, left;
    std::string place;
    std::string_view element;
    std::vector<Attribute> attributes;
    std::vector<std::string_view> open; ///< names with their prefixes
    bool is_begin = false;              ///< of what was met last
    bool is_empty = false;              ///< the element that begins has no content
};

} // namespace orvex::formats
