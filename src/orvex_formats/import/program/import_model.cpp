#include <algorithm>
#include <cctype>
#include <stdexcept>
#include <string>

#include <assimp/Importer.hpp>
#include <assimp/config.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include "orvex_formats/import/program/model_files.h"
#include "orvex_formats/import/program/requests.h"
#include "orvex_formats/import/program/scene_draft.h"

namespace orvex::formats {

namespace {

/// Formats whose z points upward, and which assimp doesn't turn.
bool is_of_z_up(const std::string& name) {
    std::string suffix = name.substr(std::min(name.rfind('.'), name.size()));
    for (char& letter : suffix)
        letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    return suffix == ".blend" || suffix == ".cob" || suffix == ".scn" || suffix == ".smd";
}

} // namespace

void import_model(const std::string& name, std::optional<float> time, int folder,
                  std::uint64_t most_bytes, AnswerRoom& room) {
    auto* const files = new ModelFiles(name, folder);
    Assimp::Importer importer;
    importer.SetIOHandler(files); // which it deletes
    importer.SetPropertyBool(AI_CONFIG_IMPORT_FBX_PRESERVE_PIVOTS, false);
    const aiScene* const scene = importer.ReadFile(
        name, aiProcess_Triangulate | aiProcess_JoinIdenticalVertices | aiProcess_SortByPType |
                  aiProcess_GenUVCoords | aiProcess_TransformUVCoords);
    if (!scene || !scene->mRootNode)
        throw std::runtime_error(importer.GetErrorString()[0] != '\0'
                                     ? importer.GetErrorString()
                                     : "assimp can't read it, and says nothing more");
    Draft draft = draft_of(*scene, is_of_z_up(name), time, most_bytes);
    draft.files = files->opened();
    write_answer(draft, room);
}

} // namespace orvex::formats
