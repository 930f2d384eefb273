// Looks by their names, of which the build makes a table, and from texts.

#include "orvex_kit/look.h"

#include <fstream>
#include <iterator>
#include <utility>

#include "orvex_kit/files.h"
#include "orvex_kit/private/builtin_looks.h"

namespace orvex::kit {

Look::Look()
    : Look(named("lit")) {}

std::vector<std::string> Look::names() {
    std::vector<std::string> names;
    for (const BuiltinLook* look = builtin_looks; look->name; ++look)
        names.emplace_back(look->name);
    return names;
}

Look Look::named(const std::string& name) {
    std::string known;
    for (const BuiltinLook* look = builtin_looks; look->name; ++look) {
        if (name == look->name)
            return from_text(look->text, name);
        known.append(known.empty() ? "" : ", ").append(look->name);
    }
    return Look("there is no look '" + name + "'; there are " + known);
}

Look Look::from_text(const std::string& text, const std::string& name) {
    Look look((std::string()));
    look.own_name = name;
    look.own_text = text;
    return look;
}

Look Look::from_file(const std::string& path) {
    Look look(mistake_in_reading(path));
    if (!look)
        return look;
    std::ifstream file(path, std::ios::binary);
    look.own_name = path.substr(folder_of(path).size());
    look.own_text.assign(std::istreambuf_iterator<char>(file), {});
    look.file = path;
    return look;
}

Look::Look(std::string reason)
    : why(std::move(reason)) {}

bool Look::has_lines() const {
    const std::size_t marker = own_text.find("[Lines]");
    return marker != own_text.npos && marker < own_text.find("[Vertex_Shader]");
}

} // namespace orvex::kit
