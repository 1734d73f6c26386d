#pragma once

#include <exception>
#include <string>

#include "framework/Export.h"
#include "framework/TVORStatusCode.h"

namespace NZELVOR20 {

/// How framework operations report failure.
class VORCORE_API TVORException : public std::exception {
 public:
  explicit TVORException(TVORStatusCode status);
  TVORException(const TVORException&) = default;
  TVORException& operator=(const TVORException&) = default;
  ~TVORException() override;

  /// Why the operation failed.
  const TVORStatusCode& GetStatus() const noexcept { return m_status; }

  /// The status as text; valid as long as the exception.
  const char* what() const noexcept override;

 private:
  TVORStatusCode m_status;
  std::string m_text;
};

}  // namespace NZELVOR20
