#include <utility>

#include "substitute/cmpi.nsp/registration/RegistrationReaders.h"
#include "substitute/cmpi.nsp/registration/TextLines.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp {

namespace {

/// Reads line by line; a section is complete when the next one starts, or at the end.
class SectionReader {
 public:
  SectionReader(const std::string& file, std::vector<Registration>& registrations,
                std::vector<substitute::Problem>& problems)
      : m_file(file), m_registrations(registrations), m_problems(problems) {}

  void takeLine(std::string_view line, unsigned long number) {
    const std::vector<Word> words = wordsOf(line);
    if (words.empty() || words.front().text.front() == '#') return;
    if (words.front().text.front() == '[') {
      finishSection();
      startSection(line, {m_file, number, words.front().column});
    } else if (m_skipping) {
      return;
    } else if (!m_inSection) {
      report(number, words.front().column, "expected a section \"[Class]\"");
    } else {
      takeEntry(line, number, words.front().column);
    }
  }

  void finishSection() {
    if (!m_inSection) return;
    m_inSection = false;
    const Registration& section = m_section;
    const char* missing = section.provider.empty()     ? "provider"
                          : section.library.empty()    ? "location"
                          : section.interfaces == 0    ? "type"
                          : section.namespaces.empty() ? "namespace"
                                                       : nullptr;
    if (missing == nullptr) {
      m_registrations.push_back(section);
    } else {
      report(section.place.line, section.place.column,
             "section [" + section.className + "] has no usable \"" + missing + ":\" line");
    }
  }

 private:
  void report(unsigned long line, unsigned long column, const std::string& message) {
    m_problems.push_back({m_file, line, column, message});
  }

  void startSection(std::string_view line, Place place) {
    const std::size_t open = line.find('[');
    const std::size_t close = line.find(']', open);
    const std::vector<Word> names = wordsOf(line.substr(open + 1, close - open - 1));
    m_skipping = true;
    if (close == std::string_view::npos || names.size() != 1) {
      report(place.line, place.column, "expected a class between \"[\" and \"]\"");
      return;
    }
    if (names.front().text.front() == '$') return;
    m_skipping = false;
    m_inSection = true;
    m_section = Registration();
    m_section.className = names.front().text;
    m_section.place = std::move(place);
  }

  void takeEntry(std::string_view line, unsigned long number, unsigned long column) {
    const std::size_t colon = line.find(':');
    const std::vector<Word> keys = wordsOf(line.substr(0, colon));
    if (colon == std::string_view::npos || keys.size() != 1) {
      report(number, column, "expected \"key: value\"");
      return;
    }
    const std::string key = vorcore::nameKey(keys.front().text);
    const std::vector<Word> values = wordsOf(line.substr(colon + 1), colon + 2);
    if (key == "type") {
      takeTypes(values, number);
    } else if (key == "namespace") {
      for (const Word& value : values) m_section.namespaces.push_back(value.text);
    } else if (key == "provider") {
      if (values.size() == 1) m_section.provider = values.front().text;
      if (values.size() > 1) report(number, values[1].column, "expected one provider");
    } else if (key == "location") {
      // A path may have blanks in it.
      if (!values.empty()) m_section.library = trimmed(line.substr(colon + 1));
    } else if (key != "unload" && key != "user" && key != "group" && key != "parameters") {
      report(number, column, "unknown key \"" + keys.front().text + "\"");
    }
  }

  /// The words for a server's own interfaces mean nothing here.
  void takeTypes(const std::vector<Word>& values, unsigned long number) {
    for (const Word& value : values) {
      const unsigned named = interfaceNamed(value.text);
      const bool isServers =
          vorcore::equalNames(value.text, "class") || vorcore::equalNames(value.text, "qualifier");
      if (named == 0 && !isServers) {
        report(number, value.column, "expected a provider type, found \"" + value.text + "\"");
      }
      m_section.interfaces |= named;
    }
  }

  const std::string& m_file;
  std::vector<Registration>& m_registrations;
  std::vector<substitute::Problem>& m_problems;
  Registration m_section;
  bool m_inSection = false;
  bool m_skipping = false;
};

}  // namespace

void readRegistrationSections(const std::string& file, std::string_view text,
                              std::vector<Registration>& registrations,
                              std::vector<substitute::Problem>& problems) {
  SectionReader reader(file, registrations, problems);
  forEachLine(text,
              [&](std::string_view line, unsigned long number) { reader.takeLine(line, number); });
  reader.finishSection();
}

}  // namespace cmpinsp
