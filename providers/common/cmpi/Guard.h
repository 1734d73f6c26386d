#pragma once

#include <exception>

#include "cmpi/cmpi.h"
#include "providers/common/model/DiagnosticProvider.h"

namespace providers {

inline CMPIStatus failure(const CMPIBroker* broker, int code, const char* text) noexcept {
  return {static_cast<CMPIrc>(code), broker->eft->newString(broker, text, nullptr)};
}

/// Does the work of a function that the broker calls: no exception crosses into the broker, each
/// becomes a status with its text.
template <class Work>
CMPIStatus guarded(const CMPIBroker* broker, Work&& work) noexcept {
  try {
    return work();
  } catch (const ProviderError& error) {
    return failure(broker, error.code(), error.what());
  } catch (const std::exception& error) {
    return failure(broker, CMPI_RC_ERR_FAILED, error.what());
  } catch (...) {
    return failure(broker, CMPI_RC_ERR_FAILED, "an exception of no standard type");
  }
}

}  // namespace providers
