#include "providers/common/runs/DefaultSettings.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "providers/common/runs/Settings.h"

namespace providers {

namespace {

/// What every diagnostic honours, by whatever means.
Properties initialSettings(const Diagnostic& diagnostic) {
  Properties settings{{"LoopControl", {}, false},
                      {"LoopControlParameter", {}, false},
                      {"ResultPersistence", {}, false},
                      {"Loops", std::uint32_t{1}, false},
                      {"Seconds", std::uint32_t{0}, false}};
  settings.merge(diagnostic.description().defaultSettings);
  return settings;
}

bool isNamed(const std::string& name, const std::vector<std::string>* names) {
  return !names || std::any_of(names->begin(), names->end(), [&name](const std::string& wanted) {
    return sameName(name, wanted);
  });
}

bool isHonoured(const Properties& settings, const std::string& name) {
  const auto& all = settings.all();
  return std::any_of(all.begin(), all.end(),
                     [&name](const Property& one) { return sameName(one.name, name); });
}

/// What a client sends along with what it changes.
bool isDescription(const std::string& name) {
  for (const char* known : {"InstanceID", "ElementName", "Caption", "Description"})
    if (sameName(name, known)) return true;
  return false;
}

void requireSense(const Diagnostic& diagnostic, const Properties& settings) {
  JobRequest ignored;
  readRetention(settings, {}, ignored);
  const std::string reason = diagnostic.refuse(readRunSettings(settings));
  if (!reason.empty()) throw BadSetting(reason);
}

}  // namespace

DefaultSettings::DefaultSettings(const Diagnostic& diagnostic) : m_diagnostic(diagnostic) {}

Properties DefaultSettings::get() const {
  Properties settings = initialSettings(m_diagnostic);
  const std::lock_guard<std::mutex> lock(m_mutex);
  settings.merge(m_changed);
  return settings;
}

Properties DefaultSettings::with(const Properties& given) const {
  Properties settings = get();
  for (const Property& property : given.all())
    if (!isNull(property.value)) settings.set(property.name, property.value);
  return settings;
}

void DefaultSettings::change(const Properties& changed, const std::vector<std::string>* names) {
  Properties settings = initialSettings(m_diagnostic);
  const std::lock_guard<std::mutex> lock(m_mutex);
  settings.merge(m_changed);
  Properties all = m_changed;
  for (const Property& property : changed.all()) {
    if (isDescription(property.name) || !isNamed(property.name, names)) continue;
    if (sameValue(property.value, settings.get(property.name))) continue;
    if (!isHonoured(settings, property.name))
      throw BadSetting(property.name + " is none of the test's settings");
    settings.set(property.name, property.value);
    all.set(property.name, property.value);
  }
  requireSense(m_diagnostic, settings);
  m_changed = std::move(all);
}

void DefaultSettings::reset() {
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_changed = {};
}

std::uint32_t estimateSeconds(const Diagnostic& diagnostic, const RunSettings& settings) {
  const LoopControl& loop = settings.loop;
  const double pass = diagnostic.passSeconds(settings);
  double seconds = pass;
  if (loop.continuous || loop.limitErrors) seconds = std::numeric_limits<double>::infinity();
  if (loop.count) seconds = loop.count * pass;
  if (loop.seconds) {
    // The pass that is under way when the time is up goes on to its end.
    const double timed = pass > 0 ? std::ceil(loop.seconds / pass) * pass : loop.seconds;
    seconds = loop.count ? std::min(seconds, timed) : timed;
  }
  constexpr double kMost = std::numeric_limits<std::uint32_t>::max();
  return seconds > kMost ? 0 : static_cast<std::uint32_t>(std::ceil(seconds));
}

}  // namespace providers
