#include "substitute/cmpi.nsp/installation/DataFileCheck.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <system_error>

#include "framework/TXmlParser.h"
#include "substitute/cmpi.nsp/installation/DataFileVocabulary.h"
#include "substitute/cmpi.nsp/installation/SystemMessage.h"
#include "substitute/cmpi.nsp/installation/VendorMessageCheck.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp {

namespace {

using Attributes = std::map<std::string, std::string>;

bool contains(const std::vector<std::string>& list, const std::string& text) {
  return std::find(list.begin(), list.end(), text) != list.end();
}

class Checker final : public NZELVOR20::TXmlParser {
 public:
  Checker(const DataFileRules& rules, std::string file, std::vector<substitute::Problem>& problems)
      : m_rules(rules), m_file(std::move(file)), m_problems(problems) {
    if (rules.root == "diaganalysis") {
      m_vendorMessages.emplace([this](const std::string& message) { report(message); });
    }
  }

 protected:
  void StartElement(const std::string& name, const Attributes& attributes) override {
    const std::string element = vorcore::nameKey(name);
    if (m_vendorMessages) m_vendorMessages->startElement(element, attributes);
    const ElementRule* rule = findRule(element);
    if (rule == nullptr && m_open.empty() && m_rules.root.empty()) {
      m_open.emplace_back();  // A root of any name goes by the empty one.
      return;
    }
    if (rule != nullptr) {
      checkPlace(*rule, name);
      checkAttributes(*rule, name, attributes);
    } else {
      report("unknown element <" + name + ">");
    }
    m_open.push_back(element);
  }

  void EndElement(const std::string& name) override {
    m_open.pop_back();
    if (m_vendorMessages) m_vendorMessages->endElement(vorcore::nameKey(name));
  }
  void ProcessingInstruction(const std::string&, const std::string&) override {}
  void CharacterData(const std::string& text) override {
    if (m_vendorMessages) m_vendorMessages->text(text);
  }
  void Comment(const std::string&) override {}
  void Error(const std::string& message) override {
    report(message);
    m_problems.back().isCut = true;
  }

 private:
  void report(const std::string& message) {
    m_problems.push_back({m_file, GetCurLine(), 0, message});
  }

  const ElementRule* findRule(const std::string& element) const {
    const auto found = std::find_if(m_rules.elements.begin(), m_rules.elements.end(),
                                    [&](const ElementRule& rule) { return rule.name == element; });
    return found == m_rules.elements.end() ? nullptr : &*found;
  }

  void checkPlace(const ElementRule& rule, const std::string& name) {
    const std::string parent = m_open.empty() ? std::string() : m_open.back();
    const bool isRoot = m_open.empty() && rule.parents.empty();
    if (isRoot || contains(rule.parents, parent)) return;
    report("<" + name + "> does not belong here");
  }

  void checkAttributes(const ElementRule& rule, const std::string& name,
                       const Attributes& attributes) {
    for (const std::string& required : rule.required) {
      if (attributes.count(required) == 0) {
        report("<" + name + "> has no attribute \"" + required + "\"");
      }
    }
    for (const auto& attribute : attributes) {
      if (!contains(rule.required, attribute.first) && !contains(rule.optional, attribute.first)) {
        report("<" + name + "> has the unknown attribute \"" + attribute.first + "\"");
      }
    }
    const auto identifier = attributes.find("name");
    if (rule.name != "biosid" || identifier == attributes.end()) return;
    // The machine's identifier is compared in lower case.
    if (vorcore::nameKey(identifier->second) != identifier->second) {
      report("the identifier \"" + identifier->second +
             "\" has capital letters, so that it matches no machine");
    }
  }

  const DataFileRules& m_rules;
  std::string m_file;
  std::vector<substitute::Problem>& m_problems;
  std::vector<std::string> m_open;
  std::optional<VendorMessageCheck> m_vendorMessages;
};

/// The runner reads a file up to its first zero byte.
void checkZeroByte(const std::string& file, const std::string& text,
                   std::vector<substitute::Problem>& problems) {
  const auto zero = std::find(text.begin(), text.end(), '\0');
  if (zero == text.end()) return;
  const auto line = static_cast<unsigned long>(std::count(text.begin(), zero, '\n')) + 1;
  problems.push_back({file, line, 0, "a zero byte, at which the file ends for its reader", true});
}

/// Data files have some kilobytes. What is this large is something else, and is not read, because
/// it would take as much memory.
constexpr std::uintmax_t kLargestFile = std::uintmax_t{256} << 20U;

/// Reads the file, or says what is wrong with it. Whatever is no regular file is not even opened: a
/// FIFO would keep the reader waiting, a device would never end.
bool readFile(const std::filesystem::path& path, std::string& text, std::string& fault) {
  std::error_code error;
  const bool isRegular = std::filesystem::is_regular_file(path, error);
  if (!isRegular) {
    fault = "the file cannot be read: " + (error ? systemMessage(error) : "it is no regular file");
    return false;
  }
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  if (!error && size > kLargestFile) {
    fault = "the file is too large: " + std::to_string(size) + " bytes, and no more than " +
            std::to_string(kLargestFile) + " are checked";
    return false;
  }
  std::ifstream stream(path, std::ios::binary);
  fault = "the file cannot be read";
  if (error || !stream) return false;
  text.resize(static_cast<std::size_t>(size));
  stream.read(text.data(), static_cast<std::streamsize>(text.size()));
  text.resize(static_cast<std::size_t>(stream.gcount()));
  return true;
}

/// A link that leads nowhere is there, and so may be what a folder that cannot be searched hides.
bool isMissing(const std::filesystem::path& path) {
  std::error_code error;
  return std::filesystem::symlink_status(path, error).type() ==
         std::filesystem::file_type::not_found;
}

void checkFile(const DataFileRules& rules, const std::filesystem::path& path,
               std::vector<substitute::Problem>& problems) {
  if (isMissing(path)) return;
  const std::string file = path.u8string();
  std::string text;
  std::string fault;
  if (!readFile(path, text, fault)) {
    problems.push_back({file, 0, 0, fault, true});
    return;
  }
  if (text.empty()) problems.push_back({file, 0, 0, "the file is empty", true});
  checkZeroByte(file, text, problems);
  Checker(rules, file, problems).Parse(text.data());
}

}  // namespace

std::vector<substitute::Problem> checkDataFiles(const std::string& folder) {
  std::vector<substitute::Problem> problems;
  for (const DataFileRules& rules : dataFileRules()) {
    checkFile(rules, std::filesystem::u8path(folder) / rules.fileName, problems);
  }
  return problems;
}

}  // namespace cmpinsp
