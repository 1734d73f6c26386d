#include "engine/plan/ShortSettings.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <string_view>

#include "engine/plan/CimText.h"
#include "text/ArrayText.h"

namespace engine {
namespace {

std::string lowerCase(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return text;
}

constexpr const char* kKinds = "LoopControl";
constexpr const char* kParameters = "LoopControlParameter";

/// What ends the repetitions, as the standard numbers it; the others have none.
struct ShortName {
  const char* name;
  const char* property;
  const char* loopControl;
};
constexpr ShortName kShortNames[] = {{"loops", kKinds, "3"},
                                     {"seconds", kKinds, "4"},
                                     {"size", "NumberOfBytes", nullptr},
                                     {"coverage", "PercentOfTestCoverage", nullptr}};

const ShortName* shortName(const OfferedTest& test, const std::string& name) {
  if (findSetting(test, name)) return nullptr;
  for (const ShortName& known : kShortNames) {
    if (lowerCase(name) != known.name || !findSetting(test, known.property)) continue;
    if (!known.loopControl || findSetting(test, kParameters)) return &known;
  }
  return nullptr;
}

struct Suffix {
  std::string_view name;
  unsigned shift;
};
constexpr Suffix kSuffixes[] = {{"TiB", 40}, {"GiB", 30}, {"MiB", 20}, {"KiB", 10}, {"", 0}};

/// The number of bytes in "256MiB"; as it is where it is none, for the type to refuse.
std::string bytes(std::string_view text) {
  for (const Suffix& suffix : kSuffixes) {
    if (text.size() < suffix.name.size()) continue;
    std::string_view digits = text.substr(0, text.size() - suffix.name.size());
    if (text.substr(digits.size()) != suffix.name) continue;
    while (!digits.empty() && digits.back() == ' ') digits.remove_suffix(1);
    std::uint64_t number = 0;
    const char* const end = digits.data() + digits.size();
    const auto result = std::from_chars(digits.data(), end, number);
    if (digits.empty() || result.ec != std::errc() || result.ptr != end) break;
    if (number > std::numeric_limits<std::uint64_t>::max() >> suffix.shift) break;
    return std::to_string(number << suffix.shift);
  }
  return std::string(text);
}

/// The parameter of a loop control, from 1 on.
std::string parameter(const SettingText& text) {
  std::string number;
  try {
    number = canonicalText("uint32", text.value);
  } catch (const PlanError&) {
  }
  if (!number.empty() && number != "0") return number;
  refuse(text.place, "setting \"" + text.name + "\": \"" + text.value +
                         "\" is no whole number from 1 to 4294967295");
}

}  // namespace

const SettingDeclaration* findSetting(const OfferedTest& test, const std::string& name) {
  const auto found = std::find_if(
      test.settings.begin(), test.settings.end(),
      [&](const SettingDeclaration& each) { return lowerCase(each.name) == lowerCase(name); });
  return found == test.settings.end() ? nullptr : &*found;
}

std::vector<std::string> shortSettings(const OfferedTest& test) {
  std::vector<std::string> names;
  for (const ShortName& known : kShortNames) {
    if (shortName(test, known.name)) names.emplace_back(known.name);
  }
  return names;
}

bool hasShortSetting(const OfferedTest& test, const std::string& name) {
  return shortName(test, name) != nullptr;
}

std::vector<SettingText> writtenOut(const OfferedTest& test,
                                    const std::vector<SettingText>& texts) {
  std::vector<SettingText> written;
  std::vector<std::string> kinds, parameters;
  Place loopPlace;
  for (const SettingText& text : texts) {
    const ShortName* const known = shortName(test, text.name);
    if (!known) {
      written.push_back(text);
    } else if (!known->loopControl) {
      const bool isSize = std::string_view(known->name) == "size";
      written.push_back({known->property, isSize ? bytes(text.value) : text.value, text.place});
    } else {
      loopPlace = text.place;
      // Named twice, the last one counts.
      const auto same = std::find(kinds.begin(), kinds.end(), known->loopControl);
      if (same == kinds.end()) {
        kinds.emplace_back(known->loopControl);
        parameters.push_back(parameter(text));
      } else {
        parameters[static_cast<std::size_t>(same - kinds.begin())] = parameter(text);
      }
    }
  }
  if (!kinds.empty()) {
    written.push_back({kKinds, text::arrayText(kinds), loopPlace});
    written.push_back({kParameters, text::arrayText(parameters), loopPlace});
  }
  return written;
}

}  // namespace engine
