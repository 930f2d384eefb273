#include "orvex/platform/private/loaded_library.h"

#include <initializer_list>
#include <utility>

#include <dlfcn.h>

namespace orvex {

LoadedLibrary::LoadedLibrary(const char* name, const char* other_name) {
    for (const char* candidate : {name, other_name})
        if (candidate && !library)
            library = dlopen(candidate, RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE);
    // The entry is kept by RTLD_NODELETE; the count it took is given back.
    if (library)
        dlclose(library);
}

LoadedLibrary LoadedLibrary::load(const char* name) {
    LoadedLibrary loaded;
    loaded.library = dlopen(name, RTLD_LAZY | RTLD_LOCAL);
    return loaded;
}

void* LoadedLibrary::address(const char* name) const {
    return library ? dlsym(library, name) : nullptr;
}

OpenedModule::OpenedModule(const char* filename)
    : handle(dlopen(filename, RTLD_LAZY)) {}

OpenedModule::~OpenedModule() {
    if (handle)
        dlclose(handle);
}

void* OpenedModule::release() {
    return std::exchange(handle, nullptr);
}

void* OpenedModule::address(const char* name) const {
    // An older error must not be taken for one of this look-up.
    dlerror();
    return dlsym(handle, name);
}

const char* OpenedModule::error_text() {
    return dlerror();
}

} // namespace orvex
