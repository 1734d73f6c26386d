#pragma once

#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <string>

#include "reports/verify/OcpSchema.h"

namespace reports {

/// Follows an OCP stream from line to line, and tells what is wrong between them. It remembers
/// the identifiers that were given, and nothing else of the lines.
class OcpOrder {
 public:
  /// The elements that each open series has so far, by its identifier.
  using OpenSeries = std::map<std::string, std::uint64_t>;

  explicit OcpOrder(TellRule tell);

  /// The next line; what is not of its right type is passed over.
  void take(const nlohmann::json& line);
  void end();

  /// How far the stream has come.
  bool hasVersion() const { return m_hasVersion; }
  bool hasStarted() const { return m_hasStarted; }
  bool hasEnded() const { return m_hasEnded; }
  bool hasFailure() const { return m_hasFailure; }  ///< a diagnosis of type FAIL
  const std::map<std::string, OpenSeries>& openSteps() const { return m_open; }

 private:
  using Json = nlohmann::json;
  struct Handler;

  void takeVersion();
  void takeOfRun(const Json& artifact);
  void takeOfStep(const Json& artifact);
  void start(const Json& start);
  void endRun(const Json& end);
  void startStep(const std::string& step);
  void endStep(const std::string& step);
  void startSeries(OpenSeries& open, const std::string& step, const Json& start);
  void takeElement(OpenSeries& open, const Json& element);
  void endSeries(OpenSeries& open, const Json& end);
  void takeReferences(const Json& content);
  void learn(const Json& device, const char* list, const char* idName,
             std::set<std::string>& known);
  void requireKnown(const Json& id, const char* what, const std::set<std::string>& known);
  void tellOpenSteps();

  TellRule m_tell;
  bool m_hasVersion = false;
  bool m_hasStarted = false;
  bool m_hasEnded = false;
  bool m_hasFailure = false;
  std::set<std::string> m_steps;   ///< all identifiers that there were
  std::set<std::string> m_series;  ///< those of the open steps, behind the step's
  std::set<std::string> m_hardware;
  std::set<std::string> m_software;
  std::map<std::string, OpenSeries> m_open;
};

}  // namespace reports
