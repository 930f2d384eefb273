#pragma once

/// @file
/// The options that stand in front of a picture's name in the material libraries of OBJ.

#include <array>
#include <string_view>

namespace orvex::names {

/// An option with its values.
struct MapOption {
    std::string_view word; ///< as "-s"
    std::array<float, 3> numbers{};
    int num_numbers = 0; ///< of the values in front, how many are numbers
    bool is_on = false;  ///< one of the values is "on"
};

/// Takes an option off the front of a text, with its values, as long as a name is left behind them:
/// a number may be the name itself, which comes last.
/// @param[in,out] text  behind it stands what is left, without the blanks around it
/// @return false, with all as it was, where no option that is known stands in front
bool take_map_option(std::string_view& text, MapOption& option);

} // namespace orvex::names
