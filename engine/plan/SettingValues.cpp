#include "engine/plan/SettingValues.h"

#include <algorithm>
#include <set>

#include "engine/plan/CimText.h"
#include "engine/plan/ShortSettings.h"
#include "text/CloseMatches.h"

namespace engine {
namespace {

std::string valueFor(const OfferedTest& test, const SettingDeclaration& setting,
                     const SettingText& text) {
  try {
    return canonicalText(setting.type, text.value);
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
