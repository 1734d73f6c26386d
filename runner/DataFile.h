#pragma once

#include <cstdint>
#include <string>

#include "platform/Platform.h"

namespace diagsrunner {

/// Where the data file `name` of this installation lies.
std::string dataFilePath(const std::string& name);

/// The size of the file as a 32-bit count. Throws what the framework's size query throws;
/// `TVORException` means that there is no such file.
std::uint32_t dataFileSize(const std::string& path);

/// A buffer for `size` bytes of text with a zero byte behind them, filled with zeros: whatever is
/// read into it, a parser finds an end. Throws `TVORException` with status 4 when there is no
/// memory.
platform::Buffer allocateTextBuffer(std::uint32_t size);

/// The text of a data file in such a buffer; null when the file is missing. Throws `TVORException`
/// with status 4 when there is no memory, and what the size query throws but `TVORException`.
platform::Buffer readDataFile(const std::string& path);

}  // namespace diagsrunner
