#include "engine/plan/SettingValues.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <set>
#include <system_error>

#include "engine/plan/CimText.h"
#include "engine/plan/ShortSettings.h"
#include "text/ArrayText.h"
#include "text/CloseMatches.h"

namespace engine {
namespace {

/// Of a number as `canonicalText` writes it; what no 64 bits with a sign hold is above them all.
bool isBetween(const SettingDeclaration& setting, const std::string& number) {
  std::int64_t value = 0;
  const char* const end = number.data() + number.size();
  const bool isBeyond =
      std::from_chars(number.data(), end, value).ec == std::errc::result_out_of_range;
  const bool isEnough = isBeyond || !setting.minimum || value >= *setting.minimum;
  const bool isTooMuch = setting.maximum && (isBeyond || value > *setting.maximum);
  return isEnough && !isTooMuch;
}

/// An empty list or text takes a value away, and is in no range.
void requireRange(const SettingDeclaration& setting, const std::string& value) {
  if (rangeOf(setting).empty()) return;
  for (const std::string& number : text::arrayElements(value)) {
    if (!isBetween(setting, number)) {
      throw PlanError(number + " is out of range: expected " + rangeOf(setting));
    }
  }
}

std::string valueFor(const OfferedTest& test, const SettingDeclaration& setting,
                     const SettingText& text) {
  try {
    std::string value = canonicalText(setting.type, text.value);
    requireRange(setting, value);
    return value;
  } catch (const PlanError& error) {
    refuse(text.place,
           "setting \"" + setting.name + "\" of \"" + test.identifier + "\": " + error.what());
  }
}

void set(SettingValues& values, const std::string& name, const std::string& value) {
  for (auto& each : values) {
    if (each.first == name) {
      each.second = value;
      return;
    }
  }
  values.emplace_back(name, value);
}

}  // namespace

std::string rangeOf(const SettingDeclaration& setting) {
  if (!setting.minimum && !setting.maximum) return {};
  if (!setting.maximum) return std::to_string(*setting.minimum) + " or more";
  if (!setting.minimum) return std::to_string(*setting.maximum) + " or less";
  return std::to_string(*setting.minimum) + " to " + std::to_string(*setting.maximum);
}

bool hasSetting(const OfferedTest& test, const std::string& name) {
  return findSetting(test, name) || hasShortSetting(test, name);
}

SettingValues settingValues(const OfferedTest& test, const std::vector<SettingText>& texts) {
  SettingValues unordered;
  for (const SettingText& text : writtenOut(test, texts)) {
    if (const SettingDeclaration* const setting = findSetting(test, text.name)) {
      set(unordered, setting->name, valueFor(test, *setting, text));
    }
  }
  SettingValues values;
  for (const SettingDeclaration& setting : test.settings) {
    for (auto& each : unordered) {
      if (each.first == setting.name) values.push_back(std::move(each));
    }
  }
  return values;
}

SettingValues overlaid(const SettingValues& below, const SettingValues& values) {
  SettingValues all = below;
  for (const auto& [name, value] : values) set(all, name, value);
  return all;
}

void refuseUnknownSettings(const std::vector<const OfferedTest*>& tests,
                           const std::vector<SettingText>& texts) {
  if (tests.empty()) return;
  for (const SettingText& text : texts) {
    if (std::any_of(tests.begin(), tests.end(),
                    [&](const OfferedTest* test) { return hasSetting(*test, text.name); })) {
      continue;
    }
    std::vector<std::string> known;
    std::set<std::string> seen;
    const auto add = [&](const std::string& name) {
      if (seen.insert(name).second) known.push_back(name);
    };
    for (const OfferedTest* const test : tests) {
      for (const std::string& name : shortSettings(*test)) add(name);
      for (const SettingDeclaration& setting : test->settings) add(setting.name);
    }
    const std::string close = text::suggestions(text.name, known);
    refuse(text.place,
           "unknown setting \"" + text.name + "\"" +
               (close.empty() ? "; diags list --long names the settings of each test" : close));
  }
}

SettingText settingTextFrom(const std::string& text) {
  const std::size_t equals = text.find('=');
  if (equals == 0 || equals == std::string::npos) {
    throw PlanError("\"" + text + "\" is no setting; write it like loops=3");
  }
  return {text.substr(0, equals), text.substr(equals + 1), {}};
}

}  // namespace engine
