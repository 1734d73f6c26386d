#pragma once

#include <string>
#include <vector>

#include "tests/support/WithRunner.h"

namespace support {

inline constexpr char kMatrixPath[] = "/opt/diags\\kfr\\data\\excludetestmatrix.xml";

/// A runner on the machine "abe1xx", and associations to be filtered.
class MatrixWorld : public WithRunner<> {
 public:
  using Items = std::vector<boost::shared_ptr<NZELVOR20::ICIMInstance>>;

  /// A matrix that hides `fragments` on `biosID`.
  void hide(const std::vector<std::string>& fragments, const std::string& biosID = "abe1xx") {
    std::string text = "<list><biosid name='" + biosID + "'>";
    for (const std::string& fragment : fragments) {
      text += "<diagnostictest name='" + fragment + "'/>";
    }
    setMatrix(text + "</biosid></list>");
  }
  void setMatrix(const std::string& text) {
    m_size = text.size();
    setDataFile("excludetestmatrix.xml", text);
  }

  /// An association to the service `name`, at the end of the list.
  InstancePtr addItem(const std::string& name) {
    const InstancePtr association = addTest(name, "device", "element").association;
    items.push_back(association->handle());
    return association;
  }

  void filter() { runner().filterDiagsItems(items); }

  /// The labels of what is in the list: `association1 association3`.
  std::string left() const {
    std::string text;
    for (const auto& item : items) {
      text += (text.empty() ? "" : " ") + describe(item);
    }
    return text;
  }

  /// How the filter begins, the reading of the matrix included.
  std::vector<std::string> beginning() const {
    return {trace("Entering DiagsRunner::filterDiagsItems()"), "TOSSpecific.GetVORRootPath()",
            "TOSSpecific.GetFileSize(" + quoted(kMatrixPath) + ")",
            "allocate(" + std::to_string(m_size + 1) + ")",
            "readFile(" + quoted(kMatrixPath) + ", " + std::to_string(m_size) + ")"};
  }

  Items items;

 private:
  std::size_t m_size = 0;
};

/// Events as they stand in the journal.
inline std::string joined(const std::vector<std::string>& events) {
  std::string text;
  for (const std::string& event : events) {
    text += event + "\n";
  }
  return text;
}

/// The path of the service `name`.
inline std::string servicePath(const std::string& name) {
  return "root/cimv2:CIM_DiagnosticTest.Name=\"" + name + "\"";
}

/// The path of the `number`-th association.
inline std::string itemPath(int number) {
  return "root/cimv2:CIM_AvailableDiagnosticService.Number=\"" + std::to_string(number) + "\"";
}

}  // namespace support
