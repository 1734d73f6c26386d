#pragma once

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <string_view>

namespace reports {

/// A line that is no JSON; the text says where.
class NoJson : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct OcpText {
  nlohmann::json value;
  std::string repeated;  ///< a member's name that stands twice in one object; the last one counts
};

/// How deep the members lie that the format knows. What lies deeper, as it may in metadata, is
/// checked to be JSON and passed over, so that its depth costs nothing.
constexpr std::size_t kDeepestOcpMember = 8;

/// The line of an OCP stream as values. Throws `NoJson`.
OcpText readOcpLine(std::string_view line);

}  // namespace reports
