// Layers as files: one each, or all in one, with a file beside that tells what the numbers mean.

#include "layer_files.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include <orvex_kit/files.h>
#include <orvex_kit/picture_file.h>
#include <orvex_kit/whole_file.h>

#include "json_text.h"

using namespace orvex::kit;

namespace {

std::string without_suffix(const std::string& output) {
    return output.substr(0, suffix_of(output));
}

bool is_exr(const std::string& output) {
    return picture_format_of(output) == PictureFormat::exr;
}

} // namespace

std::string file_of_layer(Layer layer, const std::string& output) {
    if (layer == Layer::color || is_exr(output))
        return output;
    return without_suffix(output) + "." + name_of(layer) + output.substr(suffix_of(output));
}

std::string file_about_layers(const std::string& output) {
    return without_suffix(output) + ".json";
}

std::vector<std::string> files_of_layers(const std::vector<Layer>& layers,
                                         const std::string& output) {
    std::vector<std::string> files;
    for (const Layer layer : layers)
        if (std::string file = file_of_layer(layer, output);
            std::find(files.begin(), files.end(), file) == files.end())
            files.push_back(std::move(file));
    files.push_back(file_about_layers(output));
    return files;
}

namespace {

constexpr int full = std::numeric_limits<std::uint16_t>::max();

/// The distance that one step of a PNG's depth stands for: the farthest is the last step.
double depth_step_of(const Picture& depth) {
    float farthest = 0.0f;
    for (int y = 0; y < depth.height(); ++y)
        for (int x = 0; x < depth.width(); ++x)
            if (const float value = depth.row<float>(y)[x]; std::isfinite(value))
                farthest = std::max(farthest, value);
    return farthest > 0.0f ? static_cast<double>(farthest) / full : 1.0;
}

/// Makes 16-bit samples of the samples of a picture. @return what went wrong; empty if nothing did
template<class Value, class Convert>
std::string convert(const Picture& from, Picture& to, Convert convert_sample) {
    if (const Outcome made = to.create(from.width(), from.height(), from.channels(), Sample::u16);
        !made)
        return made.reason();
    for (int y = 0; y < from.height(); ++y) {
        const Value* const values = from.row<Value>(y);
        std::transform(
            values, values + from.width() * from.channels(), to.row<std::uint16_t>(y),
            [&](Value value) { return static_cast<std::uint16_t>(convert_sample(value)); });
    }
    return "";
}

std::string ids_in_png(Layer layer, const Picture& ids, Picture& png) {
    bool fits = true;
    std::string mistake = convert<std::int32_t>(ids, png, [&](std::int32_t id) {
        fits = fits && id < full;
        return id + 1;
    });
    if (mistake.empty() && !fits)
        mistake = std::string("PNG holds no ids beyond 65534, which the layer ") + name_of(layer) +
                  " has: .npy and .exr do";
    return mistake;
}

/// What a layer looks like as a PNG.
std::string in_png(Layer layer, const Picture& picture, Picture& png) {
    switch (layer) {
    case Layer::color:
        return png.copy_from(picture).reason();
    case Layer::depth:
        return convert<float>(picture, png, [step = depth_step_of(picture)](float depth) {
            return std::isfinite(depth) ? std::lround(static_cast<double>(depth) / step) : 0;
        });
    case Layer::normal:
        return convert<float>(picture, png,
                              [](float part) { return std::lround((part * 0.5f + 0.5f) * full); });
    case Layer::position:
        return "PNG holds no positions: .npy and .exr do";
    case Layer::object:
    case Layer::material:
    case Layer::face:
        break;
    }
    return ids_in_png(layer, picture, png);
}

/// Each to its file, once the format is known to hold all of them.
std::string write_each(const LayerPictures& drawn, const std::string& output) {
    const bool is_png = picture_format_of(output) == PictureFormat::png;
    std::vector<Picture> pngs(is_png ? drawn.layers.size() : 0);
    for (std::size_t i = 0; i < pngs.size(); ++i)
        if (std::string mistake = in_png(drawn.layers[i], drawn.pictures[i], pngs[i]);
            !mistake.empty())
            return mistake;
    for (std::size_t i = 0; i < drawn.layers.size(); ++i)
        if (const Outcome written = write_picture(is_png ? pngs[i] : drawn.pictures[i],
                                                  file_of_layer(drawn.layers[i], output));
            !written)
            return written.reason();
    return "";
}

/// The letters of a layer's channels in OpenEXR; empty for those that its samples have anyway.
const char* letters_of(Layer layer) {
    switch (layer) {
    case Layer::depth:
        return "Z";
    case Layer::normal:
    case Layer::position:
        return "XYZ";
    case Layer::color:
    case Layer::object:
    case Layer::material:
    case Layer::face:
        break;
    }
    return "";
}

std::string write_all_in_one(const LayerPictures& drawn, const std::string& output) {
    std::vector<PictureLayer> layers;
    for (std::size_t i = 0; i < drawn.layers.size(); ++i) {
        const Layer layer = drawn.layers[i];
        layers.push_back(
            {layer == Layer::color ? "" : name_of(layer), &drawn.pictures[i], letters_of(layer)});
    }
    return write_layers(layers, output).reason();
}

template<class Rows>
void put_rows(JsonText& json, const char* key, const Rows& rows) {
    json.key(key).begin_list();
    for (const auto& row : rows)
        json.doubles(std::vector<double>(row.begin(), row.end()));
    json.end();
}

void put_camera(JsonText& json, const Camera& camera, int width, int height) {
    if (const auto intrinsics = camera.intrinsics(width, height))
        put_rows(json, "intrinsics", *intrinsics);
    put_rows(json, "pose", camera.pose());
    json.key("near").number(camera.near());
    json.key("far").number(camera.far());
}

template<class Things>
void put_names(JsonText& json, const char* key, const Things& things) {
    json.key(key).begin_list();
    for (const auto& thing : things)
        json.text(thing.name);
    json.end();
}

std::string text_about(const LayerPictures& drawn, const std::string& output) {
    const int width = drawn.pictures.front().width();
    const int height = drawn.pictures.front().height();
    JsonText json;
    json.begin_object();
    json.key("size").numbers({static_cast<float>(width), static_cast<float>(height)});
    put_camera(json, drawn.camera, width, height);
    json.key("layers").begin_object();
    for (const Layer layer : drawn.layers) {
        const std::string file = file_of_layer(layer, output);
        json.key(name_of(layer)).text(file.substr(folder_of(file).size()));
    }
    json.end();
    if (picture_format_of(output) == PictureFormat::png)
        for (std::size_t i = 0; i < drawn.layers.size(); ++i)
            if (drawn.layers[i] == Layer::depth)
                json.key("depth_scale").number(depth_step_of(drawn.pictures[i]));
    put_names(json, "objects", drawn.model.meshes());
    put_names(json, "materials", drawn.model.materials());
    json.end();
    return json.take();
}

} // namespace

namespace {

std::string write_text(const std::string& text, const std::string& name) {
    WholeFile file(name);
    Outcome outcome = file.begin();
    if (outcome)
        outcome = file.put(text);
    if (outcome)
        outcome = file.finish();
    return outcome.reason();
}

} // namespace

std::string write_layer_files(const LayerPictures& drawn, const std::string& output) {
    const std::string mistake =
        is_exr(output) ? write_all_in_one(drawn, output) : write_each(drawn, output);
    if (!mistake.empty())
        return mistake;
    return write_text(text_about(drawn, output), file_about_layers(output));
}
