#include "options.h"

#include <cstddef>

#include "keys.h"
#include "takers.h"

using namespace orvex::kit;

void add_rules(Arguments& rules, Options& options) {
    rules.begin_group("The window");
    add_size_rule(rules, options, "its size (1280x960)");
    rules.add_value("--background", 'b', "COLOR",
                    "colour behind the model: #rgb, #rrggbb or a name (#2b3038)",
                    take_color(options.background));
    rules.add_flag("--statistics", 0, "tells how long frames take", options.statistics);
    rules.add_flag("--bare", 0, "shows no text over the model", options.bare);
    rules.begin_group("The model");
    add_look_rules(rules, options);
    rules.add_value("--layer", 0, "NAME",
                    "what each pixel shows: " + layer_names(" or ") + " (color)",
                    take(options.layer, "one of " + layer_names(), layer_named));
    rules.begin_group("The first view");
    add_angle_rules(rules, options);
    add_up_rule(rules, options);
    rules.begin_group("What reads");
    add_plugin_rule(rules, options);
    add_loader_rule(rules, options);
    rules.begin_group("Instead of a window");
    add_message_rules(rules, options);
    set_model_operand(rules, options);
}

std::string read_options(const std::vector<std::string>& words, Options& options) {
    Arguments rules;
    add_rules(rules, options);
    std::string mistake = rules.read(words);
    if (!mistake.empty() || options.help || options.version)
        return mistake;
    return mistake_of_shared(options);
}

namespace {

std::string keys_text() {
    constexpr std::size_t column = 33;
    std::string text;
    for (const KeyLine& line : key_lines()) {
        std::string keys = std::string("  ") + line.keys;
        keys.resize(column, ' ');
        text += keys + line.meaning + "\n";
    }
    return text;
}

} // namespace

std::string help_text() {
    Options unused;
    Arguments rules;
    add_rules(rules, unused);
    return "usage: orvex-view [options] [MODEL]\n"
           "\n"
           "Shows a model file, with its materials and textures, in a window. A file that\n"
           "is dropped on the window is shown; what changes on disk is read again.\n"
           "Reads " ORVEX_TOOL_FORMATS ".\n"
           "\n" +
           rules.help() + "\nMouse and keys:\n" + keys_text() +
           "\n"
           "Ends with 0 when all went well, with 1 when something failed, and with 2 when\n"
           "the command line is wrong.\n";
}
