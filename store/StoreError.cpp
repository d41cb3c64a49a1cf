#include "store/StoreError.h"

#include <utility>

StoreError::StoreError(Reason reason, int engineCode, std::string path, const std::string &text)
    : std::runtime_error(text)
    , m_reason(reason)
    , m_engineCode(engineCode)
    , m_path(std::move(path))
{
}
