#include "framework/TVORException.h"

#include <utility>

namespace NZELVOR20 {

TVORException::TVORException(TVORStatusCode status)
    : m_status(std::move(status)), m_text(m_status.TranslateStatusCode()) {}

TVORException::~TVORException() = default;

const char* TVORException::what() const noexcept { return m_text.c_str(); }

}  // namespace NZELVOR20
