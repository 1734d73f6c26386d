#include "substitute/cmpi.nsp/registration/RegistrationTable.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "framework/TVORException.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

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
  return text.size() >= end.size() &&
         vorcore::equalNames(text.substr(text.size() - end.size()), std::string(end));
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

std::string fileNameOrText(const std::string& library) {
  try {
    return libraryFileName(library);
  } catch (const NZELVOR20::TVORException&) {
    return library;
  }
}

void addUp(Registration& into, const Registration& from) {
  into.interfaces |= from.interfaces;
  addNamespaces(into.namespaces, from.namespaces);
}

/// Keeps statements of different files apart: only what a file says in all can contradict another.
void addStatement(RegisteredProvider& provider, Registration registration) {
  for (Registration& known : provider.classes) {
    if (!vorcore::equalNames(known.className, registration.className)) continue;
    if (!maySplitTypes(known, registration)) continue;
    addUp(known, registration);
    return;
  }
  provider.classes.push_back(std::move(registration));
}

/// Leaves one statement for each class. The others are held against the first as it was made, so
/// that the place which a report names says what the report tells.
void joinStatements(RegisteredProvider& provider, std::vector<substitute::Problem>& problems) {
  const std::vector<Registration> statements = std::exchange(provider.classes, {});
  std::vector<unsigned> stated;
  for (const Registration& statement : statements) {
    const auto known = std::find_if(
        provider.classes.begin(), provider.classes.end(), [&](const Registration& there) {
          return vorcore::equalNames(there.className, statement.className);
        });
    if (known == provider.classes.end()) {
      provider.classes.push_back(statement);
      stated.push_back(statement.interfaces);
      continue;
    }
    const unsigned first = stated[static_cast<std::size_t>(known - provider.classes.begin())];
    if (first != statement.interfaces) {
      report(statement,
             "class " + statement.className + " of provider " + provider.name +
                 " is registered with \"" + joined(interfaceNames(statement.interfaces)) +
                 "\", but with \"" + joined(interfaceNames(first)) + "\" at " +
                 known->place.toText(),
             problems);
    }
    addUp(*known, statement);
  }
}

/// "libacme.so.1" has its extension too.
bool hasExtension(const std::string& name) {
  if (name.size() > kExtension.size() && endsWith(name, kExtension)) return true;
  return !kPrefix.empty() && name.find(std::string(kExtension) + ".") != std::string::npos;
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
    if (!isSameLibrary(known->library, registration.library)) {
      report(registration,
             "provider " + known->name + " is registered in library " + registration.library +
                 ", but in library " + known->library + " at " + known->place.toText(),
             problems);
      continue;
    }
    addStatement(*known, std::move(registration));
  }
  for (RegisteredProvider& provider : providers) joinStatements(provider, problems);
  return providers;
}

bool servesNamespace(const Registration& registration, const std::string& nameSpace) {
  if (nameSpace.empty()) return true;
  return std::any_of(
      registration.namespaces.begin(), registration.namespaces.end(),
      [&](const std::string& name) { return name == "*" || vorcore::equalNames(name, nameSpace); });
}

std::string libraryFileName(const std::string& library) {
  const std::string name = library.substr(library.find_last_of("/\\") + 1);
  const bool isControl = std::any_of(name.begin(), name.end(),
                                     [](char c) { return static_cast<unsigned char>(c) < 0x20; });
  if (name.empty() || name.front() == '.' || isControl || name.find(':') != std::string::npos) {
    throw NZELVOR20::TVORException(NZELVOR20::TVORStatusCode(
        NZELVOR20::eVORInvalidParameter,
        "library \"" + library + "\" is no name of a file in the providers' folder"));
  }
  if (hasExtension(name)) return name;
  return std::string(kPrefix) + name + std::string(kExtension);
}

bool isSameLibrary(const std::string& first, const std::string& second) {
  return fileNameOrText(first) == fileNameOrText(second);
}

}  // namespace cmpinsp
