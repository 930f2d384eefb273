#include "module_plugin.h"

orvex::Plugin* orvex_create_plugin() {
    return new orvex_test::ModulePlugin;
}
