#pragma once

#include <cstddef>
#include <exception>
#include <string>
#if defined(__GLIBCXX__) && !defined(_WIN32)
#include <cxxabi.h>
/// What ends a thread is caught by a reference to nothing, which the sanitizer takes for a fault.
#define CMPINSP_BINDS_NULL __attribute__((no_sanitize("undefined")))
#else
#define CMPINSP_BINDS_NULL
#endif

#include "substitute/cmpi.nsp/broker/objects/Status.h"
#include "substitute/cmpi.nsp/broker/services/OsThread.h"

namespace cmpinsp::broker {

/// What a provider's exception says, as far as somebody may want to read it: a long one is cut
/// between two characters.
inline std::string thrownText(const char* what) {
  constexpr std::size_t kMost = 4096;
  if (what == nullptr) return "without a text";
  std::size_t end = 0;
  while (end < kMost && what[end] != '\0') ++end;
  if (what[end] == '\0') return what;
  const auto isInside = [&] { return (static_cast<unsigned char>(what[end]) & 0xC0U) == 0x80U; };
  while (end > kMost - 4 && isInside()) --end;
  return std::string(what, end) + "...";
}

/// Calls into a provider. What it throws through the C boundary becomes a `Failure` that says so.
template <typename Call>
CMPINSP_BINDS_NULL auto guardedCall(const std::string& operation, Call call) {
  const auto failed = [&](const std::string& what) {
    return Failure(CMPI_RC_ERROR,
                   operation + ": an exception came through the C interface: " + what);
  };
  try {
    return call();
#if defined(__GLIBCXX__) && !defined(_WIN32)
  } catch (const abi::__forced_unwind&) {
    // The thread is being ended; that cannot be stopped.
    throw;
#elif defined(_WIN32)
  } catch (const ThreadEnd&) {
    throw;
#endif
  } catch (const std::exception& thrown) {
    throw failed(thrownText(thrown.what()));
  } catch (...) {
    throw failed("of unknown type");
  }
}

}  // namespace cmpinsp::broker
