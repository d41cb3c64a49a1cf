#include "platform/SoundLibrary.h"

#include <dlfcn.h>
#include <optional>

namespace {

constexpr const char *fileName = "libcanberra.so.0";

/// Whether there is a function of that name.
template <class Function>
bool find(Function &function, const char *name)
{
    function = reinterpret_cast<Function>(::dlsym(RTLD_DEFAULT, name));
    return function != nullptr;
}

std::optional<SoundLibrary> loadLibrary()
{
    SoundLibrary library{};
    if (::dlopen(fileName, RTLD_NOW | RTLD_GLOBAL) == nullptr || !find(library.contextCreate, "ca_context_create") ||
        !find(library.contextDestroy, "ca_context_destroy") ||
        !find(library.contextChangeProps, "ca_context_change_props") ||
        !find(library.contextSetDriver, "ca_context_set_driver") ||
        !find(library.contextPlayFull, "ca_context_play_full") || !find(library.proplistCreate, "ca_proplist_create") ||
        !find(library.proplistDestroy, "ca_proplist_destroy") || !find(library.proplistSets, "ca_proplist_sets")) {
        return std::nullopt;
    }
    return library;
}

} // namespace

const SoundLibrary *SoundLibrary::load()
{
    static const std::optional<SoundLibrary> library = loadLibrary();
    return library ? &*library : nullptr;
}
