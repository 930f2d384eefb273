#include "orvex_formats/gltf/private/gltf_texture.h"

#include <cmath>
#include <utility>

#include "orvex_formats/private/beside.h"
#include "orvex_formats/private/refusal.h"

namespace orvex::formats {

GltfTextures::GltfTextures(const Json& json, const InputFile& file, GltfBuffers& buffers,
                           GltfBudget& budget, GltfNotes& notes, Draft& draft)
    : file(file)
    , buffers(buffers)
    , budget(budget)
    , notes(notes)
    , draft(draft)
    , textures(json.list("textures"))
    , samplers(json.list("samplers")) {
    const Json told = json.list("images");
    images.resize(told.size());
    for (std::size_t i = 0; i < told.size(); ++i)
        images[i].json = told.at(i);
}

// ------------------------------------------------------------------------------------ textures

namespace {

/// Moves, turns and scales. The file's v goes downward, and a draft's upward: what is turned and
/// scaled about the upper left corner there is so about the lower left one here, and moved.
void set_transform(const Json& transform, PhysicalTexture& told) {
    const auto offset = transform.numbers<2>("offset", {0.0, 0.0});
    const auto scale = transform.numbers<2>("scale", {1.0, 1.0});
    const double rotation = transform.number("rotation", 0.0);
    const double sine = std::sin(rotation), cosine = std::cos(rotation);
    told.rotation = static_cast<float>(rotation);
    told.scale_u = static_cast<float>(scale[0]);
    told.scale_v = static_cast<float>(scale[1]);
    told.offset_u = static_cast<float>(offset[0] + sine * scale[1]);
    told.offset_v = static_cast<float>(1.0 - offset[1] - cosine * scale[1]);
}

PhysicalTexture::Wrap wrap_of(const Json& sampler, const char* name) {
    switch (sampler.whole(name, 10497)) {
    case 33071:
        return PhysicalTexture::Wrap::clamp;
    case 33648:
        return PhysicalTexture::Wrap::mirror;
    case 10497:
        return PhysicalTexture::Wrap::repeat;
    default:
        sampler.need(name).refuse("no way to wrap");
    }
}

} // namespace

void GltfTextures::set_wrap(const Json& texture, PhysicalTexture& told) const {
    const std::size_t place = texture.index("sampler", samplers.size(), "samplers");
    if (place == Json::no_index)
        return;
    told.wrap_u = wrap_of(samplers.at(place), "wrapS");
    told.wrap_v = wrap_of(samplers.at(place), "wrapT");
}

PhysicalTexture GltfTextures::read(const Json& owner, const char* name) {
    PhysicalTexture told;
    const Json info = owner.object(name);
    if (!info)
        return told;
    const Json texture = textures.at(info.need("index").as_index(textures.size(), "textures"));
    std::uint64_t layer = info.whole("texCoord", 0);
    if (const Json transform = info.object("extensions").object("KHR_texture_transform")) {
        set_transform(transform, told);
        layer = transform.whole("texCoord", layer);
    }
    set_wrap(texture, told);
    told.strength = info.real("scale", info.real("strength", 1.0f));
    if (layer > 1) {
        notes.add(info, "pictures by texture coordinates beyond the second were left out");
        return {};
    }
    told.layer = static_cast<unsigned>(layer);
    told.image = picture_of(texture);
    return told.image.empty() ? PhysicalTexture() : told;
}

// ------------------------------------------------------------------------------------ pictures

const std::string& GltfTextures::picture_of(const Json& texture) {
    const std::size_t place = texture.index("source", images.size(), "images");
    if (place == Json::no_index) {
        notes.add(texture, "a texture without a picture that can be read was left out");
        return nothing;
    }
    Image& image = images[place];
    if (!image.is_looked_at)
        look_at(image, place);
    return image.name;
}

void GltfTextures::look_at(Image& image, std::size_t place) {
    image.is_looked_at = true;
    const Json uri = image.json.find("uri");
    Picture picture;
    if (uri) {
        if (image.json.find("bufferView"))
            image.json.refuse("it has a URI and a view");
        if (!GltfBuffers::decode_data_uri(uri, picture.bytes)) {
            name_file(image, uri);
            return;
        }
    } else {
        const std::size_t view =
            image.json.need("bufferView").as_index(buffers.num_views(), "views");
        budget.take(buffers.size_of_view(view), image.json);
        const GltfBuffers::Bytes bytes = buffers.bytes_of_view(view);
        picture.bytes.assign(bytes.begin(), bytes.end());
    }
    if (picture.bytes.empty()) {
        notes.add(image.json, "a picture without bytes was left out");
        return;
    }
    const std::string told(image.json.text("name"));
    picture.name =
        free_name("picture " + std::to_string(place) + (told.empty() ? "" : ": " + told));
    image.name = picture.name;
    draft.pictures.push_back(std::move(picture));
}

void GltfTextures::name_file(Image& image, const Json& uri) {
    std::string name;
    if (!unescape_uri(uri.text(), name)) {
        notes.add(uri, "the picture was left out: a percent sign without two digits");
        return;
    }
    // A file that isn't there is told of by those who look for it.
    const Beside beside = find_beside(file, name);
    if (!beside.mistake.empty() && !beside.is_missing) {
        notes.add(uri, "the picture \"" + in_words(name) + "\" was left out: " + beside.mistake);
        return;
    }
    image.name = name;
    files.emplace(std::move(name), uri);
}

/// A name that no picture has which is a file, those included that no material has named yet.
std::string GltfTextures::free_name(std::string name) {
    if (!are_files_listed) {
        are_files_listed = true;
        std::string file_name;
        for (const Image& image : images) {
            const Json uri = image.json.find("uri");
            if (uri.is_text() && !uri.text().starts_with("data:") &&
                unescape_uri(uri.text(), file_name))
                names_of_files.insert(file_name);
        }
    }
    while (names_of_files.count(name))
        name += ' ';
    return name;
}

void GltfTextures::embed(const std::string& name) {
    const auto file = files.find(name);
    if (file == files.end())
        return;
    Picture picture{name, {}};
    try {
        picture.bytes = buffers.read_file(file->second);
    } catch (const Refusal& refusal) {
        notes.add(std::string(refusal.what()) + "; it is white");
    }
    draft.pictures.push_back(std::move(picture));
    files.erase(file);
}

const std::string& GltfTextures::white() {
    if (white_name.empty()) {
        white_name = free_name("white");
        draft.pictures.push_back({white_name, {}});
    }
    return white_name;
}

} // namespace orvex::formats
