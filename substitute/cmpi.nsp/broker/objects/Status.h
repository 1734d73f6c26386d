#pragma once

#include <cstring>
#include <string>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/broker/lifetime/Failure.h"

namespace cmpinsp::broker {

/// A provider's call that failed, with the provider's own number: the framework has fewer codes,
/// and another provider that asked through the broker is to see what this one said.
class ProviderFailure final : public NZELVOR20::TVORException {
 public:
  ProviderFailure(int number, const std::string& text);

  int number() const noexcept { return m_number; }

 private:
  int m_number;
};

/// The closest CMPI code, and the other way round. A number that CMPI does not know is a failure.
CMPIrc codeFor(NZELVOR20::EVORStatusCode code) noexcept;
NZELVOR20::EVORStatusCode statusFor(int code) noexcept;

/// The number that a provider passed for an enumeration, which may be none that CMPI knows: the
/// bytes are read, not the enumeration.
template <typename Enumeration>
int numberOf(const Enumeration& passed) noexcept {
  static_assert(sizeof passed == sizeof(int), "enumerations are passed as int");
  int number = 0;
  std::memcpy(&number, &passed, sizeof number);
  return number;
}

/// The number in a status that came from a provider.
inline int codeOf(const CMPIStatus& status) noexcept { return numberOf(status.rc); }

/// Why a status failed: its message and its number. Never touches a message that is no live string.
std::string describe(const CMPIStatus& status);

/// The exception being handled, as a status with its text.
CMPIStatus currentFailure() noexcept;

/// What a provider gets instead of data.
constexpr CMPIData kNoData = {CMPI_null, CMPI_badValue | CMPI_nullValue, {}};

/// Runs `operation` at the C boundary: its exceptions become a status, and the answer `failed`.
template <typename Answer, typename Operation>
Answer answer(CMPIStatus* status, Answer failed, Operation&& operation) noexcept {
  try {
    Answer result = operation();
    if (status != nullptr) *status = CMPIStatus{CMPI_RC_OK, nullptr};
    return result;
  } catch (...) {
    const CMPIStatus failure = currentFailure();
    if (status != nullptr) *status = failure;
    return failed;
  }
}

/// The same for functions that answer with a status alone.
template <typename Operation>
CMPIStatus perform(Operation&& operation) noexcept {
  try {
    operation();
    return CMPIStatus{CMPI_RC_OK, nullptr};
  } catch (...) {
    return currentFailure();
  }
}

/// What a service answers that this broker does not offer.
[[noreturn]] inline void notSupported(const char* service) {
  throw Failure(CMPI_RC_ERR_NOT_SUPPORTED, std::string(service) + " is not supported");
}

/// `text`, which a provider must not leave out.
inline const char* required(const char* text, const char* what) {
  if (text == nullptr) {
    throw Failure(CMPI_RC_ERR_INVALID_PARAMETER, std::string(what) + " is null");
  }
  return text;
}

}  // namespace cmpinsp::broker
