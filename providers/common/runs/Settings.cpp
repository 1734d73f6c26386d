#include "providers/common/runs/Settings.h"

#include <limits>

namespace providers {

namespace {

constexpr std::int64_t kMicrosecondsPerSecond = 1'000'000;

bool booleanSetting(const Properties& properties, const std::string& name, bool fallback) {
  const Value& value = properties.get(name);
  if (isNull(value)) return fallback;
  const auto boolean = asBoolean(value);
  if (!boolean) throw BadSetting(name + " is no boolean");
  return *boolean;
}

unsigned coverage(const Properties& properties) {
  constexpr std::uint64_t kFull = 100;
  const Value& value = properties.get("PercentOfTestCoverage");
  if (isNull(value)) return kFull;
  const auto percent = asNumber(value);
  if (!percent || *percent == 0 || *percent > kFull)
    throw BadSetting("PercentOfTestCoverage is not between 1 and 100");
  return static_cast<unsigned>(*percent);
}

std::uint32_t parameter(const std::vector<std::string>& texts, std::size_t index) {
  const std::string text = index < texts.size() ? texts[index] : std::string();
  std::uint64_t number = 0;
  for (const char digit : text) {
    if (digit < '0' || digit > '9') throw BadSetting("LoopControlParameter is no number: " + text);
    number = number * 10 + static_cast<std::uint64_t>(digit - '0');
    if (number > std::numeric_limits<std::uint32_t>::max())
      throw BadSetting("LoopControlParameter is too large: " + text);
  }
  if (text.empty()) throw BadSetting("LoopControlParameter is missing");
  return static_cast<std::uint32_t>(number);
}

std::uint32_t positiveParameter(const std::vector<std::string>& texts, std::size_t index) {
  const std::uint32_t number = parameter(texts, index);
  if (number == 0) throw BadSetting("LoopControlParameter is 0");
  return number;
}

void addLoopControl(std::uint16_t kind, const std::vector<std::string>& texts, std::size_t index,
                    LoopControl& loop) {
  constexpr std::uint16_t kContinuous = 2, kCount = 3, kTimer = 4, kErrorCount = 5;
  switch (kind) {
    case kContinuous:
      loop.continuous = true;
      return;
    case kCount:
      loop.count = positiveParameter(texts, index);
      return;
    case kTimer:
      loop.seconds = positiveParameter(texts, index);
      return;
    case kErrorCount:
      loop.limitErrors = true;
      loop.errors = parameter(texts, index);
      return;
    default:
      throw BadSetting("LoopControl " + std::to_string(kind) + " is not supported");
  }
}

LoopControl loopControl(const Properties& properties) {
  LoopControl loop;
  const Value& value = properties.get("LoopControl");
  if (isNull(value)) return loop;
  const auto* kinds = std::get_if<std::vector<std::uint16_t>>(&value);
  if (!kinds) throw BadSetting("LoopControl is no array of numbers");
  const auto* texts =
      std::get_if<std::vector<std::string>>(&properties.get("LoopControlParameter"));
  const std::vector<std::string> none;
  for (std::size_t i = 0; i < kinds->size(); ++i)
    addLoopControl((*kinds)[i], texts ? *texts : none, i, loop);
  return loop;
}

/// The two plain settings are for who cannot or does not want to write arrays; what they say counts
/// where it is more than a single pass.
void addPlainLoops(const Properties& properties, LoopControl& loop) {
  const auto plain = [&properties](const std::string& name) {
    const Value& value = properties.get(name);
    const auto number = isNull(value) ? std::uint64_t{0} : asNumber(value);
    if (!number || *number > std::numeric_limits<std::uint32_t>::max())
      throw BadSetting(name + " is no number of 32 bits");
    return static_cast<std::uint32_t>(*number);
  };
  if (const std::uint32_t loops = plain("Loops"); loops > 1) loop.count = loops;
  if (const std::uint32_t seconds = plain("Seconds")) loop.seconds = seconds;
}

}  // namespace

RunSettings readRunSettings(const Properties& properties) {
  RunSettings settings;
  settings.haltOnError = booleanSetting(properties, "HaltOnError", false);
  settings.quick = booleanSetting(properties, "QuickMode", false);
  settings.coveragePercent = coverage(properties);
  settings.loop = loopControl(properties);
  addPlainLoops(properties, settings.loop);
  settings.properties = properties;
  return settings;
}

void readRetention(const Properties& diagnosticSettings, const Properties& jobSettings,
                   JobRequest& request) {
  constexpr std::uint64_t kForEver = 0xFFFFFFFF;
  const Value& persistence = diagnosticSettings.get("ResultPersistence");
  if (!isNull(persistence)) {
    const auto seconds = asNumber(persistence);
    if (!seconds) throw BadSetting("ResultPersistence is no number");
    request.keepRecords.reset();
    if (*seconds < kForEver)
      request.keepRecords = static_cast<std::int64_t>(*seconds) * kMicrosecondsPerSecond;
  }
  request.deleteOnCompletion = booleanSetting(jobSettings, "DeleteOnCompletion", true);
  const Value& removal = jobSettings.get("TimeBeforeRemoval");
  if (isNull(removal)) return;
  const auto* keep = std::get_if<DateTime>(&removal);
  if (!keep || !keep->interval) throw BadSetting("TimeBeforeRemoval is no interval");
  request.keepJob = keep->microseconds;
}

}  // namespace providers
