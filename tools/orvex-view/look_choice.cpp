#include "look_choice.h"

#include <algorithm>

#include <orvex_kit/look.h>

#include "start.h"

using namespace orvex::kit;

LookChoice::LookChoice()
    : names(Look::names())
    , num_own(names.size()) {}

void LookChoice::choose_place(std::size_t place) {
    is_new = is_new || place != chosen;
    chosen = place;
}

std::string LookChoice::choose(const std::string& word) {
    const auto end_of_own = names.begin() + static_cast<std::ptrdiff_t>(num_own);
    const auto own = std::find(names.begin(), end_of_own, word);
    if (own != end_of_own) {
        choose_place(static_cast<std::size_t>(own - names.begin()));
        return "";
    }
    FileWatch fresh_watch;
    fresh_watch.follow({word});
    if (const Look look = Look::from_file(word); !look)
        return look.reason();
    names.resize(num_own);
    names.push_back(word);
    watch = fresh_watch;
    chosen = num_own;
    is_new = true;
    return "";
}

bool LookChoice::choose_number(std::size_t number) {
    if (number < 1 || number > names.size())
        return false;
    choose_place(number - 1);
    return true;
}

void LookChoice::step(int places) {
    const auto count = static_cast<int>(names.size());
    choose_place(
        static_cast<std::size_t>((static_cast<int>(chosen) + places % count + count) % count));
}

bool LookChoice::look_at_file() {
    if (!watch.look() || chosen < num_own)
        return false;
    is_new = true;
    return true;
}

std::string LookChoice::apply(View& view) {
    if (!is_new)
        return "";
    is_new = false;
    const std::string& name = names[chosen];
    return view.set_look(chosen < num_own ? Look::named(name) : Look::from_file(name)).reason();
}
