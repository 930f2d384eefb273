#pragma once

/// @file
/// Material libraries of OBJ files.

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "orvex_formats/private/draft.h"

namespace orvex::formats {

/// The materials of a model, by name, in the order in which they come.
class MtlTable {
public:
    /// The name of a white picture, which stands where a material has others but none for the
    /// colour.
    static constexpr const char* white = "orvex_obj_white";

    /// A material that a library has just named, as good as new.
    SurfaceMaterial& define(const std::string& name);
    /// The material of a name.
    /// @return its place; where no library has the name, of its first word; else of a new one
    std::uint32_t use(const std::string& name);
    bool is_defined(std::uint32_t place) const { return defined[place]; }

    std::vector<SurfaceMaterial> materials;

private:
    std::uint32_t find_or_add(const std::string& name);

    std::vector<bool> defined; ///< by a library
    std::unordered_map<std::string, std::uint32_t> places;
};

/// Sentences, of each kind once.
class Notes {
public:
    /// @param kind    what two sentences of one kind share
    /// @param others  what the first one says behind its end, when another one comes
    void add(const std::string& kind, const std::string& sentence, const char* others = "");
    std::vector<std::string> take() { return std::move(sentences); }

private:
    std::unordered_map<std::string, std::size_t> kinds; ///< places of those that stand alone yet
    std::vector<std::string> sentences;
};

/// Adds the materials of a library. It has no mistakes that stop it: what isn't understood is
/// noted.
/// @param name  of the library, for notes
/// @throw std::bad_alloc
void read_mtl(std::string_view text, const std::string& name, MtlTable& table, Notes& notes);

} // namespace orvex::formats
