#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace providers {

/// The bytes of a small file; empty when it cannot be read.
std::string readAll(const std::filesystem::path& file);

/// So many bytes of a file's beginning, or fewer where it ends before.
std::string readStart(const std::filesystem::path& file, std::size_t most);

/// The first line, printable and without blanks around it.
std::string readLine(const std::filesystem::path& file);

/// The decimal number that the file has and nothing else.
std::optional<std::uint64_t> readNumber(const std::filesystem::path& file);

/// What is in the folder, by name; nothing when it cannot be read.
std::vector<std::filesystem::path> childrenOf(const std::filesystem::path& folder);

/// The text with a blank for whatever is not printable ASCII, single blanks, and none around it.
std::string printable(const std::string& text);

}  // namespace providers
