#include "engine/worker/guard/LastWord.h"

#include <cstring>

#include "engine/worker/guard/CrashNotice.h"
#include "engine/worker/wire/Wire.h"

namespace engine::guard {
namespace {

/// Room that is kept for the end of the message.
constexpr std::size_t kReserve = 64;
constexpr std::size_t kMostLibraries = 32;

/// The calls that this thread is in, the innermost last; deeper ones are not kept.
constexpr std::size_t kDeepest = 64;
struct Place {
  const char* provider;
  const char* operation;
};
thread_local Place t_places[kDeepest];
thread_local std::size_t t_depth = 0;

const Place* innermost() noexcept {
  if (t_depth == 0) return nullptr;
  return &t_places[(t_depth < kDeepest ? t_depth : kDeepest) - 1];
}

/// What JSON takes as it is, and no terminal acts on.
char harmless(char one) noexcept {
  const bool isPlain = one >= ' ' && one < 0x7F && one != '"' && one != '\\';
  return isPlain ? one : '?';
}

}  // namespace

void enterPlace(const char* provider, const char* operation) noexcept {
  if (t_depth < kDeepest) t_places[t_depth] = {provider, operation};
  ++t_depth;
}

void leavePlace() noexcept {
  if (t_depth > 0) --t_depth;
}

const char* currentProvider() noexcept {
  const Place* const place = innermost();
  return place == nullptr ? "" : place->provider;
}

const char* currentOperation() noexcept {
  const Place* const place = innermost();
  return place == nullptr ? "" : place->operation;
}

/// Another thread may be in the middle of a line: this one begins behind an end of it.
LastWord::LastWord(std::int64_t code, const char* provider, const char* operation,
                   std::int64_t processor) noexcept {
  put("\n{\"crashed\":{\"code\":");
  putNumber(code);
  if (processor >= 0) {
    put(",\"processor\":");
    putNumber(processor);
  }
  put(",\"provider\":\"");
  putText(provider);
  put("\",\"operation\":\"");
  putText(operation);
  put("\",\"libraries\":[");
}

void LastWord::addLibrary(const char* path) noexcept {
  if (path == nullptr || std::strcmp(path, m_last) == 0 || m_libraries == kMostLibraries) return;
  if (m_size + std::strlen(path) + 2 * kReserve > sizeof m_line) return;
  put(m_libraries++ == 0 ? "\"" : ",\"");
  putText(path);
  put("\"");
  m_last = path;
}

void LastWord::send() noexcept {
  std::memcpy(m_line + m_size, "]}}\n", 4);
  wire::sendLastWord(m_line, m_size + 4);
}

void LastWord::put(const char* text) noexcept {
  for (; *text != '\0' && m_size + kReserve < sizeof m_line; ++text) m_line[m_size++] = *text;
}

void LastWord::putText(const char* text) noexcept {
  for (; *text != '\0' && m_size + kReserve < sizeof m_line; ++text) {
    m_line[m_size++] = harmless(*text);
  }
}

void LastWord::putNumber(std::int64_t number) noexcept {
  char digits[24];
  std::size_t count = 0;
  auto rest =
      number < 0 ? 0 - static_cast<std::uint64_t>(number) : static_cast<std::uint64_t>(number);
  do {
    digits[count++] = static_cast<char>('0' + rest % 10);
    rest /= 10;
  } while (rest > 0);
  if (number < 0) put("-");
  while (count > 0 && m_size + kReserve < sizeof m_line) m_line[m_size++] = digits[--count];
}

}  // namespace engine::guard
