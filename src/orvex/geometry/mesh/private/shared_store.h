#pragma once

/// @file
/// How an object changes the reference-counted store that it draws from.

namespace orvex {

/// Lets `own` go and takes `data` in its place, one reference each; either may be null.
/// @param end  frees `own`, called when nobody else holds it
template<class Store, class End>
void take_store(Store*& own, Store* data, End end) {
    // Dropping one's own store to take it again would free it in between.
    if (data == own)
        return;
    if (own) {
        own->dec_ref();
        if (own->get_ref() == 0)
            end();
    }
    if (data)
        data->inc_ref();
    own = data;
}

} // namespace orvex
