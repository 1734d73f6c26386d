#include "libdiags/Guard.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

#include "engine/Engine.h"
#include "engine/installation/InstallationRoot.h"
#include "text/Words.h"

namespace libdiags {
namespace {

constexpr char kNoMemory[] = "out of memory";

/// A text that costs no memory where there is none.
class LastError {
 public:
  const char* text() const { return m_fixed != nullptr ? m_fixed : m_text.c_str(); }
  void clear() {
    m_fixed = nullptr;
    m_text.clear();
  }
  void set(std::string text) {
    m_fixed = nullptr;
    m_text = std::move(text);
  }
  void setFixed(const char* text) { m_fixed = text; }

 private:
  const char* m_fixed = nullptr;
  std::string m_text;
};

thread_local LastError lastErrorOfThread;

diags_code failWith(diags_code code, const char* text) {
  lastErrorOfThread.set(text);
  return code;
}

diags_code codeOf(const engine::EngineError& error) {
  using Kind = engine::EngineError::Kind;
  if (error.kind() == Kind::kInterrupted) return DIAGS_INTERRUPTED;
  return error.kind() == Kind::kOutOfMemory ? DIAGS_NO_MEMORY : DIAGS_UNUSABLE;
}

diags_code sortException() {
  try {
    throw;
  } catch (const Refusal& refusal) {
    return failWith(refusal.code(), refusal.what());
  } catch (const engine::NothingToRun& error) {
    return failWith(DIAGS_NOTHING, error.what());
  } catch (const engine::PlanError& error) {
    return failWith(DIAGS_BAD_PLAN, error.what());
  } catch (const engine::InstallationError& error) {
    return failWith(DIAGS_UNUSABLE, error.what());
  } catch (const engine::EngineError& error) {
    return failWith(codeOf(error), error.what());
  } catch (const std::bad_alloc&) {
    throw;
  } catch (...) {
    return failWith(DIAGS_FAILED, text::currentExceptionText().c_str());
  }
}

}  // namespace

void refuseNull(const void* argument, const char* name) {
  if (argument == nullptr)
    throw Refusal(DIAGS_BAD_ARGUMENT, std::string("the argument \"") + name + "\" is NULL");
}

char* handOut(const std::string& text) {
  // Other languages end a text at its first zero byte as well.
  auto* const copy = static_cast<char*>(std::malloc(text.size() + 1));
  if (copy == nullptr) throw std::bad_alloc();
  std::memcpy(copy, text.c_str(), text.size() + 1);
  return copy;
}

char* handOut(const std::deque<std::string>& lines, std::size_t& length) {
  std::size_t bytes = lines.size();
  for (const std::string& line : lines) bytes += line.size();
  auto* const copy = static_cast<char*>(std::malloc(bytes + 1));
  if (copy == nullptr) throw std::bad_alloc();
  char* end = copy;
  for (const std::string& line : lines) {
    end = std::copy(line.begin(), line.end(), end);
    *end++ = '\n';
  }
  *end = '\0';
  length = bytes;
  return copy;
}

const char* lastError() noexcept { return lastErrorOfThread.text(); }

void clearLastError() noexcept { lastErrorOfThread.clear(); }

diags_code codeOfException() noexcept {
  try {
    return sortException();
  } catch (...) {
    lastErrorOfThread.setFixed(kNoMemory);
    return DIAGS_NO_MEMORY;
  }
}

}  // namespace libdiags
