#include "providers/disk/health/Sense.h"

#include <array>
#include <cstdio>

#include "providers/disk/health/Page.h"

namespace providers::disk {

namespace {

constexpr double kWholeShare = 65536;

std::optional<double> shareAt(const Page& page, std::size_t place) {
  constexpr std::uint8_t kValid = 0x80;
  if (!(page.at(place) & kValid)) return std::nullopt;
  return static_cast<double>(page.big(place + 1, 2)) / kWholeShare;
}

Sense readDescriptors(const Page& page) {
  constexpr std::size_t kHeader = 8;
  constexpr std::uint8_t kKeySpecific = 2;
  Sense sense{static_cast<std::uint8_t>(page.at(1) & 0xF), page.at(2), page.at(3), {}};
  for (std::size_t place = kHeader; place + 1 < page.size(); place += 2U + page.at(place + 1))
    if (page.at(place) == kKeySpecific) sense.share = shareAt(page, place + 4);
  return sense;
}

}  // namespace

Sense readSense(const Bytes& bytes) {
  const Page page(bytes);
  const unsigned format = page.at(0) & 0x7F;
  if (format == 0x72 || format == 0x73) return readDescriptors(page);
  if (format != 0x70 && format != 0x71) return {};
  return {static_cast<std::uint8_t>(page.at(2) & 0xF), page.at(12), page.at(13), shareAt(page, 15)};
}

std::string whyNot(const ScsiAnswer& answer, const std::string& what) {
  if (!answer.problem.empty()) return answer.problem;
  if (answer.status == 0) return {};
  const Sense sense = readSense(answer.sense);
  std::array<char, 96> text{};
  std::snprintf(text.data(), text.size(), ", with status 0x%02x, sense %x/%02x/%02x",
                static_cast<unsigned>(answer.status), static_cast<unsigned>(sense.key),
                static_cast<unsigned>(sense.code), static_cast<unsigned>(sense.qualifier));
  return "The drive refuses " + what + text.data();
}

}  // namespace providers::disk
