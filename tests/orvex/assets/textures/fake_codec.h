#pragma once

#include <algorithm>
#include <cstdio>
#include <set>
#include <string>
#include <vector>

#include "orvex/base/image_codec.h"
#include "orvex/platform/private/file_bytes.h"
#include "orvex/renderer/records/image.h"

namespace orvex_test {

/// Decodes "<word> <width> <height> <value>" for a word of its own into RGB pixels of that value,
/// and keeps count of the memory it handed out.
class FakeCodec : public orvex::ImageCodec {
public:
    FakeCodec(const std::string& name, const std::string& word)
        : word_(word) {
        set_name(name.c_str());
        set_type(orvex::PLUGIN_TYPE_IMAGE_CODEC);
    }
    ~FakeCodec() override {
        for (unsigned char* pixels : live_)
            delete[] pixels;
    }

    /// What was asked, in order: "file word", "memory", "free", "save name".
    std::vector<std::string> calls;
    /// Whether the caller wanted a mirrored picture, last time.
    bool flag = false;
    /// The image of the last call.
    orvex::Image* image = nullptr;
    bool saves = true;
    /// The picture last written, with its format and sizes.
    orvex::Image saved;

    /// Pictures that were decoded and not given back.
    unsigned long live() const { return live_.size(); }

    std::vector<std::string> take_calls() {
        std::vector<std::string> taken;
        taken.swap(calls);
        return taken;
    }

    bool load_image_from_file(orvex::Image* target, const char* filename, bool mirror) override {
        calls.push_back("file");
        orvex::FileBytes file;
        return file.read(filename) && decode(target, file.text(), mirror);
    }

    bool load_image_from_memory(orvex::Image* target, unsigned char* bytes, unsigned long size,
                                bool mirror) override {
        calls.push_back("memory");
        return decode(target, std::string(bytes, bytes + size), mirror);
    }

    bool save_image_to_file(orvex::Image* source, const char* filename) override {
        calls.push_back(std::string("save ") + filename);
        image = source;
        saved = *source;
        return saves;
    }

    bool free_image_resources(orvex::Image* target) override {
        calls.push_back("free");
        image = target;
        if (live_.erase(target->pixmap_external) == 0)
            return false;
        delete[] target->pixmap_external;
        target->pixmap_external = nullptr;
        return true;
    }

private:
    bool decode(orvex::Image* target, const std::string& text, bool mirror) {
        char word[32] = {};
        unsigned long width = 0, height = 0;
        unsigned int value = 0;
        image = target;
        flag = mirror;
        if (std::sscanf(text.c_str(), "%31s %lu %lu %u", word, &width, &height, &value) != 4 ||
            word != word_)
            return false;
        if (mirror) {
            target->create(width, height, 1, orvex::PF_RGB_U8, true);
            return target->fill_color_rgb_u8(static_cast<unsigned char>(value), 0, 0);
        }
        const unsigned long bytes = width * height * 3;
        target->width = width;
        target->height = height;
        target->pixel_format = orvex::PF_RGB_U8;
        target->pixmap_external = new unsigned char[bytes];
        std::fill_n(target->pixmap_external, bytes, static_cast<unsigned char>(value));
        live_.insert(target->pixmap_external);
        return true;
    }

    std::string word_;
    std::set<unsigned char*> live_;
};

} // namespace orvex_test
