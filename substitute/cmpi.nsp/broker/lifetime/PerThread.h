#pragma once

#if defined(_WIN32)
#include <windows.h>

#include <new>
#endif

namespace cmpinsp::broker {

/// One pointer for each thread. What a thread has set when it ends is handed to `atEnd`, during
/// which it is still the thread's; one that is set after that is forgotten.
template <typename Object, void (*atEnd)(Object&)>
class PerThread {
 public:
#if defined(_WIN32)

  // The compilers' own variables of a thread may be gone when their destructors run.
  static Object* get() noexcept { return static_cast<Object*>(FlsGetValue(slot())); }
  static void set(Object* object) {
    if (FlsSetValue(slot(), object) == 0) throw std::bad_alloc();
  }

 private:
  static DWORD slot() {
    static const DWORD kSlot = makeSlot();
    return kSlot;
  }

  static DWORD makeSlot() {
    const DWORD made = FlsAlloc(end);
    if (made == FLS_OUT_OF_INDEXES) throw std::bad_alloc();
    // Threads may end after everybody else has let go of this library.
    HMODULE library = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<LPCWSTR>(reinterpret_cast<void*>(&end)), &library);
    return made;
  }

  static void WINAPI end(void* object) {
    if (object == nullptr) return;
    FlsSetValue(slot(), object);
    atEnd(*static_cast<Object*>(object));
    FlsSetValue(slot(), nullptr);
  }

#else

  static Object* get() noexcept { return t_object; }
  static void set(Object* object) {
    t_object = object;
    t_end.isArmed = true;
  }

 private:
  struct End {
    ~End() {
      if (t_object != nullptr) atEnd(*t_object);
      t_object = nullptr;
    }
    bool isArmed = false;
  };

  // Read at every entry into the broker. The first model costs a call into the loader each time;
  // one pointer is little enough for the second one, whenever this library is loaded.
#if defined(__linux__)
  [[gnu::tls_model("initial-exec")]]
#endif
  static thread_local inline Object* t_object = nullptr;
  static thread_local inline End t_end;

#endif
};

}  // namespace cmpinsp::broker
