// Images, textures and materials.

#include <vector>

#include "fuzz/api/operations.h"

namespace orvex_fuzz {

using namespace orvex;

namespace {

/// A picture of two by two pixels that a codec reads, without compression (BMP).
constexpr unsigned char picture[] = {'B', 'M', 70, 0, 0, 0, 0, 0, 0, 0, 54, 0, 0, 0, 40, 0, 0,  0,
                                     2,   0,   0,  0, 2, 0, 0, 0, 1, 0, 24, 0, 0, 0, 0,  0, 16, 0,
                                     0,   0,   0,  0, 0, 0, 0, 0, 0, 0, 0,  0, 0, 0, 0,  0, 0,  0,
                                     1,   2,   3,  4, 5, 6, 0, 0, 7, 8, 9,  1, 2, 3, 0,  0};

/// The picture, with one byte changed now and then.
std::vector<unsigned char> draw_picture(Bytes& in) {
    std::vector<unsigned char> bytes(std::begin(picture), std::end(picture));
    for (unsigned int changes = in.below(3); changes > 0; --changes) {
        const unsigned int place = in.below(static_cast<unsigned int>(bytes.size()));
        bytes[place] = static_cast<unsigned char>(in.byte());
    }
    bytes.resize(in.byte() == 255 ? in.below(70) : bytes.size());
    return bytes;
}

/// A manager holds what it makes; the host holds it too.
template<class... Parameters>
void make(World& world, Bytes& in, Texture* (TextureMgr::*create)(Parameters...)) {
    std::tuple<Kept<Parameters>...> arguments{draw<Parameters>(world, in)...};
    std::apply([&](auto&... each) { world.hold((TextureMgr::get()->*create)(each...)); },
               arguments);
}

void load_from_memory(World& world, Bytes& in) {
    TextureMgr& textures = *TextureMgr::get();
    const std::vector<unsigned char> bytes = draw_picture(in);
    switch (in.byte() % 4) {
    case 0:
        textures.load_texture_2d_from_memory(world.reach<Texture>(in), bytes.data(), bytes.size(),
                                             in.flag());
        break;
    case 1:
        textures.load_cubemap_face_from_memory(world.reach<Texture>(in),
                                               draw<CUBEMAP_FACE>(world, in), bytes.data(),
                                               bytes.size(), in.flag());
        break;
    case 2: {
        const std::vector<const unsigned char*> blocks(6, bytes.data());
        const std::vector<unsigned long> sizes(6, bytes.size());
        Texture* const texture = world.reach<Texture>(in);
        textures.load_texture_cube_from_memory(texture, blocks.data(), sizes.data(), in.flag());
        break;
    }
    default:
        world.hold(textures.create_texture_2d_from_memory(bytes.data(), bytes.size(), in.flag()));
    }
}

void write_file(World& world, Bytes& in) {
    const char* const path = in.flag() ? "/dev/null" : "/nonexistent/picture.jpg";
    if (in.flag())
        TextureMgr::get()->write_texture_2d_to_file(draw<Texture*>(world, in), path);
    else
        TextureMgr::get()->do_screenshot(draw<Renderer*>(world, in), path);
}

/// Whether a manager gives its reference back; one that it drops elsewhere would be the host's.
bool gives_back(Renderer* renderer, Resource* resource) {
    const int owner = resource ? resource->get_renderer_id() : 0;
    return owner < 1 || !renderer || owner == renderer->getid();
}

/// A manager gives back a reference of its own, so that it is asked for what it has.
void release_from_manager(World& world, Bytes& in) {
    ResourceMgr* const managers[] = {TextureMgr::get(), MaterialMgr::get(), GpuProgramMgr::get()};
    ResourceMgr& manager = *managers[in.byte() % 3];
    const unsigned long count = manager.get_num_resources();
    Resource* const resource =
        count > 0 ? manager.get_resource_by_index(in.byte() % count) : nullptr;
    auto* const renderer = draw<Renderer*>(world, in);
    if (in.flag())
        manager.release_resource(renderer, resource, nullptr);
    else if (gives_back(renderer, resource))
        manager.remove_resource(renderer, resource);
}

void ask_manager(World& world, Bytes& in) {
    ResourceMgr* const managers[] = {TextureMgr::get(), MaterialMgr::get(), GpuProgramMgr::get()};
    const ResourceMgr& manager = *managers[in.byte() % 3];
    static_cast<void>(manager.get_resource(in.text()));
    static_cast<void>(manager.get_resource(in.integer()));
    static_cast<void>(manager.has_resource(world.reach<Resource>(in)));
    static_cast<void>(manager.get_resource_by_index(in.size()));
}

/// Copies pixels in, where there is no more to copy than the room for all arrays.
template<class Type, bool (Type::*update)(const void*)>
void update_pixmap(World& world, Bytes& in) {
    Type* const target = Place<Type>::find(world, in);
    const Image* const image = [&] {
        if constexpr (std::is_same_v<Type, Image>)
            return target;
        else
            return target ? target->get_image_ptr() : nullptr;
    }();
    if (image && image->width < 32 && image->height < 16)
        (target->*update)(in.byte() == 255 ? nullptr : world.scratch.data());
}

void create_image(World& world, Bytes& in) {
    Image& image = world.images[in.byte() % world.images.size()];
    const unsigned long width = in.size();
    const unsigned long height = in.size();
    image.create(width, height, in.size() % 3, draw<PIXEL_FORMAT>(world, in), in.flag());
}

/// From every format to every other.
void convert_image(World& world, Bytes& in) {
    Image& image = world.images[in.byte() % world.images.size()];
    const unsigned long width = in.byte() % 9;
    image.create(width, 3, 1, static_cast<PIXEL_FORMAT>(in.byte() % 9), in.flag());
    image.update_pixel_format(static_cast<PIXEL_FORMAT>(in.byte() % 9));
    image.update_pixel_format(static_cast<PIXEL_FORMAT>(in.byte() % 9));
    world.images[in.byte() % world.images.size()] = image;
}

/// A texture that is there to be drawn with.
void make_uploaded(World& world, Bytes& in) {
    const auto format = static_cast<PIXEL_FORMAT>(1 + in.byte() % 10);
    const unsigned long size = 1 + in.byte() % 9;
    TextureMgr& textures = *TextureMgr::get();
    Texture* texture = nullptr;
    switch (in.byte() % 3) {
    case 0:
        texture = textures.create_texture_1d(size, format);
        break;
    case 1:
        texture = textures.create_texture_2d(size, 1 + in.byte() % 9, format);
        break;
    default:
        texture = textures.create_texture_cube(size, format);
    }
    if (!texture)
        return;
    world.hold(texture);
    texture->upload(world.renderer);
    texture->bind(world.renderer, in.byte() % 20);
}

constexpr Operation rows[] = {
    {"convert", &convert_image},
    {"new uploaded texture", &make_uploaded},
    {"new uploaded texture", &make_uploaded},
    {"Image::create", &create_image},
    ORVEX_FUZZ_CALL(Image, update_pixel_format),
    ORVEX_FUZZ_CALL(Image, flip_vertical),
    ORVEX_FUZZ_CALL(Image, flip_horizontal),
    ORVEX_FUZZ_CALL(Image, fill_with_noise),
    ORVEX_FUZZ_CALL(Image, set_pixel),
    ORVEX_FUZZ_CALL(Image, set_pixel_2d),
    ORVEX_FUZZ_CALL(Image, set_pixel_v2),
    ORVEX_FUZZ_CALL(Image, fill_color_rgb_u8),
    ORVEX_FUZZ_CALL(Image, fill_color_rgba_f32),
    ORVEX_FUZZ_CALL(Image, cleanup),
    {"Image::update_pixmap_rgb_u8", &update_pixmap<Image, &Image::update_pixmap_rgb_u8>},
    {"Image::update_pixmap_rgba_f32", &update_pixmap<Image, &Image::update_pixmap_rgba_f32>},

    {"new Texture", [](World& world, Bytes&) { world.hold(new Texture); }},
    {"TextureMgr::create_texture",
     [](World& world, Bytes& in) { make(world, in, &TextureMgr::create_texture); }},
    {"TextureMgr::create_texture_1d",
     [](World& world, Bytes& in) { make(world, in, &TextureMgr::create_texture_1d); }},
    {"TextureMgr::create_texture_2d",
     [](World& world, Bytes& in) { make(world, in, &TextureMgr::create_texture_2d); }},
    {"TextureMgr::create_texture_2d",
     [](World& world, Bytes& in) { make(world, in, &TextureMgr::create_texture_2d); }},
    {"TextureMgr::create_texture_cube",
     [](World& world, Bytes& in) { make(world, in, &TextureMgr::create_texture_cube); }},
    {"TextureMgr::create_texture_2d_from_file",
     [](World& world, Bytes& in) { make(world, in, &TextureMgr::create_texture_2d_from_file); }},
    {"TextureMgr::create_color_texture_from_render_target",
     [](World& world, Bytes& in) {
         make(world, in, &TextureMgr::create_color_texture_from_render_target);
     }},
    {"TextureMgr::create_depth_texture_from_render_target",
     [](World& world, Bytes& in) {
         make(world, in, &TextureMgr::create_depth_texture_from_render_target);
     }},
    {"TextureMgr::load_texture_2d_from_memory", &load_from_memory},
    {"TextureMgr::write_texture_2d_to_file", &write_file},
    {"ResourceMgr::release_resource", &release_from_manager},
    {"ResourceMgr::get_resource", &ask_manager},
    ORVEX_FUZZ_CALL(TextureMgr, add_texture),
    ORVEX_FUZZ_CALL(TextureMgr, load_texture_2d_from_file),
    ORVEX_FUZZ_CALL(TextureMgr, load_cubemap_face_from_file),
    ORVEX_FUZZ_CALL(TextureMgr, upload_to_renderer),
    ORVEX_FUZZ_CALL(TextureMgr, update_gpu_memory_from_file),
    ORVEX_FUZZ_CALL(Texture, load_from_image),
    ORVEX_FUZZ_CALL(Texture, load_cubemap_face_image),
    ORVEX_FUZZ_CALL(Texture, create_1d),
    ORVEX_FUZZ_CALL(Texture, create_2d),
    ORVEX_FUZZ_CALL(Texture, create_cubemap),
    ORVEX_FUZZ_CALL(Texture, init_color_texture_from_render_target),
    ORVEX_FUZZ_CALL(Texture, init_depth_texture_from_render_target),
    ORVEX_FUZZ_CALL(Texture, upload),
    ORVEX_FUZZ_CALL(Texture, upload),
    ORVEX_FUZZ_CALL(Texture, unload),
    ORVEX_FUZZ_CALL(Texture, gpu_memory_update),
    ORVEX_FUZZ_CALL(Texture, bind),
    ORVEX_FUZZ_CALL(Texture, unbind),
    ORVEX_FUZZ_CALL(Texture, activate),
    ORVEX_FUZZ_CALL(Texture, image_activate),
    ORVEX_FUZZ_CALL(Texture, image_bind),
    ORVEX_FUZZ_CALL(Texture, image_unbind),
    {"Texture::_set_texture_data",
     [](World& world, Bytes& in) {
         if (Texture* const texture = world.reach<Texture>(in))
             texture->_set_texture_data(draw<Renderer*>(world, in), new TextureData);
     }},
    ORVEX_FUZZ_CALL(Texture, share_texture_data),
    ORVEX_FUZZ_CALL(Texture, init_texture_data),
    ORVEX_FUZZ_CALL(Texture, cleanup_texture_data),
    ORVEX_FUZZ_CALL(Texture, get_cubemap_image_ptr),
    ORVEX_FUZZ_CALL(Texture, get_width),
    ORVEX_FUZZ_CALL(Texture, get_cubemap_size),
    ORVEX_FUZZ_CALL(Texture, get_pixel_format),
    ORVEX_FUZZ_CALL(Texture, update_pixmap_rgb_u8_from_render_target),
    ORVEX_FUZZ_CALL(Texture, update_pixmap_rgba_u8_from_render_target),
    ORVEX_FUZZ_CALL(Texture, update_pixmap_rgba_u8_from_framebuffer),
    ORVEX_FUZZ_CALL(Texture, update_pixel_format),
    ORVEX_FUZZ_CALL(Texture, flip_horizontal),
    ORVEX_FUZZ_CALL(Texture, flip_vertical),
    ORVEX_FUZZ_CALL(Texture, fill_with_noise),
    ORVEX_FUZZ_CALL(Texture, set_texel_1d),
    ORVEX_FUZZ_CALL(Texture, set_texel_2d),
    ORVEX_FUZZ_CALL(Texture, set_texel_2d_v2),
    {"Texture::update_pixmap_rgb_u8", &update_pixmap<Texture, &Texture::update_pixmap_rgb_u8>},
    {"Texture::update_pixmap_rgba_u8", &update_pixmap<Texture, &Texture::update_pixmap_rgba_u8>},
    {"Texture::update_pixmap_rgb_f32", &update_pixmap<Texture, &Texture::update_pixmap_rgb_f32>},
    ORVEX_FUZZ_CALL(Texture, set_filtering_mode),
    ORVEX_FUZZ_CALL(Texture, set_addressing_mode),
    ORVEX_FUZZ_CALL(Texture, set_anisotropy),
    ORVEX_FUZZ_CALL(Texture, gen_mipmaps),

    {"new Material", [](World& world, Bytes&) { world.hold(new Material); }},
    {"MaterialMgr::create_material",
     [](World& world, Bytes& in) { world.hold(MaterialMgr::get()->create_material(in.text())); }},
    ORVEX_FUZZ_CALL(MaterialMgr, add_material),
    ORVEX_FUZZ_CALL(Material, set_gpu_program),
    ORVEX_FUZZ_CALL(Material, add_texture),
    ORVEX_FUZZ_CALL(Material, remove_texture),
    ORVEX_FUZZ_CALL(Material, remove_all_textures),
    ORVEX_FUZZ_CALL(Material, get_texture_by_index),
    ORVEX_FUZZ_CALL(Material, set_texture_unit_offset),
    ORVEX_FUZZ_CALL_OF(Material, set_ambient, void, (const vec4&)),
    ORVEX_FUZZ_CALL(Material, set_shininess),
    ORVEX_FUZZ_CALL(Material, set_use_fixed_material_colors_state),
    ORVEX_FUZZ_CALL(Material, bind),
    ORVEX_FUZZ_CALL(Material, bind_gpu_program),
    ORVEX_FUZZ_CALL(Material, bind_textures),
    ORVEX_FUZZ_CALL(Material, fixed_pipeline_bind_colors),
    ORVEX_FUZZ_CALL(Material, unbind),
    ORVEX_FUZZ_CALL(Material, unbind_gpu_program),
    ORVEX_FUZZ_CALL(Material, unbind_textures),
    ORVEX_FUZZ_CALL(Material, load_texture),
    ORVEX_FUZZ_CALL(Material, async_loading_add_texture_filename),
    ORVEX_FUZZ_CALL(Material, async_loading_get_texture_filename),
    ORVEX_FUZZ_CALL(Material, async_loading_clear_texture_filenames_list),
    ORVEX_FUZZ_CALL(Material, async_loading_process_all_texture_filenames),
};

} // namespace

std::span<const Operation> resource_operations() {
    return rows;
}

} // namespace orvex_fuzz
