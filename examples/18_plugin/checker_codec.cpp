/// @file
/// A plugin that decodes checkerboards described in words: "checker 64 8" is a picture of 64 by 64
/// pixels with 8 by 8 fields.

#include <cstddef>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>

#include <orvex/base/image_codec.h>
#include <orvex/renderer/records/image.h>

namespace {

struct Checker {
    unsigned long size = 0;
    unsigned long fields = 0;
};

bool parse(const std::string& text, Checker& checker) {
    constexpr unsigned long largest = 4096;
    std::istringstream words(text);
    std::string kind;
    words >> kind >> checker.size >> checker.fields;
    return words && kind == "checker" && checker.size >= 1 && checker.size <= largest &&
           checker.fields >= 1 && checker.fields <= checker.size;
}

unsigned char* paint(const Checker& checker, bool mirror) {
    auto* const pixels = new unsigned char[checker.size * checker.size * 3];
    unsigned char* pixel = pixels;
    for (unsigned long row = 0; row < checker.size; ++row) {
        const unsigned long y = mirror ? checker.size - 1 - row : row;
        for (unsigned long x = 0; x < checker.size; ++x) {
            const unsigned long field =
                x * checker.fields / checker.size + y * checker.fields / checker.size;
            for (int channel = 0; channel < 3; ++channel)
                *pixel++ = field % 2 == 0 ? 255 : 40;
        }
    }
    return pixels;
}

class CheckerCodec : public orvex::ImageCodec {
public:
    CheckerCodec() {
        set_name("example_checker_codec");
        set_description("Checkerboards in words");
        set_author("orvex");
        set_type(orvex::PLUGIN_TYPE_IMAGE_CODEC);
    }
    ~CheckerCodec() override {
        for (unsigned char* const pixels : decoded)
            delete[] pixels;
    }

    bool load_image_from_file(orvex::Image* image, const char* filename, bool mirror) override {
        if (!filename)
            return false;
        std::ifstream file(filename, std::ios::binary);
        std::string text{std::istreambuf_iterator<char>(file), {}};
        return load_image_from_memory(image, reinterpret_cast<unsigned char*>(text.data()),
                                      text.size(), mirror);
    }

    bool load_image_from_memory(orvex::Image* image, unsigned char* bytes, unsigned long size,
                                bool mirror) override {
        Checker checker;
        if (!image || !bytes || !parse({reinterpret_cast<char*>(bytes), size}, checker))
            return false;
        image->width = checker.size;
        image->height = checker.size;
        image->depth = 1;
        image->pixel_format = orvex::PF_RGB_U8;
        image->pixmap_external = paint(checker, mirror);
        decoded.insert(image->pixmap_external);
        return true;
    }

    bool save_image_to_file(orvex::Image*, const char*) override { return false; }

    // Every codec is asked about every image: one that was decoded elsewhere is not this one's.
    bool free_image_resources(orvex::Image* image) override {
        if (!image || decoded.erase(image->pixmap_external) == 0)
            return false;
        delete[] image->pixmap_external;
        image->pixmap_external = nullptr;
        return true;
    }

private:
    std::set<unsigned char*> decoded;
};

} // namespace

orvex::Plugin* orvex_create_plugin() {
    return new CheckerCodec;
}

void orvex_destroy_plugin(orvex::Plugin* plugin) {
    delete plugin;
}
