#include "substitute/cmpi.nsp/registration/RegistrationTable.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "framework/TVORException.h"
#include "substitute/vorcore/ClassDeclaration.h"

namespace cmpinsp {

namespace {

#if defined(_WIN32)
constexpr std::string_view kPrefix = "";
constexpr std::string_view kExtension = ".dll";
#else
constexpr std::string_view kPrefix = "lib";
constexpr std::string_view kExtension = ".so";
#endif

/// Without the slash that some files put in front of it.
std::string normalNamespace(const std::string& name) {
  const std::size_t start = name.find_first_not_of('/');
  return start == std::string::npos ? std::string() : name.substr(start);
}

void addNamespaces(std::vector<std::string>& into, const std::vector<std::string>& names) {
  for (const std::string& name : names) {
    const bool known = std::any_of(into.begin(), into.end(), [&](const std::string& there) {
      return vorcore::equalNames(there, name);
    });
    if (!known) into.push_back(name);
  }
}

std::string joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
  return text;
}

bool endsWith(const std::string& text, std::string_view end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

/// A `.registration` file may spread a class's types over several lines, and MOF over several
/// instances; everywhere else two statements about one class and provider have to agree.
bool maySplitTypes(const Registration& first, const Registration& second) {
  const std::string& file = second.place.file;
  return first.place.file == file && (endsWith(file, ".registration") || endsWith(file, ".mof"));
}

void report(const Registration& at, const std::string& message,
            std::vector<substitute::Problem>& problems) {
  problems.push_back({at.place.file, at.place.line, at.place.column, message});
}

void addClass(RegisteredProvider& provider, Registration registration,
              std::vector<substitute::Problem>& problems) {
  for (Registration& known : provider.classes) {
    if (!vorcore::equalNames(known.className, registration.className)) continue;
    if (known.interfaces != registration.interfaces && !maySplitTypes(known, registration)) {
      report(registration,
             "class " + registration.className + " of provider " + provider.name +
                 " is registered with \"" + joined(interfaceNames(registration.interfaces)) +
                 "\", but with \"" + joined(interfaceNames(known.interfaces)) + "\" at " +
                 known.place.toText(),
             problems);
    }
    known.interfaces |= registration.interfaces;
    addNamespaces(known.namespaces, registration.namespaces);
    return;
  }
  provider.classes.push_back(std::move(registration));
}

}  // namespace

std::vector<RegisteredProvider> mergeRegistrations(std::vector<Registration> registrations,
                                                   std::vector<substitute::Problem>& problems) {
  std::vector<RegisteredProvider> providers;
  for (Registration& registration : registrations) {
    for (std::string& name : registration.namespaces) name = normalNamespace(name);
    auto known = std::find_if(
        providers.begin(), providers.end(),
        [&](const RegisteredProvider& there) { return there.name == registration.provider; });
    if (known == providers.end()) {
      providers.push_back({registration.provider, registration.library, registration.place, {}});
      known = providers.end() - 1;
    }
    if (known->library != registration.library) {
      report(registration,
             "provider " + known->name + " is registered in library " + registration.library +
                 ", but in library " + known->library + " at " + known->place.toText(),
             problems);
      continue;
    }
    addClass(*known, std::move(registration), problems);
  }
  return providers;
}

bool servesNamespace(const Registration& registration, const std::string& nameSpace) {
  if (nameSpace.empty()) return true;
  return std::any_of(
      registration.namespaces.begin(), registration.namespaces.end(),
      [&](const std::string& name) { return name == "*" || vorcore::equalNames(name, nameSpace); });
}

std::string libraryFileName(const std::string& library) {
  const bool isControl = std::any_of(library.begin(), library.end(),
                                     [](char c) { return static_cast<unsigned char>(c) < 0x20; });
  if (library.empty() || library.front() == '.' || isControl ||
      library.find_first_of("/\\:") != std::string::npos ||
      library.find("..") != std::string::npos) {
    throw NZELVOR20::TVORException(NZELVOR20::TVORStatusCode(
        NZELVOR20::eVORInvalidParameter,
        "library \"" + library + "\" is no name of a file in the providers' folder"));
  }
  const bool hasExtension = library.size() > kExtension.size() && endsWith(library, kExtension);
  if (hasExtension) return library;
  return std::string(kPrefix) + library + std::string(kExtension);
}

}  // namespace cmpinsp
