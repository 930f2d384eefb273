#pragma once

/// @file
/// glTF files of the tests, put together in memory.

#include <cstdint>
#include <string>
#include <vector>

#include "orvex_formats/gltf/private/gltf_reader.h"
#include "tests/orvex_formats/bytes.h"

namespace orvex_test {

/// Bytes as letters.
inline std::string base64(const std::vector<unsigned char>& bytes) {
    constexpr const char* letters =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t left = bytes.size() - i;
        const std::uint32_t bits = static_cast<std::uint32_t>(bytes[i]) << 16 |
                                   (left > 1 ? static_cast<std::uint32_t>(bytes[i + 1]) << 8 : 0) |
                                   (left > 2 ? static_cast<std::uint32_t>(bytes[i + 2]) : 0);
        text += letters[bits >> 18];
        text += letters[bits >> 12 & 63];
        text += left > 1 ? letters[bits >> 6 & 63] : '=';
        text += left > 2 ? letters[bits & 63] : '=';
    }
    return text;
}

/// Many numbers of one type as bytes.
template<class Number>
std::vector<unsigned char> bytes_of(std::initializer_list<Number> numbers) {
    Bytes bytes;
    for (const Number number : numbers)
        bytes.add_number(number);
    return bytes.bytes;
}

/// JSON with ' for ", which C++ can read.
inline std::string json(std::string text) {
    for (char& letter : text)
        if (letter == '\'')
            letter = '"';
    return text;
}

/// A binary file.
inline std::vector<unsigned char> glb(std::string text, std::vector<unsigned char> bytes) {
    text = json(text);
    text.resize((text.size() + 3) / 4 * 4, ' ');
    bytes.resize((bytes.size() + 3) / 4 * 4);
    Bytes file("glTF");
    file.add_number<std::uint32_t>(2);
    file.add_number(static_cast<std::uint32_t>(28 + text.size() + bytes.size()));
    file.add_number(static_cast<std::uint32_t>(text.size())).add("JSON").add(text);
    file.add_number(static_cast<std::uint32_t>(bytes.size())).add(std::string("BIN\0", 4));
    file.bytes.insert(file.bytes.end(), bytes.begin(), bytes.end());
    return file.bytes;
}

/// Puts a file together: each list of numbers gets a view and an accessor.
class GltfFile {
public:
    /// Appends bytes. @return the number of their view
    std::size_t add_view(const std::vector<unsigned char>& data, const std::string& more = "") {
        bytes.resize((bytes.size() + 3) / 4 * 4);
        views += std::string(views.empty() ? "" : ",") +
                 "{'buffer':0,'byteOffset':" + std::to_string(bytes.size()) +
                 ",'byteLength':" + std::to_string(data.size()) + more + "}";
        bytes.insert(bytes.end(), data.begin(), data.end());
        return num_views++;
    }
    /// @param more  behind the count, with a comma before
    /// @return the number of the accessor
    std::size_t add_accessor(const std::string& type, int number, std::size_t count,
                             const std::string& more = "") {
        accessors += std::string(accessors.empty() ? "" : ",") + "{'type':'" + type +
                     "','componentType':" + std::to_string(number) +
                     ",'count':" + std::to_string(count) + more + "}";
        return num_accessors++;
    }
    std::size_t add_floats(const std::string& type, std::size_t width,
                           std::initializer_list<float> numbers) {
        const std::size_t view = add_view(bytes_of(numbers));
        return add_accessor(type, 5126, numbers.size() / width,
                            ",'bufferView':" + std::to_string(view));
    }
    std::size_t add_indices(std::initializer_list<std::uint16_t> numbers) {
        const std::size_t view = add_view(bytes_of(numbers));
        return add_accessor("SCALAR", 5123, numbers.size(),
                            ",'bufferView':" + std::to_string(view));
    }

    /// The text.
    /// @param uri  of the buffer; empty for none
    std::string text(const std::string& uri) const {
        return json("{'asset':{'version':'2.0'}" + (rest.empty() ? "" : "," + rest) +
                    (views.empty() ? "" : ",'bufferViews':[" + views + "]") +
                    (accessors.empty() ? "" : ",'accessors':[" + accessors + "]") +
                    (bytes.empty() ? ""
                                   : ",'buffers':[{'byteLength':" + std::to_string(bytes.size()) +
                                         (uri.empty() ? "" : ",'uri':'" + uri + "'") + "}]") +
                    "}");
    }
    /// A text file that carries its bytes.
    std::vector<unsigned char> as_text() const {
        return Bytes(text("data:application/octet-stream;base64," + base64(bytes))).bytes;
    }
    std::vector<unsigned char> as_binary() const { return glb(text(""), bytes); }

    std::string rest; ///< meshes, nodes and so on, without a comma at either end
    std::string views, accessors;
    std::vector<unsigned char> bytes;

private:
    std::size_t num_views = 0, num_accessors = 0;
};

/// A triangle, the upper left half of the unit square, with texture coordinates and a node.
inline GltfFile triangle() {
    GltfFile file;
    file.add_floats("VEC3", 3, {0, 0, 0, 1, 1, 0, 0, 1, 0});
    file.add_floats("VEC2", 2, {0, 1, 1, 0, 0, 0});
    file.rest = "'meshes':[{'name':'tile','primitives':[{'attributes':{'POSITION':0,"
                "'TEXCOORD_0':1}}]}],'nodes':[{'mesh':0}],'scenes':[{'nodes':[0]}],'scene':0";
    return file;
}

inline orvex::formats::Draft read_gltf_bytes(const std::vector<unsigned char>& bytes) {
    return orvex::formats::read_gltf(orvex::formats::InputFile(bytes));
}

/// Why a text isn't read.
inline std::string gltf_refusal(const std::string& text) {
    return refusal_of(orvex::formats::read_gltf, Bytes(json(text)).bytes);
}

} // namespace orvex_test
