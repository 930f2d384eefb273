#pragma once

/// @file
/// What is left out of a model, each kind once.

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "orvex_formats/gltf/private/gltf_json.h"

namespace orvex::formats {

/// Keeps notes.
class GltfNotes {
public:
    explicit GltfNotes(std::vector<std::string>& notes)
        : notes(notes) {}

    /// Keeps a sentence about a value, unless one of the same words was kept already.
    void add(const Json& where, const std::string& what) {
        if (known.insert(what).second)
            notes.push_back(where.path() + ": " + what);
    }
    /// Keeps a sentence that begins with its place.
    void add(const std::string& sentence) {
        if (known.insert(sentence).second)
            notes.push_back(sentence);
    }

private:
    std::vector<std::string>& notes;
    std::set<std::string> known;
};

} // namespace orvex::formats
