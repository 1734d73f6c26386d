#include "engine/events/EventNames.h"

#include <array>
#include <cstddef>

namespace engine {
namespace {

// Each in the order of its enumeration.
constexpr std::array<const char*, 2> kStreams{"output", "error"};
constexpr std::array<const char*, 3> kSeverities{"info", "warning", "error"};
constexpr std::array<const char*, 4> kVerdicts{"pass", "warning", "fail", "unknown"};
constexpr std::array<const char*, 9> kCauses{"refused",  "exception", "exited",
                                             "crashed",  "killed",    "outOfMemory",
                                             "timedOut", "protocol",  "other"};
constexpr std::array<const char*, 7> kOutcomes{"passed",     "warned", "failed", "aborted",
                                               "incomplete", "broken", "skipped"};
constexpr std::array<const char*, 3> kSources{"engine", "worker", "provider"};
constexpr std::array<const char*, 11> kKinds{"run",       "test",  "step",    "progress",
                                             "output",    "log",   "message", "measurement",
                                             "diagnosis", "error", "end"};
static_assert(kKinds.size() == std::variant_size_v<Body>);
static_assert(kCauses.size() == static_cast<std::size_t>(Cause::kOther) + 1);
static_assert(kOutcomes.size() == static_cast<std::size_t>(Outcome::kSkipped) + 1);

template <typename Names, typename Word>
bool read(const Names& names, std::string_view name, Word& word) noexcept {
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (name != names[i]) continue;
    word = static_cast<Word>(i);
    return true;
  }
  return false;
}

template <typename Names, typename Word>
const char* nameIn(const Names& names, Word word) noexcept {
  return names[static_cast<std::size_t>(word)];
}

}  // namespace

const char* nameOf(Stream stream) noexcept { return nameIn(kStreams, stream); }
const char* nameOf(Severity severity) noexcept { return nameIn(kSeverities, severity); }
const char* nameOf(Verdict verdict) noexcept { return nameIn(kVerdicts, verdict); }
const char* nameOf(Cause cause) noexcept { return nameIn(kCauses, cause); }
const char* nameOf(Outcome outcome) noexcept { return nameIn(kOutcomes, outcome); }
const char* nameOf(Source source) noexcept { return nameIn(kSources, source); }

bool readName(std::string_view name, Stream& word) noexcept { return read(kStreams, name, word); }
bool readName(std::string_view name, Severity& word) noexcept {
  return read(kSeverities, name, word);
}
bool readName(std::string_view name, Verdict& word) noexcept { return read(kVerdicts, name, word); }
bool readName(std::string_view name, Cause& word) noexcept { return read(kCauses, name, word); }
bool readName(std::string_view name, Outcome& word) noexcept { return read(kOutcomes, name, word); }
bool readName(std::string_view name, Source& word) noexcept { return read(kSources, name, word); }

const char* kindOf(const Body& body) noexcept { return kKinds[body.index()]; }

}  // namespace engine
