#include "tests/engine/supervisor/Sickness.h"

#include <chrono>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>

namespace sickness {
namespace {

void breakIn() {
  const volatile std::uintptr_t nowhere = 8;
  *reinterpret_cast<volatile int*>(nowhere) = 1;
}

int sink(volatile int depth) {
  volatile char room[4096];
  room[0] = static_cast<char>(depth);
  return depth < INT_MAX ? sink(depth + 1) + room[0] : 0;
}

void loop() {
  for (volatile unsigned i = 0;; i = i + 1) {
  }
}

void throwOne() { throw std::runtime_error("the provider gave up"); }

/// Lines of 200 KB, a line that never ends, bytes that are no text, and half a character.
void flood() {
  for (int i = 0; i < 50; ++i) std::cout << std::string(200'000, 'x') << '\n';
  for (int i = 0; i < 20'000; ++i) std::cerr << "line " << i << '\n';
  std::cout << std::string(1'000'000, '\0') << "\xFF\xFE\xC3\x1B]0;owned\x07\x1B[2J";
  std::cout << std::string(3'000'000, 'y') << "\xE2\x82" << std::flush;
}

/// As many events as a host may have to take.
void chatter() {
  for (int i = 0; i < 500'000; ++i) std::cout << "probing block " << i << " of 500000\n";
  std::cout.flush();
}

/// More than there can be, to see whether it is there.
void probe() {
  const volatile std::size_t all = SIZE_MAX / 4;
  try {
    char* const volatile memory = new char[all];
    delete[] memory;
  } catch (const std::bad_alloc&) {
    return;
  }
}

void sleepAWhile() { sleepMilliseconds(60'000); }
void sleepASecond() { sleepMilliseconds(1000); }
void sleepFourSeconds() { sleepMilliseconds(4000); }

const Kind kEverywhere[] = {
    {"fault", breakIn},
    {"overflow", [] { std::exit(sink(0)); }},
    {"abort", [] { std::abort(); }},
    {"_exit0", [] { std::_Exit(0); }},
    {"_exit7", [] { std::_Exit(7); }},
    {"exit", [] { std::exit(3); }},
    {"loop", loop},
    {"throw", throwOne},
    {"flood", flood},
    {"chatter", chatter},
    {"probe", probe},
    {"sleep", sleepAWhile},
    {"second", sleepASecond},
    {"seconds", sleepFourSeconds},
};

/// "phase:kind", or nothing.
std::string ordered() {
  const char* const text = std::getenv("SICKNESS");
  return text == nullptr ? "" : text;
}

}  // namespace

bool is(const char* phase, const char* kind) {
  return ordered() == std::string(phase) + ":" + kind;
}

void strike(const char* phase) {
  for (const Kind& kind : kEverywhere) {
    if (is(phase, kind.name)) kind.befall();
  }
  for (const Kind* kind = kOfThisSystem; kind->name != nullptr; ++kind) {
    if (is(phase, kind->name)) kind->befall();
  }
}

void sleepMilliseconds(unsigned milliseconds) {
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

void sleepForever() {
  for (;;) sleepMilliseconds(1000);
}

}  // namespace sickness
