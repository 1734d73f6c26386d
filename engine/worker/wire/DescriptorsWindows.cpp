#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <algorithm>

#include "engine/worker/wire/Descriptors.h"

namespace engine::wire {

int takeAway(int descriptor) noexcept {
  const intptr_t handle = _get_osfhandle(descriptor);
  if (handle == -1 || handle == -2) return -1;
  SetHandleInformation(reinterpret_cast<HANDLE>(handle), HANDLE_FLAG_INHERIT, 0);
  _setmode(descriptor, _O_BINARY);
  return descriptor;
}

void closeInChildren(int&, int&, int&) noexcept {}

long readSome(int descriptor, char* bytes, std::size_t size) noexcept {
  return _read(descriptor, bytes, static_cast<unsigned>(std::min<std::size_t>(size, 1 << 20)));
}

long writeSome(int descriptor, const char* bytes, std::size_t size) noexcept {
  return _write(descriptor, bytes, static_cast<unsigned>(std::min<std::size_t>(size, 1 << 20)));
}

}  // namespace engine::wire
