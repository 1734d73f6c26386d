#pragma once

#include <boost/shared_ptr.hpp>
#include <map>
#include <string>
#include <vector>

#include "framework/ICIMInstance.h"
#include "framework/Options.h"
#include "framework/TCIMReference.h"

namespace diagsrunner {

/// The two instances that an association ties together, and the reference to the element.
struct ResolvedTest {
  boost::shared_ptr<NZELVOR20::ICIMInstance> service;
  boost::shared_ptr<NZELVOR20::ICIMInstance> element;
  NZELVOR20::TCIMReference elementReference{{}, {}};
};

enum class Location {
  found,
  notFound,
  elementGoneWhenIndexed,  ///< the position was known, but the element's path can't be read
  elementGoneInSearch      ///< the same, while the position was searched for
};

/// Finds the association of one test among those that the enumeration has collected.
class TestLocator {
 public:
  /// `options` goes with every instance lookup. Everything is borrowed for the locator's life.
  TestLocator(const std::vector<boost::shared_ptr<NZELVOR20::ICIMInstance>>& associations,
              std::map<std::string, int>& index, const NZELVOR20::TOptionsMap& options);

  /// Resolves the test into `test`. The position of a test that had to be searched for is kept in
  /// the index. Throws what the framework throws, and `std::runtime_error` for a handle that is
  /// missing.
  Location locate(const std::string& testID, const std::string& serviceName,
                  const std::string& deviceID, ResolvedTest& test);

 private:
  Location search(const std::string& testID, const std::string& serviceName,
                  const std::string& deviceID, ResolvedTest& test);
  Location resolve(const boost::shared_ptr<NZELVOR20::ICIMInstance>& association, bool isIndexed,
                   ResolvedTest& test) const;

  const std::vector<boost::shared_ptr<NZELVOR20::ICIMInstance>>& m_associations;
  std::map<std::string, int>& m_index;
  const NZELVOR20::TOptionsMap& m_options;
};

}  // namespace diagsrunner
