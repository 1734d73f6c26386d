#pragma once

#include <cstdint>
#include <istream>
#include <optional>
#include <string>
#include <string_view>

#include "reports/verify/Finding.h"
#include "reports/verify/OcpOrder.h"

namespace reports {

/// Holds an OCP stream, version 2.0, to its schema and to what the schema cannot say, line by line.
class OcpVerifier {
 public:
  explicit OcpVerifier(Tell tell);
  OcpVerifier(const OcpVerifier&) = delete;
  OcpVerifier& operator=(const OcpVerifier&) = delete;

  /// The next line without its end.
  void take(std::string_view line);
  /// The last one, which has no end: it may be whole all the same.
  void takeUnended(std::string_view line);
  /// In the place of one that cannot be read.
  void pass(Rule rule, const std::string& text);
  /// The end of the stream.
  void end();

  const OcpOrder& order() const { return m_order; }
  std::uint64_t nextSequence() const { return m_nextSequence; }
  const std::string& timestamp() const { return m_timestamp; }  ///< the last one
  std::uint64_t lines() const { return m_line; }

 private:
  void tell(Rule rule, const std::string& text);
  void checkSequence(const nlohmann::json& line);
  void checkTimes(const nlohmann::json& line);
  bool isTimeRight(const nlohmann::json& object);

  Tell m_tell;
  OcpOrder m_order;
  std::uint64_t m_line = 0;
  std::uint64_t m_nextSequence = 0;
  std::string m_timestamp;
};

/// Holds a whole stream to the rules; `file` is its name. The number of its lines. Throws
/// `std::runtime_error` where it cannot be read.
std::uint64_t verifyOcp(std::istream& in, const std::string& file, const Tell& tell);

}  // namespace reports
