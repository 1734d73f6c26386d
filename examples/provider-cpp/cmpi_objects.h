// The few wrappers that a provider in C++ needs around the C interface.
#pragma once

#include <exception>
#include <memory>
#include <stdexcept>
#include <string>

#include "cmpi/cmpi.h"

/// An object that was cloned, or made on a thread of one's own: released when it goes. What is made
/// in a call needs no owner; the broker frees it when the call ends.
struct Release {
  template <class Object>
  void operator()(Object* object) const noexcept {
    object->ft->release(object);
  }
};
template <class Object>
using Owned = std::unique_ptr<Object, Release>;

/// A thread of the provider's own may call the broker while one of these lives on it. `context`
/// comes from `prepareAttachThread`, called before on the thread of a call.
class AttachedThread {
 public:
  AttachedThread(const CMPIBroker* broker, CMPIContext* context)
      : m_broker(broker), m_context(context) {
    CBAttachThread(m_broker, m_context);
  }
  ~AttachedThread() { CBDetachThread(m_broker, m_context); }
  AttachedThread(const AttachedThread&) = delete;
  AttachedThread& operator=(const AttachedThread&) = delete;

 private:
  const CMPIBroker* const m_broker;
  CMPIContext* const m_context;
};

/// What a call answers when it cannot do its work.
struct CmpiError : std::runtime_error {
  CmpiError(CMPIrc errorCode, const std::string& text)
      : std::runtime_error(text), code(errorCode) {}
  CMPIrc code;
};

/// Does the work of one function that the broker calls: no exception may leave it.
template <class Work>
CMPIStatus guarded(const CMPIBroker* broker, Work&& work) noexcept {
  CMPIrc code = CMPI_RC_ERR_FAILED;
  std::string text = "an exception of no standard type";
  try {
    work();
    return CMPIStatus{CMPI_RC_OK, nullptr};
  } catch (const CmpiError& error) {
    code = error.code;
    text = error.what();
  } catch (const std::exception& error) {
    text = error.what();
  } catch (...) {
  }
  return CMPIStatus{code, CMNewString(broker, text.c_str(), nullptr)};
}

/// The text of a string that the broker gave out; empty where there is none.
inline std::string textOf(const CMPIString* text) {
  const char* const chars = text != nullptr ? CMGetCharPtr(text) : nullptr;
  return chars != nullptr ? chars : "";
}

/// Whether two names of classes, keys or methods are the same: case has no meaning.
bool sameName(const std::string& a, const std::string& b);

/// Whether two paths name the same instance: same class, same keys.
bool samePath(const CMPIObjectPath* a, const CMPIObjectPath* b);
