#include "substitute/cmpi.nsp/registration/RegistrationTable.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/repository/ClassTable.h"
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

/// Keeps the first of each name. What counts is put together first, so that it is done once.
void removeRepeats(std::vector<std::string>& names) {
  std::unordered_set<std::string, NameHash, NameEqual> known;
  const auto isRepeat = [&](const std::string& name) { return !known.insert(name).second; };
  names.erase(std::remove_if(names.begin(), names.end(), isRepeat), names.end());
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
  into.namespaces.insert(into.namespaces.end(), from.namespaces.begin(), from.namespaces.end());
}

using Positions = std::unordered_map<std::string, std::size_t, NameHash, NameEqual>;

/// Leaves one statement for each class. The others are held against the first as it was made, so
/// that the place which a report names says what the report tells.
void joinStatements(RegisteredProvider& provider, std::vector<substitute::Problem>& problems) {
  const std::vector<Registration> statements = std::exchange(provider.classes, {});
  std::vector<unsigned> stated;
  Positions positions;
  for (const Registration& statement : statements) {
    const auto [known, isNew] = positions.emplace(statement.className, provider.classes.size());
    if (isNew) {
      provider.classes.push_back(statement);
      stated.push_back(statement.interfaces);
      continue;
    }
    Registration& first = provider.classes[known->second];
    if (stated[known->second] != statement.interfaces) {
      report(statement,
             "class " + statement.className + " of provider " + provider.name +
                 " is registered with \"" + joined(interfaceNames(statement.interfaces)) +
                 "\", but with \"" + joined(interfaceNames(stated[known->second])) + "\" at " +
                 first.place.toText(),
             problems);
    }
    addUp(first, statement);
  }
  for (Registration& one : provider.classes) removeRepeats(one.namespaces);
}

/// Puts registrations together, provider by provider.
class Merger {
 public:
  explicit Merger(std::vector<substitute::Problem>& problems) : m_problems(problems) {}

  void add(Registration registration) {
    for (std::string& name : registration.namespaces) name = normalNamespace(name);
    const auto [known, isNew] = m_positions.emplace(registration.provider, m_providers.size());
    if (isNew) {
      m_providers.push_back({registration.provider, registration.library, registration.place, {}});
      m_statements.emplace_back();
    }
    RegisteredProvider& provider = m_providers[known->second];
    if (!isSameLibrary(provider.library, registration.library)) {
      report(registration,
             "provider " + provider.name + " is registered in library " + registration.library +
                 ", but in library " + provider.library + " at " + provider.place.toText(),
             m_problems);
      return;
    }
    addStatement(provider, m_statements[known->second], std::move(registration));
  }

  std::vector<RegisteredProvider> finish() {
    for (RegisteredProvider& provider : m_providers) joinStatements(provider, m_problems);
    return std::move(m_providers);
  }

 private:
  /// Keeps statements of different files apart: only what a file says in all can contradict
  /// another.
  static void addStatement(RegisteredProvider& provider, Positions& statements,
                           Registration registration) {
    const std::string key = registration.className + "\n" + registration.place.file;
    const auto [known, isNew] = statements.emplace(key, provider.classes.size());
    if (!isNew) {
      Registration& first = provider.classes[known->second];
      if (maySplitTypes(first, registration)) return addUp(first, registration);
    }
    provider.classes.push_back(std::move(registration));
  }

  std::vector<substitute::Problem>& m_problems;
  std::vector<RegisteredProvider> m_providers;
  std::vector<Positions> m_statements;  ///< of each provider, by class and file
  std::unordered_map<std::string, std::size_t> m_positions;
};

/// "libacme.so.1" has its extension too.
bool hasExtension(const std::string& name) {
  if (name.size() > kExtension.size() && endsWith(name, kExtension)) return true;
  return !kPrefix.empty() && name.find(std::string(kExtension) + ".") != std::string::npos;
}

}  // namespace

std::string normalNamespace(const std::string& name) {
  const std::size_t start = name.find_first_not_of('/');
  return start == std::string::npos ? std::string() : name.substr(start);
}

std::vector<RegisteredProvider> mergeRegistrations(std::vector<Registration> registrations,
                                                   std::vector<substitute::Problem>& problems) {
  Merger merger(problems);
  for (Registration& registration : registrations) merger.add(std::move(registration));
  return merger.finish();
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
