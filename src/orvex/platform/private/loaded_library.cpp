#include "orvex/platform/private/loaded_library.h"

#include <initializer_list>

#include <dlfcn.h>

namespace orvex {

LoadedLibrary::LoadedLibrary(char const* name, char const* other_name) {
    for (char const* candidate : {name, other_name})
        if (candidate && !library)
            library = dlopen(candidate, RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE);
    // The entry is kept by RTLD_NODELETE; the count it took is given back.
    if (library)
        dlclose(library);
}

void* LoadedLibrary::address(char const* name) const {
    return library ? dlsym(library, name) : nullptr;
}

} // namespace orvex
