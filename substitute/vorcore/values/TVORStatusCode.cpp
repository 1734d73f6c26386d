#include "framework/TVORStatusCode.h"

#include <array>
#include <utility>

namespace NZELVOR20 {
namespace {

constexpr std::array<const char*, 16> kTexts = {
    "success",
    "general failure",
    "not found",
    "not supported",
    "out of memory",
    "invalid parameter",
    "invalid class",
    "access denied",
    "type mismatch",
    "already exists",
    "no such property",
    "no such method",
    "method not available",
    "invalid namespace",
    "provider failed",
    "invalid query",
};

}  // namespace

TVORStatusCode::TVORStatusCode(EVORStatusCode code, std::string detail)
    : m_code(code), m_detail(std::move(detail)) {}

std::string TVORStatusCode::TranslateStatusCode() const {
  const auto number = static_cast<long long>(m_code);
  const bool isListed = number >= 0 && number < static_cast<long long>(kTexts.size());
  std::string text = isListed ? std::string(kTexts[static_cast<std::size_t>(number)])
                              : "unknown status " + std::to_string(number);
  if (!m_detail.empty()) {
    text += ": ";
    text += m_detail;
  }
  return text;
}

}  // namespace NZELVOR20
