#include "shown_model.h"

#include <algorithm>
#include <utility>

#include <orvex_kit/files.h>

using namespace orvex::kit;

std::string ShownModel::load(const std::string& path, const ModelOptions& wanted) {
    if (std::string mistake = mistake_in_reading(path); !mistake.empty())
        return mistake;
    // Looked at before it is read: what is written meanwhile is seen as a change.
    FileWatch fresh_watch;
    fresh_watch.follow({path});
    Model fresh(path, wanted);
    if (!fresh)
        return fresh.reason();
    fresh_watch.follow(fresh.files());
    shown = std::move(fresh);
    watch = std::move(fresh_watch);
    file = path;
    options = wanted;
    why.clear();
    return "";
}

/// Why what is on disk now isn't whole, compared with what is shown.
std::string ShownModel::mistake_in(const Model& fresh) const {
    if (!fresh)
        return fresh.reason();
    if (fresh.num_faces() == 0 && shown.num_faces() > 0)
        return file + ": it has no faces any more";
    for (const ModelTexture& texture : fresh.textures())
        for (const ModelTexture& old : shown.textures())
            if (texture.name == old.name && old.reason.empty() && !texture.reason.empty())
                return "texture " + texture.name + ": " + texture.reason;
    return "";
}

ShownModel::Change ShownModel::reload() {
    if (file.empty())
        return Change::none;
    why = mistake_in_reading(file);
    if (!why.empty())
        return Change::refused;
    Model fresh(file, options);
    why = mistake_in(fresh);
    if (!why.empty())
        return Change::refused;
    shown = std::move(fresh);
    watch.follow(shown.files());
    return Change::taken;
}

ShownModel::Change ShownModel::look() {
    if (!watch.look())
        return Change::none;
    if (!watch.gone().empty()) {
        why = mistake_in_reading(watch.gone().front());
        return Change::refused;
    }
    return reload();
}
