#pragma once

#include <exception>
#include <string>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/Log.h"
#include "substitute/cmpi.nsp/manager/providers/Router.h"

namespace cmpinsp {

/// How asking a provider went.
enum class Outcome : unsigned char {
  eAnswered,
  eRefused,  ///< "not found" or "not supported"
  eFailed
};

/// Asks several providers in turn: one that fails is logged and does not keep the others from
/// answering. "Not found" and "not supported" are answers, not failures.
class Attempts {
 public:
  /// Runs `call(provider)` for the route.
  template <typename Call>
  Outcome run(const Route& route, Call call) {
    try {
      call(route.provider->get());
      m_anySuccess = true;
      return Outcome::eAnswered;
    } catch (const NZELVOR20::TVORException& error) {
      const NZELVOR20::EVORStatusCode code = error.GetStatus().GetStatusCode();
      if (code == NZELVOR20::eVORNotFound || code == NZELVOR20::eVORNotSupported) {
        if (!m_refusal) m_refusal = std::current_exception();
        m_reason = error.what();
        return Outcome::eRefused;
      }
      logLine(kErrorLevel, std::string("Object manager: ") + error.what());
      if (!m_failure) m_failure = std::current_exception();
      return Outcome::eFailed;
    }
  }

  /// Runs `step()`, which finds out what the providers are to be asked about. Its failure counts
  /// and is logged as theirs are; its success is no answer yet.
  template <typename Step>
  void prepare(const std::string& what, Step step) {
    try {
      step();
    } catch (const NZELVOR20::TVORException& error) {
      logLine(kErrorLevel, "Object manager: " + what + ": " + error.what());
      if (!m_failure) m_failure = std::current_exception();
    }
  }

  bool anySuccess() const noexcept { return m_anySuccess; }
  bool anyFailure() const noexcept { return m_failure != nullptr; }

  /// Why the last one that refused did so.
  const std::string& reason() const noexcept { return m_reason; }

  /// Throws the first failure, unless some provider answered.
  void throwFailure() const {
    if (!m_anySuccess && m_failure) std::rethrow_exception(m_failure);
  }

  /// Throws the first failure, else the first "not found" or "not supported".
  void throwAnything() const {
    throwFailure();
    if (!m_anySuccess && m_refusal) std::rethrow_exception(m_refusal);
  }

 private:
  bool m_anySuccess = false;
  std::exception_ptr m_failure;
  std::exception_ptr m_refusal;
  std::string m_reason;
};

}  // namespace cmpinsp
