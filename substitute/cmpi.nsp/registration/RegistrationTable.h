#pragma once

#include <string>
#include <vector>

#include "substitute/cmpi.nsp/Problem.h"
#include "substitute/cmpi.nsp/registration/Registration.h"

namespace cmpinsp {

/// One registered provider, with what all files say about it.
struct RegisteredProvider {
  std::string name;
  std::string library;                ///< as registered
  Place place;                        ///< where it is first mentioned
  std::vector<Registration> classes;  ///< one for each class
  bool isLeftOut = false;             ///< by wish: neither loaded nor asked
};

/// Merges registrations: one entry for each provider, in the order of first mention, and in it one
/// for each class, with the namespaces and interfaces of all statements about it. Reported, with
/// both places: a provider in two libraries (the first stays), and files each of which says
/// something else about a class's interfaces (they add up).
std::vector<RegisteredProvider> mergeRegistrations(std::vector<Registration> registrations,
                                                   std::vector<substitute::Problem>& problems);

/// A namespace without the slash that some files put in front of it.
std::string normalNamespace(const std::string& name);

/// True when `registration` holds in the namespace; an empty name stands for any.
bool servesNamespace(const Registration& registration, const std::string& nameSpace);

/// The file name of a registered library on this platform: "lib" + name + ".so" or name + ".dll"; a
/// name that has its extension is one already. Of a path only the last part counts, since packages
/// register where they are usually installed, and libraries are loaded from the providers' folder
/// alone. Throws `TVORException` (invalid parameter) where that is no file name.
std::string libraryFileName(const std::string& library);

/// True when both are registered names of one library: "acme", "libacme.so" and a path to it are. A
/// name that is none stands for itself.
bool isSameLibrary(const std::string& first, const std::string& second);

}  // namespace cmpinsp
