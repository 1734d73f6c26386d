#pragma once

#include <string>

#include "framework/EVORStatusCode.h"
#include "framework/Export.h"

namespace NZELVOR20 {

/// A status number with its text. A plain value: copy it freely, from any thread.
class VORCORE_API TVORStatusCode {
 public:
  /// Wraps `code`; `detail` says what the code is about ("class CIM_Foo"), and may be empty.
  TVORStatusCode(EVORStatusCode code, std::string detail = std::string());

  /// The text of the code, followed by ": " and the detail where there is one. An unlisted number
  /// reads "unknown status N".
  std::string TranslateStatusCode() const;

  /// The number.
  EVORStatusCode GetStatusCode() const noexcept { return m_code; }

 private:
  EVORStatusCode m_code;
  std::string m_detail;
};

}  // namespace NZELVOR20
