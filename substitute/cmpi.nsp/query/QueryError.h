#pragma once

#include <cstdint>
#include <string>

#include "framework/TVORException.h"

namespace cmpinsp::query {

/// Why a query cannot be served.
enum class Refusal : std::uint8_t {
  kLanguage,  ///< a language that is not read here
  kSyntax,    ///< no query of its language
  kFeature,   ///< a feature beyond the language's basic form
  kTypes,     ///< two values that cannot be compared
  kLimit      ///< a condition whose normal form would be too large
};

class QueryError final : public NZELVOR20::TVORException {
 public:
  QueryError(Refusal refusal, const std::string& text)
      : TVORException(NZELVOR20::TVORStatusCode(
            refusal == Refusal::kTypes ? NZELVOR20::eVORTypeMismatch : NZELVOR20::eVORInvalidQuery,
            text)),
        m_refusal(refusal),
        m_detail(text) {}

  Refusal refusal() const noexcept { return m_refusal; }
  /// The text without that of the status.
  const std::string& detail() const noexcept { return m_detail; }

 private:
  Refusal m_refusal;
  std::string m_detail;
};

}  // namespace cmpinsp::query
