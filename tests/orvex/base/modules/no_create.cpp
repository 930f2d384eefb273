#include "module_plugin.h"

void orvex_destroy_plugin(orvex::Plugin* plugin) {
    delete plugin;
}
