#pragma once

/// @file
/// Pictures, as glTF's materials name them.

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "orvex_formats/gltf/private/gltf_budget.h"
#include "orvex_formats/gltf/private/gltf_buffers.h"
#include "orvex_formats/gltf/private/gltf_json.h"
#include "orvex_formats/gltf/private/gltf_notes.h"
#include "orvex_formats/private/draft.h"

namespace orvex::formats {

/// All textures of a file. A picture is looked at when a material names it, once.
class GltfTextures {
public:
    /// @param draft  gets the pictures that the file carries
    GltfTextures(const Json& json, const InputFile& file, GltfBuffers& buffers, GltfBudget& budget,
                 GltfNotes& notes, Draft& draft);

    /// What an object says of a picture; one that can't be had is none, with a note.
    /// @throw Refusal
    PhysicalTexture read(const Json& owner, const char* name);

    /// Whether a picture is a file of its own.
    bool is_file(const std::string& name) const { return files.find(name) != files.end(); }
    /// Makes one that is a file a part of the draft: pictures come before files in a material.
    void embed(const std::string& name);
    /// The name of a picture that is all white.
    const std::string& white();

private:
    struct Image {
        Json json;
        std::string name; ///< empty for none
        bool is_looked_at = false;
    };

    const std::string& picture_of(const Json& texture);
    std::string free_name(std::string name);
    void look_at(Image& image, std::size_t place);
    void name_file(Image& image, const Json& uri);
    void set_wrap(const Json& texture, PhysicalTexture& told) const;

    const InputFile& file;
    GltfBuffers& buffers;
    GltfBudget& budget;
    GltfNotes& notes;
    Draft& draft;
    Json textures, samplers;
    std::vector<Image> images;
    std::map<std::string, Json> files; ///< the URIs of the pictures that are files, by their names
    const std::string nothing;
    std::string white_name;
    std::set<std::string> names_of_files; ///< of all pictures, once one has asked for a free name
    bool are_files_listed = false;
};

} // namespace orvex::formats
