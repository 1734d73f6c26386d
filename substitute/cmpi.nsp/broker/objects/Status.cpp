#include "substitute/cmpi.nsp/broker/objects/Status.h"

#include <cstring>
#include <new>

#include "substitute/cmpi.nsp/broker/objects/StringObject.h"
#include "substitute/cmpi.nsp/query/QueryError.h"

namespace cmpinsp::broker {
namespace {

using namespace NZELVOR20;

struct Pair {
  CMPIrc code;
  EVORStatusCode status;
};

/// Read in both directions, the first match counting.
constexpr Pair kPairs[] = {
    {CMPI_RC_OK, eVORSuccess},
    {CMPI_RC_ERR_FAILED, eVORFailed},
    {CMPI_RC_ERR_ACCESS_DENIED, eVORAccessDenied},
    {CMPI_RC_ERR_INVALID_NAMESPACE, eVORInvalidNamespace},
    {CMPI_RC_ERR_INVALID_PARAMETER, eVORInvalidParameter},
    {CMPI_RC_ERR_INVALID_CLASS, eVORInvalidClass},
    {CMPI_RC_ERR_NOT_FOUND, eVORNotFound},
    {CMPI_RC_ERR_NOT_SUPPORTED, eVORNotSupported},
    {CMPI_RC_ERR_INVALID_SUPERCLASS, eVORInvalidClass},
    {CMPI_RC_ERR_ALREADY_EXISTS, eVORAlreadyExists},
    {CMPI_RC_ERR_NO_SUCH_PROPERTY, eVORNoSuchProperty},
    {CMPI_RC_ERR_TYPE_MISMATCH, eVORTypeMismatch},
    {CMPI_RC_ERR_INVALID_QUERY, eVORInvalidQuery},
    {CMPI_RC_ERR_QUERY_LANGUAGE_NOT_SUPPORTED, eVORInvalidQuery},
    {CMPI_RC_ERR_QUERY_FEATURE_NOT_SUPPORTED, eVORInvalidQuery},
    {CMPI_RC_ERR_METHOD_NOT_AVAILABLE, eVORMethodNotAvailable},
    {CMPI_RC_ERR_METHOD_NOT_FOUND, eVORMethodNotFound},
    {CMPI_RC_ERR_INVALID_HANDLE, eVORProviderFailed},
    {CMPI_RC_ERR_INVALID_DATA_TYPE, eVORTypeMismatch},
    {CMPI_RC_ERROR_SYSTEM, eVOROutOfMemory},
    {CMPI_RC_ERR_FAILED, eVORProviderFailed},
};

CMPIrc codeFor(query::Refusal refusal) noexcept {
  switch (refusal) {
    case query::Refusal::kLanguage:
      return CMPI_RC_ERR_QUERY_LANGUAGE_NOT_SUPPORTED;
    case query::Refusal::kFeature:
      return CMPI_RC_ERR_QUERY_FEATURE_NOT_SUPPORTED;
    case query::Refusal::kTypes:
      return CMPI_RC_ERR_TYPE_MISMATCH;
    case query::Refusal::kLimit:
      return CMPI_RC_ERR_SERVER_LIMITS_EXCEEDED;
    case query::Refusal::kSyntax:
      break;
  }
  return CMPI_RC_ERR_INVALID_QUERY;
}

/// The bytes are written, not the enumeration: the number may be none that CMPI knows.
CMPIStatus failed(int number, const char* text) noexcept {
  CMPIStatus status{CMPI_RC_OK, nullptr};
  std::memcpy(&status.rc, &number, sizeof number);
  try {
    status.msg = makeString(text);
  } catch (...) {
    // Without memory for the text, the code has to do.
  }
  return status;
}

}  // namespace

ProviderFailure::ProviderFailure(int number, const std::string& text)
    : TVORException(TVORStatusCode(statusFor(number), text)), m_number(number) {}

CMPIrc codeFor(EVORStatusCode code) noexcept {
  if (code == eVORProviderFailed) return CMPI_RC_ERR_FAILED;
  for (const Pair& pair : kPairs) {
    if (pair.status == code) return pair.code;
  }
  return CMPI_RC_ERR_FAILED;
}

EVORStatusCode statusFor(int code) noexcept {
  for (const Pair& pair : kPairs) {
    if (static_cast<int>(pair.code) == code) return pair.status;
  }
  return eVORFailed;
}

std::string describe(const CMPIStatus& status) {
  const std::string number = "CMPI status " + std::to_string(codeOf(status));
  const std::string text = textOrNothing(status.msg);
  return text.empty() ? number : text + " (" + number + ")";
}

CMPIStatus currentFailure() noexcept {
  try {
    throw;
  } catch (const Failure& failure) {
    return failed(failure.code(), failure.what());
  } catch (const query::QueryError& failure) {
    return failed(codeFor(failure.refusal()), failure.what());
  } catch (const ProviderFailure& failure) {
    return failed(failure.number(), failure.what());
  } catch (const TVORException& failure) {
    return failed(codeFor(failure.GetStatus().GetStatusCode()), failure.what());
  } catch (const std::bad_alloc&) {
    return CMPIStatus{CMPI_RC_ERROR_SYSTEM, nullptr};
  } catch (const std::exception& failure) {
    return failed(CMPI_RC_ERR_FAILED, failure.what());
  } catch (...) {
    return failed(CMPI_RC_ERR_FAILED, "an exception of unknown type");
  }
}

}  // namespace cmpinsp::broker
