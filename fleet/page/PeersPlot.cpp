#include "fleet/page/PeersPlot.h"

#include <algorithm>
#include <cmath>

#include "fleet/page/Words.h"
#include "reports/html/Svg.h"

namespace fleet::page {
namespace {

constexpr double kWidth = 220;
constexpr double kHeight = 18;
constexpr double kMargin = 8;

/// So many deviations to both sides of the median are nearly all peers.
constexpr double kNearlyAll = 3;

/// From values to coordinates; halves, as the whole difference may be more than a number holds.
struct Scale {
  double least;
  double most;

  double at(double value) const {
    const double half = most / 2 - least / 2;
    const double share = half > 0 ? (value / 2 - least / 2) / half : 0.5;
    return kMargin + std::clamp(share, 0.0, 1.0) * (kWidth - 2 * kMargin);
  }
};

}  // namespace

std::string peersPlot(const Slow& slow) {
  const double reach = kNearlyAll * std::abs(slow.deviation);
  const double from = slow.median - reach;
  const double to = slow.median + reach;
  for (const double number : {slow.value, from, to}) {
    if (!std::isfinite(number)) return {};
  }
  const Scale scale{std::min(slow.value, from), std::max(slow.value, to)};
  return reports::html::svg("plot peers", kWidth, kHeight, besidePeers(slow)) +
         reports::html::rectangle("track", 0, 6, kWidth, 6) +
         reports::html::rectangle("good", scale.at(from), 6,
                                  std::max(scale.at(to) - scale.at(from), 2.0), 6) +
         reports::html::line("limit", scale.at(slow.median), 2, scale.at(slow.median), 16) +
         reports::html::rectangle("value odd", scale.at(slow.value) - 2, 1, 4, 16) + "</svg>";
}

}  // namespace fleet::page
