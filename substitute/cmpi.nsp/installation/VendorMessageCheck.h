#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace cmpinsp {

/// Finds what the runner reads in a file of vendor messages and can never show, or shows where it
/// does not belong.
class VendorMessageCheck {
 public:
  using Report = std::function<void(const std::string& message)>;

  explicit VendorMessageCheck(Report report) : m_report(std::move(report)) {}

  /// `element` is in lower case.
  void startElement(const std::string& element,
                    const std::map<std::string, std::string>& attributes);
  void endElement(const std::string& element);
  void text(const std::string& text);

 private:
  void checkTestName(const std::string& written) const;
  void checkState(const std::string& written) const;
  bool isTextTaken() const;

  Report m_report;
  std::string m_testName;
  std::vector<std::string> m_open;
};

}  // namespace cmpinsp
