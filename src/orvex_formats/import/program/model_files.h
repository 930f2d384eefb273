#pragma once

/// @file
/// The files that assimp sees.

#include <string>
#include <vector>

#include <assimp/IOSystem.hpp>

namespace orvex::formats {

/// The model's file under its own name, and files below its folder. Nothing is ever written.
class ModelFiles : public Assimp::IOSystem {
public:
    /// @param folder  a descriptor; -1: the model's file is the only one
    ModelFiles(std::string model, int folder);

    bool Exists(const char* name) const override;
    char getOsSeparator() const override { return '/'; }
    Assimp::IOStream* Open(const char* name, const char* mode) override;
    void Close(Assimp::IOStream* stream) override;

    /// Names of the files that were opened beside the model's own, each once.
    const std::vector<std::string>& opened() const { return names; }

private:
    int open_below(const char* name) const;

    std::string model;
    int folder;
    std::vector<std::string> names;
};

} // namespace orvex::formats
