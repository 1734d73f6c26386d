#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

/// What a vendor has to say about one outcome of one diagnostic test.
struct VendorMessageRecord {
  std::string testName;               ///< in lower case; the key in the table
  std::string errorCode;              ///< empty where the vendor gives none
  std::string state;                  ///< the outcome it is about, in lower case
  std::vector<std::string> messages;  ///< message lines, in document order
  /// Recommended actions, (priority, text), in document order.
  std::vector<std::pair<std::string, std::string>> actions;
};

/// Vendor messages by lower-cased test name; equal keys stand in file order.
using VendorMessages = std::multimap<std::string, VendorMessageRecord>;
