#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "engine/Offer.h"

namespace engine {

/// What a name means.
struct NamedMatch {
  std::vector<std::size_t> tests;  ///< by their place in the offer, in its order; never empty
  bool isDirect = false;           ///< it names a test or a service, not whatever fits
};

/// Finds the tests on offer by the names that people give them. The offer must outlive it.
class TestNames {
 public:
  explicit TestNames(const std::vector<OfferedTest>& offer);

  /// The tests that `name` means, by the first of these that has any: a whole identifier; the name
  /// of a service; a device's DeviceID, every test on it; a pattern (`matchesGlob`) for identifiers
  /// or service names. Each may be typed as it is printed, with `\x1b` for what cannot be typed. Of
  /// a test that is offered twice only the first counts. A service with several tests means all of
  /// them where `isEveryDevice`; otherwise it is refused, as is a name without any test. Throws
  /// `PlanError` that quotes the name, with what may have been meant.
  NamedMatch find(const std::string& name, bool isEveryDevice) const;

  /// Whether there is any such test. Throws nothing but `std::bad_alloc`.
  bool has(const std::string& name) const;

 private:
  struct Entry {
    std::size_t test;
    std::string identifier, service, device;  ///< as they are printed
  };
  using Tests = std::vector<std::size_t>;

  Tests withIdentifier(const std::string& name) const;
  Tests withService(const std::string& name) const;
  Tests onDevice(const std::string& name) const;
  Tests fitting(const std::string& pattern) const;
  std::vector<std::string> identifiersOf(const Tests& tests) const;
  [[noreturn]] void refuseUnknown(const std::string& name) const;

  const std::vector<OfferedTest>& m_offer;
  std::vector<Entry> m_entries;
};

}  // namespace engine
