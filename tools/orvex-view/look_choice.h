#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <orvex_kit/view.h>

#include "file_watch.h"

/// The looks that can be chosen from: the kit's own and, behind them, one of a file.
class LookChoice {
public:
    /// The kit's, of which `lit` is chosen.
    LookChoice();

    /// Chooses one of the kit's by its name, or a file by its path.
    /// @return why it can't be; the choice stays then
    std::string choose(const std::string& word);
    /// Chooses by a number, from 1. @return whether there is one
    bool choose_number(std::size_t number);
    /// Chooses the one that is so many places farther on, around and around.
    void step(int places);
    /// Looks whether the chosen one's file has changed. @return whether it is to be drawn anew
    bool look_at_file();

    /// Has a view draw by the choice, if it is another since the last call.
    /// @return what is wrong with it; the view goes on with the look that it had then
    std::string apply(orvex::kit::View& view);

    const std::string& name() const { return names[chosen]; } ///< of a file its path
    std::size_t size() const { return names.size(); }         ///< how many there are

private:
    std::vector<std::string> names;
    std::size_t num_own;
    std::size_t chosen = 0;
    bool is_new = true;
    FileWatch watch;

    void choose_place(std::size_t place);
};
