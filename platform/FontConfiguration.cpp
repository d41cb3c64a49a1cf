#include "platform/FontConfiguration.h"

#include <fontconfig/fontconfig.h>
#include <system_error>

std::jthread readFontConfiguration()
{
    try {
        return std::jthread([] { FcInit(); }); // which any thread may call
    } catch (const std::system_error &) {
        return {};
    }
}
