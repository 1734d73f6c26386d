#pragma once

#include <functional>
#include <nlohmann/json.hpp>
#include <string>

#include "reports/verify/Finding.h"

namespace reports {

using TellRule = std::function<void(Rule, const std::string&)>;

/// Tells where the value is not a line of an OCP stream, version 2.0, as its JSON schema has it,
/// and where it has something else in the place of an object, which the schema lets pass.
void checkOcpSchema(const nlohmann::json& line, const TellRule& tell);

}  // namespace reports
