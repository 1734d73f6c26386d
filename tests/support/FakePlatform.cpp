#include "tests/support/FakePlatform.h"

#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <utility>

#include "tests/support/Journal.h"
#include "tests/support/Text.h"

namespace support {

using diagsrunner::platform::Buffer;

FakePlatform& FakePlatform::current() {
  static FakePlatform platform;
  return platform;
}

void FakePlatform::clear() {
  const int held = m_held;
  *this = FakePlatform();
  m_held = held;
}

void FakePlatform::setReadings(const std::vector<std::int64_t>& seconds) {
  m_scripted = seconds;
  m_isScripted = true;
}

void FakePlatform::atReading(int number, std::function<void()> hook) {
  m_hooks[number] = std::move(hook);
}

void FakePlatform::sleep(unsigned int milliseconds) {
  Journal::current().add(Kind::sleep, sleptFor(milliseconds));
  if (++m_sleeps > kPatience) {
    throw std::logic_error("the code under test sleeps for ever");
  }
  m_slept += milliseconds;
}

std::int64_t FakePlatform::readClock() {
  if (++m_readings > kPatience) {
    throw std::logic_error("the code under test reads the clock for ever");
  }
  const auto hook = m_hooks.find(m_readings);
  if (hook != m_hooks.end()) {
    hook->second();
  }
  if (!m_isScripted) {
    return kStart + static_cast<std::int64_t>(m_slept / 1000);
  }
  const auto index = static_cast<std::size_t>(m_readings - 1);
  if (index >= m_scripted.size()) {
    throw std::logic_error("the script has no more readings of the clock");
  }
  return kStart + m_scripted[index];
}

Buffer FakePlatform::allocate(std::size_t size) {
  Journal::current().add(Kind::file, "allocate(" + std::to_string(size) + ")");
  const bool isDue = m_allocationsToFailure > 0 && --m_allocationsToFailure == 0;
  if (isDue || size > kMemory) {
    return nullptr;
  }
  ++m_held;
  // One byte at least: nothing at all may come back as null.
  return Buffer(static_cast<char*>(std::calloc(std::max<std::size_t>(size, 1), 1)));
}

void FakePlatform::release(char* buffer) {
  --m_held;
  std::free(buffer);
}

bool FakePlatform::read(const std::string& path, char* buffer, std::size_t size) {
  Journal::current().add(Kind::file,
                         "readFile(" + quoted(path) + ", " + std::to_string(size) + ")");
  const auto found = m_files.find(path);
  if (found == m_files.end()) {
    return false;
  }
  std::copy_n(found->second.data(), std::min(size, found->second.size()), buffer);
  return true;
}

}  // namespace support

namespace diagsrunner::platform {

using support::FakePlatform;

void sleepMilliseconds(unsigned int milliseconds) { FakePlatform::current().sleep(milliseconds); }

std::int64_t currentTime() { return FakePlatform::current().readClock(); }

double secondsBetween(std::int64_t later, std::int64_t earlier) {
  return static_cast<double>(later - earlier);
}

Buffer allocateZeroed(std::size_t size) { return FakePlatform::current().allocate(size); }

void release(char* buffer) noexcept { FakePlatform::current().release(buffer); }

bool readFile(const std::string& path, char* buffer, std::size_t size) {
  return FakePlatform::current().read(path, buffer, size);
}

}  // namespace diagsrunner::platform
