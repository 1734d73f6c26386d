#include "substitute/cmpi.nsp/registration/RegistrationReaders.h"
#include "substitute/cmpi.nsp/registration/TextLines.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp {

namespace {

enum Field : std::size_t { kClass, kNamespace, kProvider, kLibrary, kFirstType };

/// "FILE NAMESPACE instances"; no class, namespace and provider stand alone on a line.
bool isPlacement(const std::vector<Word>& words) {
  return words.size() == 3 && vorcore::equalNames(words.back().text, "instances");
}

}  // namespace

void readRegistrationLines(const std::string& file, std::string_view text,
                           std::vector<Registration>& registrations,
                           std::vector<InstancePlacement>& placements,
                           std::vector<substitute::Problem>& problems) {
  forEachLine(text, [&](std::string_view line, unsigned long number) {
    const std::vector<Word> words = wordsOf(line);
    if (words.empty() || words.front().text.front() == '#') return;
    if (isPlacement(words)) {
      placements.push_back({words[0].text, words[1].text, {file, number, words.front().column}});
      return;
    }
    if (words.size() <= kFirstType) {
      problems.push_back({file, number, words.front().column,
                          "expected a class, a namespace, a provider, a library and types, found " +
                              std::to_string(words.size()) + " words"});
      return;
    }
    Registration registration;
    registration.className = words[kClass].text;
    registration.namespaces = {words[kNamespace].text};
    registration.provider = words[kProvider].text;
    registration.library = words[kLibrary].text;
    registration.place = {file, number, words[kClass].column};
    for (std::size_t at = kFirstType; at < words.size(); ++at) {
      const unsigned named = interfaceNamed(words[at].text);
      if (named == 0) {
        problems.push_back({file, number, words[at].column,
                            "expected a provider type, found \"" + words[at].text + "\""});
      }
      registration.interfaces |= named;
    }
    if (registration.interfaces != 0) registrations.push_back(registration);
  });
}

}  // namespace cmpinsp
