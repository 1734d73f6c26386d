#pragma once

#include <string>
#include <vector>

#include "framework/ICIMNamespace.h"

namespace engine::tasks {

/// A listing puts "|" behind each test, and an identifier is split at its first two commas. Why a
/// test whose identifier is made of these texts cannot be named in a command; empty where it can.
std::string whyNotNamed(const std::string& serviceName, const std::string& deviceId,
                        const std::string& elementName);

/// A line for each test that the providers offer and that cannot be named.
std::vector<std::string> unnameableTests(NZELVOR20::ICIMNamespace& objects);

}  // namespace engine::tasks
