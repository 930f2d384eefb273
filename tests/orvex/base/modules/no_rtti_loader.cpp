// A loader built without type information, as plugins often are.

#include "orvex/base/loader_3d.h"

namespace {

class PlainLoader : public orvex::Loader3D {
public:
    PlainLoader() { set_type(orvex::PLUGIN_TYPE_LOADER_3D); }
    bool load_from_file(orvex::Model*, const char*) override { return true; }
};

} // namespace

orvex::Plugin* orvex_create_plugin() {
    return new PlainLoader;
}

void orvex_destroy_plugin(orvex::Plugin* plugin) {
    delete plugin;
}
