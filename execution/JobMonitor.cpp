#include "execution/JobMonitor.h"

#include <iostream>

#include "execution/RecordAssociation.h"
#include "framework/TVORException.h"
#include "platform/Platform.h"
#include "runner/CoreLog.h"
#include "runner/Handles.h"
#include "runner/Properties.h"
#include "runner/TestIdentifier.h"
#include "runner/Text.h"

namespace diagsrunner {

using NZELVOR20::TCIMReference;
using NZELVOR20::TCIMValue;
using NZELVOR20::TOptionsMap;

namespace {

constexpr unsigned int kPauseMilliseconds = 5000;
constexpr std::uint16_t kComplete = 100;

/// Values of "JobState".
constexpr std::uint16_t kStarting = 3;
constexpr std::uint16_t kRunning = 4;
constexpr std::uint16_t kCompleted = 7;
constexpr std::uint16_t kException = 10;
constexpr std::uint16_t kVendorEnd = 32768;

void pause() { platform::sleepMilliseconds(kPauseMilliseconds); }

/// Whether the records of the test carry the identifier of their job, by which they are found.
bool carriesJobIdentifier(const std::string& testID) {
  std::string testName;
  std::string deviceID;
  std::string elementName;
  splitTestIdentifier(testID, testName, deviceID, elementName);
  return !hasRecordVendor(testName);
}

}  // namespace

JobMonitor::JobMonitor(const TCIMReference& job, const std::string& testID,
                       const TOptionsMap& options)
    : m_reference(job),
      m_testID(testID),
      m_options(options),
      m_class(m_reference.GetClass()),
      m_isIdentifierNeeded(carriesJobIdentifier(testID)) {
  fetch();
}

void JobMonitor::fetch() {
  m_job = required(fetchInstance(m_reference, m_class, {{}, m_options}), "job instance");
}

void JobMonitor::follow() {
  readFirst();
  if (m_state == kException) {
    showFirst();
    pause();
    return;
  }
  readIdentifier();
  showFirst();
  m_className = m_class->GetName();
  poll();
}

void JobMonitor::readFirst() {
  try {
    readPercentage();
    readState();
  } catch (const NZELVOR20::TVORException&) {
    logError("DiagsRunner::HandleConcrete, catch vor exception, get JobState");
  } catch (...) {
    logError("DiagsRunner::HandleConcrete, catch exception, get JobState");
  }
}

void JobMonitor::readState() {
  const TCIMValue state = valueOrNull(m_job, "JobState");
  m_state = state.IsNull() ? std::uint16_t{0} : state.ToUint16();
}

/// A job that tells no percentage keeps the last one.
void JobMonitor::readPercentage() {
  const TCIMValue percentage = valueOrNull(m_job, "PercentComplete");
  if (!percentage.IsNull()) {
    m_percentage = percentage.ToUint16();
  }
}

/// Without the property there is nothing to read, which ends the run; a null is read as its text,
/// the empty one.
void JobMonitor::readIdentifier() {
  if (m_isIdentifierNeeded) {
    m_identifier = propertyText(m_job, "InstanceID");
  }
  identifier();
}

std::string JobMonitor::identifier() {
  if (!m_identifier) {
    m_identifier = identifierText(valueOrNull(m_job, "InstanceID"));
  }
  return *m_identifier;
}

void JobMonitor::showFirst() const {
  std::cout << "\nPercent Complete: " + std::to_string(m_percentage) + "%\n" << std::flush;
}

void JobMonitor::poll() {
  m_shown = m_percentage;
  while (m_percentage != kComplete && pollOnce()) {
  }
}

/// False when the job is over or was waited for long enough.
bool JobMonitor::pollOnce() {
  readState();
  if (m_state == kCompleted) {
    return false;
  }
  fetch();
  readState();
  readPercentage();
  logProgress();
  if (isOver()) {
    return false;
  }
  pause();
  if (contains(m_testID, "BRCM")) {
    waitForSlowStart();
  }
  showRise();
  return true;
}

bool JobMonitor::isOver() const {
  return m_state == kException || (m_state == kVendorEnd && contains(m_className, "ELX")) ||
         (m_retries == 0 && m_hasWaited);
}

/// These jobs stand still for a while before they tell a new percentage; the patience is for the
/// whole run.
void JobMonitor::waitForSlowStart() {
  while ((m_state == kStarting || m_state == kRunning) && m_retries > 0) {
    --m_retries;
    pause();
    fetch();
    readPercentage();
    readState();
  }
  m_hasWaited = true;
}

void JobMonitor::showRise() {
  if (m_percentage > m_shown) {
    std::cout << "\nPercent Complete : " + std::to_string(m_percentage) + "%\n" << std::flush;
    m_shown = m_percentage;
  }
}

void JobMonitor::logProgress() const {
  logTrace("JobState = ", std::to_string(m_state),
           "\tpercentComplete = ", std::to_string(m_percentage), "\tClassName = ", m_className,
           "\n");
}

}  // namespace diagsrunner
