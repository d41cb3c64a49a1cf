#pragma once

#include <canberra.h>

/// The desktop's event-sound library, by the names of its own functions. It is loaded when it is
/// first asked for: linked, it and what it needs would delay each start of the program.
struct SoundLibrary
{
    decltype(&ca_context_create) contextCreate;
    decltype(&ca_context_destroy) contextDestroy;
    decltype(&ca_context_change_props) contextChangeProps;
    decltype(&ca_context_set_driver) contextSetDriver;
    decltype(&ca_context_play_full) contextPlayFull;
    decltype(&ca_proplist_create) proplistCreate;
    decltype(&ca_proplist_destroy) proplistDestroy;
    decltype(&ca_proplist_sets) proplistSets;

    /// Null where it is not installed.
    [[nodiscard]] static const SoundLibrary *load();
};
