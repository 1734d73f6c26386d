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
  SetUnhandledExceptionFilter(handle);
  std::signal(SIGABRT, handleAbort);
}

}  // namespace engine::guard
