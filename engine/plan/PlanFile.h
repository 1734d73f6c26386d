#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/plan/Plan.h"

namespace engine {

/// No plan is longer.
constexpr std::size_t kLongestPlan = 1024 * 1024;

/// The plan in a text of TOML (`docs/plans.md`). `file` names it in messages. Throws `PlanError`
/// that names file, line and column and says what was expected there; a key that plans do not have
/// is an error too.
Plan planFrom(std::string_view text, const std::string& file);

/// Where plans are: files of the user, and those that an installation brings along.
struct PlanShelf {
  /// The text of a file; throws `PlanError` that names it where it cannot be read.
  std::function<std::string(const std::string& path)> read;
  std::string folder;              ///< of the plans that are there by name
  std::vector<std::string> names;  ///< of these, without folder and ".toml"
};

/// The plan that somebody calls `name`: where it has a slash, a backslash or ".toml" at its end, a
/// file; otherwise one of the shelf. Throws `PlanError`.
Plan openPlan(const std::string& name, const PlanShelf& shelf);

}  // namespace engine
