#include "execution/ProgressDisplay.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <string>

#include "diagsrunner/DiagsRunner.h"
#include "platform/Platform.h"

namespace diagsrunner {

namespace {

/// Stands for a percentage that cannot be told.
constexpr int kNoPercentage = -1;

/// A clock that jumps must not take the percentage out of the range of an int.
constexpr float kLargestPercentage = 1e9F;

void write(const std::string& text) { std::cout << text << std::flush; }

void backspace(std::size_t count) { write(std::string(count, '\b')); }

std::size_t widthOf(int percentage) {
  if (percentage < 10) {
    return 2;
  }
  return percentage < 100 ? 3 : 4;
}

/// Leaves the cursor in front of what was written.
void writePercentage(int percentage) {
  write(std::to_string(percentage) + "%");
  backspace(widthOf(percentage));
}

}  // namespace

ProgressDisplay::ProgressDisplay(unsigned int expectedMinutes, const SharedFlag& finished)
    : m_expectedSeconds(static_cast<float>(std::uint32_t{expectedMinutes} * std::uint32_t{60})),
      m_finished(finished) {}

void ProgressDisplay::show() {
  const std::int64_t start = platform::currentTime();
  if (!m_finished.isSet()) {
    poll(start);
  }
  wipe();
}

/// The clock is polled without a pause, so that a run that ends is noticed at once.
void ProgressDisplay::poll(std::int64_t start) {
  for (;;) {
    const int percentage = percentageAt(start);
    showRise(percentage);
    m_last = percentage;
    if (m_finished.isSet()) {
      countUp(percentage);
      return;
    }
  }
}

int ProgressDisplay::percentageAt(std::int64_t start) const {
  const auto elapsed = static_cast<float>(platform::secondsBetween(platform::currentTime(), start));
  const float percentage = elapsed / m_expectedSeconds * 100.0F;
  if (!std::isfinite(percentage)) {
    return kNoPercentage;
  }
  return static_cast<int>(std::clamp(percentage, -kLargestPercentage, kLargestPercentage));
}

void ProgressDisplay::showRise(int percentage) {
  if (percentage <= m_last || percentage < 1) {
    return;
  }
  if (percentage < 99) {
    writePercentage(percentage);
  } else if (!m_hasShown99) {
    backspace(4);
    write("99%");
    m_hasShown99 = true;
  }
}

void ProgressDisplay::countUp(int percentage) {
  if (percentage == kNoPercentage || percentage > 95) {
    return;
  }
  for (int left = (100 - percentage) / 10; left > 0; --left) {
    percentage += 10;
    writePercentage(percentage);
    platform::sleepMilliseconds(1000);
  }
}

void ProgressDisplay::wipe() {
  backspace(4);
  write("    ");
}

}  // namespace diagsrunner

void DiagsRunner::printStatus(unsigned int minutes) {
  diagsrunner::ProgressDisplay(minutes, m_runFinished).show();
}
