#include "orvex_formats/ply/private/ply_header.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include "orvex_formats/private/refusal.h"
#include "orvex_formats/private/words.h"

namespace orvex::formats {

namespace {

struct NamedType {
    const char* name;
    PlyType type;
};

/// Both ways to call them.
constexpr std::array<NamedType, 16> types = {{{"char", PlyType::int8},
                                              {"uchar", PlyType::uint8},
                                              {"short", PlyType::int16},
                                              {"ushort", PlyType::uint16},
                                              {"int", PlyType::int32},
                                              {"uint", PlyType::uint32},
                                              {"float", PlyType::float32},
                                              {"double", PlyType::float64},
                                              {"int8", PlyType::int8},
                                              {"uint8", PlyType::uint8},
                                              {"int16", PlyType::int16},
                                              {"uint16", PlyType::uint16},
                                              {"int32", PlyType::int32},
                                              {"uint32", PlyType::uint32},
                                              {"float32", PlyType::float32},
                                              {"float64", PlyType::float64}}};

/// More than any program writes.
constexpr std::size_t most_properties = 4096;
constexpr std::size_t most_textures = 1024;

bool is_integer(PlyType type) {
    return type != PlyType::float32 && type != PlyType::float64;
}

std::string lower(std::string_view word) {
    std::string text(word);
    for (char& letter : text)
        if (letter >= 'A' && letter <= 'Z')
            letter = static_cast<char>(letter - 'A' + 'a');
    return text;
}

class HeaderReader {
public:
    HeaderReader(const InputFile& file, ByteStream& stream)
        : file(file)
        , stream(stream) {}

    PlyHeader read() {
        read_magic();
        std::string_view line;
        static_cast<void>(stream.take_line(line)); // that of the magic
        while (!is_done) {
            if (!stream.take_line(line))
                refuse_line("the file ends within its head");
            Words words(line);
            take(lower(words.take()), words);
        }
        if (header.elements.empty() && !header.unknown.empty())
            refuse("%s", header.unknown.c_str());
        if (!has_format)
            refuse_line("the head doesn't say whether the file is text");
        header.end = end_of_head();
        return std::move(header);
    }

private:
    /// Before the first element it stands for a comment without its first word, as some programs
    /// wrote them; behind it, it may be anything that matters.
    void take_unknown(const std::string& word) {
        if (!header.elements.empty())
            refuse_line("no word of a PLY head: ", word);
        if (header.unknown.empty())
            header.unknown = "line " + std::to_string(stream.line_number()) +
                             ": no word of a PLY head: " + in_words(word);
    }

    [[noreturn]] void refuse_line(const char* what, const std::string& word = "") const {
        refuse("line %llu: %s%s", static_cast<unsigned long long>(stream.line_number()), what,
               in_words(word).c_str());
    }

    void read_magic() {
        unsigned char magic[5] = {};
        file.read(0, magic, std::min<std::size_t>(file.size(), sizeof magic));
        if (std::memcmp(magic, "ply", 3) != 0 || magic[3] > ' ')
            refuse_format("no PLY file: it doesn't begin with \"ply\"");
        ends_by_cr = magic[3] == '\r' && magic[4] != '\n';
    }

    /// Where lines end by CR alone, an LF behind the last one is the first byte of the rows.
    std::uint64_t end_of_head() const {
        const std::uint64_t end = stream.place();
        char last = '\0';
        file.read(end - 1, &last, 1);
        return ends_by_cr && last == '\n' ? end - 1 : end;
    }

    void take(const std::string& word, Words& words) {
        if (word == "format")
            read_format(words);
        else if (word == "comment")
            read_comment(words);
        else if (word == "element")
            read_element(words);
        else if (word == "property")
            read_property(words);
        else if (word == "end_header")
            is_done = true;
        else if (!word.empty() && word != "obj_info")
            take_unknown(word);
    }

    void read_format(Words& words) {
        const std::string name = lower(words.take());
        if (name == "ascii")
            header.encoding = PlyEncoding::text;
        else if (name == "binary_little_endian")
            header.encoding = PlyEncoding::little;
        else if (name == "binary_big_endian")
            header.encoding = PlyEncoding::big;
        else
            refuse_line("no format that is known: ", name);
        has_format = true;
    }

    void read_comment(Words& words) {
        if (lower(words.take()) != "texturefile" || header.textures.size() >= most_textures)
            return;
        header.textures.emplace_back(words.remaining());
    }

    void read_element(Words& words) {
        PlyElement element;
        element.name = lower(words.take());
        if (element.name.empty() || !words.take_number(element.num_rows))
            refuse_line("an element without a name and a count");
        header.elements.push_back(std::move(element));
    }

    PlyType read_type(Words& words) const {
        const std::string name = lower(words.take());
        const auto* const found = std::find_if(
            types.begin(), types.end(), [&](const NamedType& type) { return type.name == name; });
        if (found == types.end())
            refuse_line("no type that is known: ", name);
        return found->type;
    }

    void read_property(Words& words) {
        if (header.elements.empty())
            refuse_line("a property of no element");
        if (++num_properties > most_properties)
            refuse_line("more properties than any that are read");
        PlyProperty property;
        Words ahead = words;
        property.is_list = lower(ahead.take()) == "list";
        if (property.is_list) {
            words = ahead;
            property.count_type = read_type(words);
            if (!is_integer(property.count_type))
                refuse_line("a list whose count is no whole number");
        }
        property.type = read_type(words);
        property.name = lower(words.take());
        if (property.name.empty())
            refuse_line("a property without a name");
        header.elements.back().properties.push_back(std::move(property));
    }

    const InputFile& file;
    ByteStream& stream;
    PlyHeader header;
    bool ends_by_cr = false;
    bool has_format = false;
    bool is_done = false;
    std::size_t num_properties = 0;
};

} // namespace

std::size_t size_of(PlyType type) {
    switch (type) {
    case PlyType::int8:
    case PlyType::uint8:
        return 1;
    case PlyType::int16:
    case PlyType::uint16:
        return 2;
    case PlyType::int32:
    case PlyType::uint32:
    case PlyType::float32:
        return 4;
    case PlyType::float64:
        return 8;
    }
    return 8;
}

double largest_of(PlyType type) {
    switch (type) {
    case PlyType::int8:
        return INT8_MAX;
    case PlyType::uint8:
        return UINT8_MAX;
    case PlyType::int16:
        return INT16_MAX;
    case PlyType::uint16:
        return UINT16_MAX;
    case PlyType::int32:
        return INT32_MAX;
    case PlyType::uint32:
        return UINT32_MAX;
    case PlyType::float32:
    case PlyType::float64:
        return 0.0;
    }
    return 0.0;
}

int PlyElement::find(const std::string& property) const {
    for (std::size_t i = 0; i < properties.size(); ++i)
        if (properties[i].name == property)
            return static_cast<int>(i);
    return -1;
}

std::uint64_t PlyElement::least_row_size(PlyEncoding encoding) const {
    // A number of text takes a digit, and a blank behind it.
    if (encoding == PlyEncoding::text)
        return 2 * properties.size();
    std::uint64_t size = 0;
    for (const PlyProperty& property : properties)
        size += size_of(property.is_list ? property.count_type : property.type);
    return size;
}

PlyHeader read_ply_header(const InputFile& file, ByteStream& stream) {
    return HeaderReader(file, stream).read();
}

} // namespace orvex::formats
