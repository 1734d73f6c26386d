#include "diagsrunner/DiagsRunner.h"

#include <memory>
#include <optional>
#include <utility>

#include "framework/TOSSpecific.h"
#include "results/ResultParser.h"
#include "runner/CoreLog.h"
#include "runner/DataFile.h"
#include "runner/ProcessRunner.h"
#include "runner/Text.h"

namespace {

/// The address outlives the runner: a host that asks again after the release is handed the former
/// one.
DiagsRunner* g_address = nullptr;
DiagsRunner* g_live = nullptr;

}  // namespace

namespace diagsrunner {

namespace {

/// Nothing where there is no file.
std::optional<VendorMessages> readVendorMessages() {
  const platform::Buffer text = readDataFile(dataFilePath("vendor_diagnostic_msgs.xml"));
  if (!text) {
    return std::nullopt;
  }
  ResultParser parser;
  parser.Parse(text.get());
  return std::move(parser).GetVendorMessages();
}

}  // namespace

DiagsRunner* processRunner() { return g_live; }

void forgetProcessRunner() {
  g_address = nullptr;
  g_live = nullptr;
}

}  // namespace diagsrunner

DiagsRunner* DiagsRunner::GetDiagsRunner(boost::shared_ptr<NZELVOR20::ICIMNamespace> ns) {
  if (g_address == nullptr) {
    g_address = g_live = std::make_unique<DiagsRunner>(std::move(ns)).release();
    g_live->GatherExcludedTests();
  }
  return g_address;
}

void DiagsRunner::FreeDiagsRunner() {
  const std::unique_ptr<DiagsRunner> runner(std::exchange(g_live, nullptr));
}

DiagsRunner::DiagsRunner(boost::shared_ptr<NZELVOR20::ICIMNamespace> ns) : m_flagAux(false) {
  diagsrunner::logTrace("Entreing DiagsRunner::DiagsRunner");
  m_namespace = std::move(ns);
  m_biosID = diagsrunner::lowerCased(NZELVOR20::TOSSpecific::GetBiosID());
  std::optional<VendorMessages> messages = diagsrunner::readVendorMessages();
  if (!messages) {
    return;
  }
  m_vendorMessages = std::move(*messages);
  diagsrunner::logTrace("Exiting DiagsRunner::DiagsRunner");
}

DiagsRunner::DiagsRunner(const DiagsRunner& other) = default;
DiagsRunner::DiagsRunner(DiagsRunner&& other) = default;
DiagsRunner& DiagsRunner::operator=(const DiagsRunner& other) = default;
DiagsRunner& DiagsRunner::operator=(DiagsRunner&& other) = default;
DiagsRunner::~DiagsRunner() = default;
