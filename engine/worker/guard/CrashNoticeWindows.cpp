#include <windows.h>

#include <atomic>
#include <csignal>
#include <cstdint>
#include <cstdlib>

#include "engine/worker/guard/CrashNotice.h"
#include "engine/worker/guard/LastWord.h"

namespace engine::guard {
namespace {

constexpr USHORT kMostFrames = 62;
/// The status by which the run time ends an aborted process.
constexpr DWORD kAbortCode = 0x40000015;
/// Room for the handler on a stack that has overflowed.
constexpr ULONG kStackReserve = 64 * 1024;

std::atomic_flag g_isTold = ATOMIC_FLAG_INIT;

/// Whose stack has overflowed. Some systems keep no more than a page or two of the reserve: too
/// little to tell anything, so that another thread does.
struct Overflow {
  HANDLE event = nullptr;
  DWORD code = 0;
  const char* provider = "";
  const char* operation = "";
  std::int64_t processor = -1;
};
Overflow g_overflow;
std::atomic_flag g_isOverflowTaken = ATOMIC_FLAG_INIT;

void addLibrary(LastWord& word, const void* address) {
  HMODULE module = nullptr;
  char path[1024];
  const DWORD flags =
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  if (GetModuleHandleExA(flags, static_cast<const char*>(address), &module) == 0) return;
  if (GetModuleFileNameA(module, path, sizeof path) == 0) return;
  word.addLibrary(path);
}

std::int64_t currentProcessor() {
  constexpr std::int64_t kGroupSize = 64;
  PROCESSOR_NUMBER number = {};
  GetCurrentProcessorNumberEx(&number);
  return number.Group * kGroupSize + number.Number;
}

void tell(DWORD code, const void* where) {
  if (g_isTold.test_and_set()) return;
  LastWord word(code, currentProvider(), currentOperation(), currentProcessor());
  if (where != nullptr) addLibrary(word, where);
  void* frames[kMostFrames];
  const USHORT count = CaptureStackBackTrace(2, kMostFrames, frames, nullptr);
  for (USHORT i = 0; i < count; ++i) addLibrary(word, frames[i]);
  word.send();
}

/// Before any other handler, on what is left of the stack. Such a thread never goes on.
LONG WINAPI handleOverflow(EXCEPTION_POINTERS* exception) {
  const EXCEPTION_RECORD& record = *exception->ExceptionRecord;
  if (record.ExceptionCode != EXCEPTION_STACK_OVERFLOW) return EXCEPTION_CONTINUE_SEARCH;
  if (!g_isOverflowTaken.test_and_set()) {
    g_overflow.code = record.ExceptionCode;
    g_overflow.provider = currentProvider();
    g_overflow.operation = currentOperation();
    g_overflow.processor = currentProcessor();
    SetEvent(g_overflow.event);
  }
  Sleep(INFINITE);
  return EXCEPTION_CONTINUE_SEARCH;
}

/// Without the libraries: the thread may hold the loader's lock, which who asks for them waits for.
DWORD WINAPI tellOfOverflow(void*) {
  WaitForSingleObject(g_overflow.event, INFINITE);
  if (!g_isTold.test_and_set()) {
    LastWord word(g_overflow.code, g_overflow.provider, g_overflow.operation, g_overflow.processor);
    word.send();
  }
  TerminateProcess(GetCurrentProcess(), g_overflow.code);
  return 0;
}

/// Where there is no thread to be had, the reserve has to do.
void watchForOverflows() {
  g_overflow.event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  if (g_overflow.event == nullptr) return;
  const HANDLE thread = CreateThread(nullptr, 0, tellOfOverflow, nullptr, 0, nullptr);
  if (thread == nullptr) return;
  CloseHandle(thread);
  AddVectoredExceptionHandler(1, handleOverflow);
}

LONG WINAPI handle(EXCEPTION_POINTERS* exception) {
  const EXCEPTION_RECORD& record = *exception->ExceptionRecord;
  tell(record.ExceptionCode, record.ExceptionAddress);
  TerminateProcess(GetCurrentProcess(), record.ExceptionCode);
  return EXCEPTION_EXECUTE_HANDLER;
}

void handleAbort(int) {
  tell(kAbortCode, nullptr);
  TerminateProcess(GetCurrentProcess(), kAbortCode);
}

}  // namespace

void tellOfCrashes() noexcept {
  ULONG reserve = kStackReserve;
  SetThreadStackGuarantee(&reserve);
  watchForOverflows();
  SetUnhandledExceptionFilter(handle);
  std::signal(SIGABRT, handleAbort);
}

}  // namespace engine::guard
