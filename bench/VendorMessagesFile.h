#pragma once

#include <cstddef>
#include <string>

/// An installation root below the system's temporary folder with a vendor messages file of about
/// `bytes` bytes, as a vendor with many tests would write it: each outcome with an error code, two
/// message lines and two actions in sentences. Removed with the object.
class VendorInstallation {
 public:
  explicit VendorInstallation(std::size_t bytes);
  VendorInstallation(const VendorInstallation&) = delete;
  VendorInstallation& operator=(const VendorInstallation&) = delete;
  ~VendorInstallation();

  const std::string& root() const { return m_root; }
  std::string file() const;

 private:
  std::string m_root;
};
