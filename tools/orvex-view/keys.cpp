#include "keys.h"

namespace {

struct Binding {
    Key key;
    Command plain;
    Command shifted;
};

constexpr Binding bindings[] = {
    {key_of('l'), Command::next_look, Command::previous_look},
    {Key::tab, Command::next_layer, Command::previous_layer},
    {key_of('w'), Command::wireframe, Command::wireframe},
    {key_of('u'), Command::up_axis, Command::up_axis},
    {Key::home, Command::home, Command::home},
    {key_of('t'), Command::text, Command::text},
    {key_of('s'), Command::statistics, Command::statistics},
    {key_of('p'), Command::picture, Command::picture},
    {key_of('r'), Command::reload, Command::reload},
    {key_of('h'), Command::help, Command::help},
    {Key::f1, Command::help, Command::help},
    {key_of('q'), Command::end, Command::end},
    {Key::escape, Command::end, Command::end},
};

} // namespace

Command command_of(Key key, bool shift) {
    if (key >= key_of('1') && key <= key_of('9'))
        return Command::look_by_number;
    for (const Binding& binding : bindings)
        if (binding.key == key)
            return shift ? binding.shifted : binding.plain;
    return Command::none;
}

const std::vector<KeyLine>& key_lines() {
    static const std::vector<KeyLine> lines = {
        {"left button, arrows", "around the model"},
        {"right or middle button, shift", "aside"},
        {"wheel, page keys", "nearer and farther"},
        {"home", "back to the first view"},
        {"l, shift l, 1 to 9", "the next, the previous look, or one by its number"},
        {"tab, shift tab", "the next, the previous layer"},
        {"w", "edges alone"},
        {"u", "another way up"},
        {"t", "text"},
        {"s", "statistics of frames"},
        {"p", "writes the picture to a file"},
        {"r", "reads the model again"},
        {"h, f1", "this help"},
        {"q, escape", "ends"},
    };
    return lines;
}
