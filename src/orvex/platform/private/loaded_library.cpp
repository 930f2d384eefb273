#include "orvex/platform/private/loaded_library.h"

#include <initializer_list>

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

void* LoadedLibrary::address(const char* name) const {
    return library ? dlsym(library, name) : nullptr;
}

} // namespace orvex
