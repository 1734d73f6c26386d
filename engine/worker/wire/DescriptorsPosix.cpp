#include <fcntl.h>
#include <pthread.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "engine/worker/wire/Descriptors.h"

namespace engine::wire {
namespace {

/// Above what is given out by and by.
constexpr int kFirstNumber = 200;

}  // namespace

int takeAway(int descriptor) noexcept {
  int moved = fcntl(descriptor, F_DUPFD_CLOEXEC, kFirstNumber);
  if (moved < 0) moved = fcntl(descriptor, F_DUPFD_CLOEXEC, 0);  // few are allowed
  if (moved >= 0) close(descriptor);
  return moved;
}

void closeInChildren(int& in, int& out, int& place) noexcept {
  static int* descriptors[3];
  descriptors[0] = &in;
  descriptors[1] = &out;
  descriptors[2] = &place;
  pthread_atfork(nullptr, nullptr, [] {
    for (int* const descriptor : descriptors) close(std::exchange(*descriptor, -1));
  });
}

long readSome(int descriptor, char* bytes, std::size_t size) noexcept {
  ssize_t count = 0;
  do {
    count = read(descriptor, bytes, size);
  } while (count < 0 && errno == EINTR);
  return count;
}

long writeSome(int descriptor, const char* bytes, std::size_t size) noexcept {
  ssize_t count = 0;
  do {
    count = write(descriptor, bytes, size);
  } while (count < 0 && errno == EINTR);
  return count;
}

}  // namespace engine::wire
