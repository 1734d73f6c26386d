#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace cmpinsp {

/// A compiled schema: magic, checksum of everything behind it, format version, the length of the
/// part that is read at start, the number of the build, the length of the whole; then that part,
/// then the records of the classes. Numbers are little-endian.
constexpr std::string_view kImageMagic = "DIAGSMOF";
constexpr std::size_t kChecksumAt = 8;
constexpr std::size_t kVersionAt = 16;
constexpr std::size_t kHeadLengthAt = 20;
constexpr std::size_t kBuildAt = 24;
constexpr std::uint32_t kImageVersion = 2;

/// Different for each state of the sources that make a compiled schema.
constexpr std::uint64_t kBuildNumber = DIAGS_SCHEMA_BUILD;

}  // namespace cmpinsp
