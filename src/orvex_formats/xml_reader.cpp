#include "orvex_formats/private/xml_reader.h"

#include <array>
#include <cstdint>
#include <utility>

#include "orvex_formats/private/refusal.h"
#include "orvex_formats/private/words.h"

namespace orvex::formats {

namespace {

constexpr std::size_t most_depth = 128, most_attributes = 64;

bool is_blank(char letter) {
    return letter == ' ' || letter == '\t' || letter == '\r' || letter == '\n';
}

std::string_view without_prefix(std::string_view name) {
    return name.substr(name.find(':') + 1); // npos + 1 is 0
}

} // namespace

XmlReader::XmlReader(std::string_view text, std::string place)
    : all(text)
    , left(text)
    , place(std::move(place)) {}

void XmlReader::refuse_here(const char* what) const {
    refuse("%s, byte %zu: %s", in_words(place).c_str(), all.size() - left.size(), what);
}

XmlReader::Step XmlReader::next() {
    const Step step = find_next();
    is_begin = step == Step::begin;
    return step;
}

XmlReader::Step XmlReader::find_next() {
    if (is_empty) {
        is_empty = false;
        open.pop_back();
        return Step::end;
    }
    for (;;) {
        const std::size_t begin = left.find('<');
        left.remove_prefix(begin == left.npos ? left.size() : begin);
        if (left.empty()) {
            if (!open.empty())
                refuse_here("the text is cut off");
            return Step::done;
        }
        if (pass_what_is_no_element())
            continue;
        left.remove_prefix(1);
        if (left.substr(0, 1) != "/")
            return begin_element();
        left.remove_prefix(1);
        return end_element();
    }
}

void XmlReader::pass(std::string_view end) {
    const std::size_t found = left.find(end);
    if (found == left.npos)
        refuse_here("the text is cut off");
    left.remove_prefix(found + end.size());
}

bool XmlReader::pass_what_is_no_element() {
    if (left.substr(0, 4) == "<!--")
        pass("-->");
    else if (left.substr(0, 9) == "<![CDATA[")
        pass("]]>");
    else if (left.substr(0, 2) == "<?")
        pass("?>");
    else if (left.substr(0, 2) == "<!")
        refuse_here("definitions within the text aren't read");
    else
        return false;
    return true;
}

XmlReader::Step XmlReader::begin_element() {
    const std::string_view full = take_name();
    if (open.size() >= most_depth)
        refuse_here("deeper than any text that is read");
    open.push_back(full);
    element = without_prefix(full);
    take_attributes();
    is_empty = left.substr(0, 1) == "/";
    if (is_empty)
        left.remove_prefix(1);
    if (left.substr(0, 1) != ">")
        refuse_here("an element without an end");
    left.remove_prefix(1);
    return Step::begin;
}

XmlReader::Step XmlReader::end_element() {
    const std::string_view full = take_name();
    pass_blanks();
    if (open.empty() || open.back() != full || left.substr(0, 1) != ">")
        refuse_here("an end of another element than the last one");
    left.remove_prefix(1);
    open.pop_back();
    element = without_prefix(full);
    return Step::end;
}

void XmlReader::pass_blanks() {
    while (!left.empty() && is_blank(left.front()))
        left.remove_prefix(1);
}

std::string_view XmlReader::take_name() {
    std::size_t size = 0;
    while (size < left.size() && !is_blank(left[size]) &&
           std::string_view("=<>/\"'").find(left[size]) == std::string_view::npos)
        ++size;
    if (size == 0)
        refuse_here("no name of an element");
    const std::string_view name = left.substr(0, size);
    left.remove_prefix(size);
    return name;
}

void XmlReader::take_attributes() {
    attributes.clear();
    for (pass_blanks(); !left.empty() && left.front() != '>' && left.front() != '/';
         pass_blanks()) {
        const std::string_view name = take_name();
        pass_blanks();
        if (left.substr(0, 1) != "=")
            refuse_here("an attribute without a value");
        left.remove_prefix(1);
        pass_blanks();
        const char quote = left.empty() ? ' ' : left.front();
        const std::size_t end = left.size() < 2 ? left.npos : left.find(quote, 1);
        if ((quote != '"' && quote != '\'') || end == left.npos)
            refuse_here("a value without quotes");
        if (attributes.size() >= most_attributes)
            refuse_here("more attributes than any element that is read");
        attributes.push_back({without_prefix(name), left.substr(1, end - 1)});
        left.remove_prefix(end + 1);
    }
}

const std::string_view* XmlReader::find(std::string_view attribute) const {
    for (const Attribute& known : attributes)
        if (known.name == attribute)
            return &known.value;
    return nullptr;
}

std::string XmlReader::text(std::string_view attribute) const {
    struct Entity {
        std::string_view name;
        char letter;
    };
    constexpr std::array<Entity, 5> entities = {
        {{"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}}};
    const std::string_view* const value = find(attribute);
    std::string text;
    for (std::string_view rest = value ? *value : ""; !rest.empty();) {
        std::size_t size = 1;
        char letter = rest.front();
        for (const Entity& entity : entities)
            if (rest.substr(0, entity.name.size()) == entity.name) {
                letter = entity.letter;
                size = entity.name.size();
            }
        text += letter;
        rest.remove_prefix(size);
    }
    return text;
}

template<class Number>
Number XmlReader::number(std::string_view attribute) const {
    const std::string_view* const value = find(attribute);
    Number number{};
    Words words(value ? *value : "");
    if (!words.take_number(number) || words.has_more())
        refuse_here(("no number where \"" + std::string(attribute) + "\" should have one").c_str());
    return number;
}

template float XmlReader::number<float>(std::string_view attribute) const;
template std::uint32_t XmlReader::number<std::uint32_t>(std::string_view attribute) const;

void XmlReader::skip() {
    const std::size_t depth = open.size();
    while (open.size() >= depth)
        next();
}

} // namespace orvex::formats
