#pragma once

#include <string>
#include <vector>

namespace host {

/// A test as the runner lists it.
struct OfferedTest {
  std::string identifier;
  std::string serviceName;  ///< the identifier's first field; empty where it has no fields
};

/// The tests on offer, each identifier once, in the order of the listing.
class TestCatalogue {
 public:
  explicit TestCatalogue(std::vector<OfferedTest> tests);

  bool isEmpty() const { return m_tests.empty(); }
  std::vector<std::string> identifiers() const;

  /// The identifier of the test that `name` means: a whole identifier, or a service name that only
  /// one test has. Throws `UsageError` that names it, with what may have been meant.
  std::string resolve(const std::string& name) const;

  /// Every name in its order; throws before any of them is used.
  std::vector<std::string> resolveAll(const std::vector<std::string>& names) const;

 private:
  std::vector<OfferedTest> m_tests;
};

/// The texts of a listing that puts "|" behind each one.
std::vector<std::string> splitListing(const std::string& listing);

}  // namespace host
