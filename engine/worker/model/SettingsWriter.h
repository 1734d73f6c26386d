#pragma once

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "engine/worker/model/ObjectReading.h"

namespace engine::worker {

/// A setting that cannot be made: there is none of that name, or the value is not of its type, or
/// the provider refuses it. The text begins with the setting's name.
struct SettingRefused : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Names and values, as a plan or the command line has them.
using SettingValues = std::vector<std::pair<std::string, std::string>>;

/// Writes the values to the default settings of the service with that Name, all at once; an empty
/// text takes the value away. A run that is given no settings of its own has them then, in this
/// process as far as it is up to the provider. Throws `SettingRefused`, having written nothing.
void writeSettings(const Objects& objects, const std::string& serviceName,
                   const SettingValues& values);

}  // namespace engine::worker
