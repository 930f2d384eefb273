#include "picture_file.h"

#include <orvex_kit/picture_file.h>

std::string write_picture(orvex::Renderer* renderer, const std::string& name) {
    return orvex::kit::write_screenshot(renderer, name, {orvex::kit::PictureFormat::jpeg}).reason();
}
