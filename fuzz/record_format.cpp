#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "engine/worker/model/Measurements.h"

/// Whatever a provider writes: the first byte says how much of the rest is the format. It is read
/// or refused with a reason; what is read has names and finite numbers.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
  const std::size_t cut = std::min<std::size_t>(data[0], text.size());
  const engine::worker::RecordReading reading =
      engine::worker::readMeasurements(text.substr(0, cut), text.substr(cut));
  if (!reading.error.empty() && (!reading.measurements.empty() || reading.error.size() > 400))
    std::abort();
  for (const engine::Measurement& one : reading.measurements) {
    const double* const number = std::get_if<double>(&one.value);
    if (one.name.empty() || (number && !std::isfinite(*number))) std::abort();
    if ((one.minimum && !std::isfinite(*one.minimum)) ||
        (one.maximum && !std::isfinite(*one.maximum)))
      std::abort();
  }
  return 0;
}
