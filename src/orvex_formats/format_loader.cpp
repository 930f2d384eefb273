#include "orvex_formats/private/format_loader.h"

#include <new>
#include <string>
#include <utility>

#include <orvex/assets/models/load_undo.h>

#include "orvex_formats/private/build_model.h"
#include "orvex_formats/private/refusal.h"

namespace orvex::formats {

FormatLoader::FormatLoader(const char* name, const char* format, const char* description,
                           Draft (*reader)(const InputFile& file))
    : reader(reader) {
    set_name(name);
    set_loader_name(format);
    set_description(description);
    set_author("orvex");
    set_type(PLUGIN_TYPE_LOADER_3D);
}

bool FormatLoader::load_from_file(Model* model, const char* filename) {
    clear_failure_reason();
    if (!model || !filename) {
        set_format_unknown("no model, or no name of a file");
        return false;
    }
    try {
        load(*model, std::string(get_model_dir()) + filename);
        return true;
    } catch (const Refusal& refusal) {
        if (refusal.is_format_known())
            set_failure_reason("%s", refusal.what());
        else
            set_format_unknown("%s", refusal.what());
    } catch (const std::bad_alloc&) {
        set_failure_reason("there isn't enough memory");
    }
    return false;
}

void FormatLoader::load(Model& model, const std::string& path) {
    Draft draft = reader(InputFile(path));
    for (const std::string& note : draft.notes)
        add_note("%s", note.c_str());
    for (const std::string& file : draft.files)
        add_file(file.c_str());
    LoadUndo undo(model);
    for (const std::string& note : build_model(std::move(draft), model))
        add_note("%s", note.c_str());
    undo.keep();
}

} // namespace orvex::formats
