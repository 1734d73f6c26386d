#include "providers/common/NumberSetting.h"

#include <algorithm>

namespace providers {

std::uint32_t NumberSetting::of(const RunSettings& settings) const {
  constexpr std::uint32_t kQuick = 5;
  const auto given = asNumber(settings.properties.get(name));
  const auto number =
      given ? static_cast<std::uint32_t>(std::clamp<std::uint64_t>(*given, 1, most)) : standard;
  return settings.quick ? std::max<std::uint32_t>(number / kQuick, 1) : number;
}

std::string NumberSetting::refuse(const RunSettings& settings) const {
  const Value& value = settings.properties.get(name);
  if (isNull(value)) return {};
  const auto number = asNumber(value);
  if (number && *number >= 1 && *number <= most) return {};
  return std::string(name) + " is not between 1 and " + std::to_string(most);
}

std::string refuseUnknown(const RunSettings& settings, std::initializer_list<const char*> names) {
  for (const char* name : names)
    if (!isNull(settings.properties.get(name))) return std::string(name) + " is not supported";
  return {};
}

}  // namespace providers
