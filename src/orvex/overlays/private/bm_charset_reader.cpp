// Reads a charset from XML: one function for each section below the root, in any order; what is
// missing, misspelt or no number leaves its field as it was.

#include "orvex/overlays/private/bm_charset_reader.h"

#include <cstdio>
#include <cstring>

#include <tinyxml2.h>

namespace orvex {

namespace {

using tinyxml2::XMLElement;

bool is_named(const XMLElement& element, const char* name) {
    constexpr std::size_t longest_name = 64;
    return std::strncmp(element.Name(), name, longest_name) == 0;
}

/// Leaves the field alone where the attribute is missing or no number. What doesn't fit in 16 bits
/// is cut: a negative offset becomes a very large one.
template<class Field>
void read_number(const XMLElement& element, const char* name, Field& field) {
    int value = 0;
    if (element.QueryIntAttribute(name, &value) == tinyxml2::XML_SUCCESS)
        field = static_cast<Field>(value);
}

void read_info(const XMLElement& info, BMCharset& charset) {
    if (const char* const padding = info.Attribute("padding")) {
        std::sscanf(padding, "%d,%d,%d,%d", &charset.padding[0], &charset.padding[1],
                    &charset.padding[2], &charset.padding[3]);
    }
    if (const char* const spacing = info.Attribute("spacing"))
        std::sscanf(spacing, "%d,%d", &charset.spacing[0], &charset.spacing[1]);
}

void read_common(const XMLElement& common, BMCharset& charset) {
    read_number(common, "scaleW", charset.scale_w);
    read_number(common, "scaleH", charset.scale_h);
    read_number(common, "base", charset.base);
    read_number(common, "lineHeight", charset.line_height);
}

void read_pages(const XMLElement& pages, BMCharset& charset) {
    const XMLElement* const page = pages.FirstChildElement();
    if (!page || !is_named(*page, "page") || charset.image_filename[0] != '\0')
        return;
    if (const char* const file = page->Attribute("file"))
        std::strncpy(charset.image_filename, file, sizeof(charset.image_filename) - 1);
}

void read_char(const XMLElement& element, BMCharset& charset) {
    int id = 0;
    read_number(element, "id", id);
    if (id < 0 || id > 255)
        return;
    BMCharDescriptor& glyph = charset.chars[id];
    read_number(element, "x", glyph.x);
    read_number(element, "y", glyph.y);
    read_number(element, "width", glyph.width);
    read_number(element, "height", glyph.height);
    read_number(element, "page", glyph.page);
    read_number(element, "xadvance", glyph.xadvance);
    read_number(element, "xoffset", glyph.xoffset);
    read_number(element, "yoffset", glyph.yoffset);
}

void read_chars(const XMLElement& chars, BMCharset& charset) {
    for (const XMLElement* element = chars.FirstChildElement(); element;
         element = element->NextSiblingElement())
        if (is_named(*element, "char"))
            read_char(*element, charset);
}

struct Section {
    const char* name;
    void (*read)(const XMLElement& element, BMCharset& charset);
};

constexpr Section sections[] = {
    {"info", read_info}, {"common", read_common}, {"pages", read_pages}, {"chars", read_chars}};

void read_section(const XMLElement& element, BMCharset& charset) {
    for (const Section& section : sections)
        if (is_named(element, section.name))
            section.read(element, charset);
}

/// Behind the next `end` from a place on; the end of the text without one.
const char* behind(const char* place, const char* end) {
    const char* const found = std::strstr(place, end);
    return found ? found + std::strlen(end) : place + std::strlen(place);
}

/// Counts the attributes of an element, by their values.
/// @param[in,out] place  behind the "<"; moves to the end of the tag, or of the text
int count_attributes(const char*& place) {
    int count = 0;
    for (; *place != '\0' && *place != '>'; ++place) {
        if (*place != '"' && *place != '\'')
            continue;
        ++count;
        const char* const end = std::strchr(place + 1, *place);
        if (!end) {
            place += std::strlen(place);
            break;
        }
        place = end;
    }
    return count;
}

/// What begins with "<" and is no element, and where it ends.
struct NoElement {
    const char* begin;
    const char* end;
};
constexpr NoElement no_elements[] = {
    {"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}, {"<!", ">"}};

const NoElement* no_element_at(const char* place) {
    for (const NoElement& other : no_elements)
        if (std::strncmp(place, other.begin, std::strlen(other.begin)) == 0)
            return &other;
    return nullptr;
}

/// Whether an element has far more attributes than any of a charset. The parser compares each with
/// all before it, so that a file of them would take minutes.
bool has_too_many_attributes(const char* text) {
    constexpr int most = 256;
    for (const char* place = std::strchr(text, '<'); place; place = std::strchr(place, '<'))
        if (const NoElement* const other = no_element_at(place))
            place = behind(place + std::strlen(other->begin), other->end);
        else if (count_attributes(++place) > most)
            return true;
    return false;
}

} // namespace

std::unique_ptr<BMCharset> read_bm_charset(const char* text) {
    tinyxml2::XMLDocument document(true, tinyxml2::PRESERVE_WHITESPACE);
    if (!text || has_too_many_attributes(text) || document.Parse(text) != tinyxml2::XML_SUCCESS)
        return nullptr;
    const XMLElement* const root = document.RootElement();
    if (!root)
        return nullptr;
    auto charset = std::make_unique<BMCharset>();
    for (const XMLElement* element = root->FirstChildElement(); element;
         element = element->NextSiblingElement())
        read_section(*element, *charset);
    return charset;
}

} // namespace orvex
