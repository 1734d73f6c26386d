#include "fleet/page/Notes.h"

#include "fleet/page/Words.h"
#include "reports/html/Figures.h"

namespace fleet::page {
namespace {

void addFact(text::JsonText& row, const char* name, const std::string& text,
             const PageLimits& limits) {
  if (text.empty()) return;
  row.list({}).add({}, name).add({}, seen(text, limits.nameBytes)).endList();
}

std::string slowHeading(const Answer& answer, const Slow& slow) {
  const char* const word =
      slow.unlike == Unlike::kSlow ? "Slow beside its peers" : "Unlike its peers";
  return joined({word, testName(answer, slow.test), slow.device});
}

std::string slowText(const Slow& slow) {
  const std::string serial = slow.serial.empty() ? "" : "serial " + slow.serial;
  return joined({slow.measurement + ": " + besidePeers(slow), slow.model, serial});
}

std::string partText(const Finding& finding) {
  const std::string serial = finding.partSerial.empty() ? "" : "serial " + finding.partSerial;
  return joined({finding.partPlace, finding.partModel, serial});
}

}  // namespace

void addFacts(text::JsonText& row, const Machine& machine, const PageLimits& limits) {
  row.list({});
  addFact(row, "Model", machine.model, limits);
  addFact(row, "Serial", machine.serial, limits);
  addFact(row, "Firmware", machine.firmware, limits);
  addFact(row, "Stream", machine.source, limits);
  if (machine.streams > 1) addFact(row, "Streams read", thousands(machine.streams), limits);
  addFact(row, "Began", reports::html::clockTime(machine.began), limits);
  if (!machine.isClockTrusted) {
    addFact(row, "Clock", "not trusted: the worst of its streams counts", limits);
  }
  row.endList();
}

Notes::Notes(const Answer& answer, const PageLimits& limits)
    : m_answer(answer),
      m_limits(limits),
      m_findings(answer.findings, answer.machines.size()),
      m_slow(answer.slow, answer.machines.size()),
      m_silent(answer.silent, answer.machines.size()) {}

void Notes::note(const char* style, const std::string& heading, const std::string& text) {
  if (m_written >= m_limits.notes || m_bytes >= m_limits.noteBytes) {
    ++m_leftOut;
    return;
  }
  ++m_written;
  const std::string shownHeading = seen(heading, m_limits.textBytes);
  const std::string shownText = seen(text, m_limits.textBytes);
  m_bytes += shownHeading.size() + shownText.size();
  m_row->list({}).add({}, style).add({}, shownHeading).add({}, shownText).endList();
}

void Notes::note(const Finding& finding) {
  const Look& look = lookOf(finding.verdict);
  note(look.style, joined({testName(m_answer, finding.test), finding.part}),
       joined({finding.text, partText(finding), finding.action}));
}

void Notes::note(const Slow& slow) { note("warn", slowHeading(m_answer, slow), slowText(slow)); }

void Notes::tellLeftOut() {
  if (m_leftOut == 0) return;
  m_row->list({}).add({}, "info").add({}, thousands(m_leftOut) + " more");
  m_row->add({}, "The machine's stream has all of it.").endList();
}

void Notes::add(text::JsonText& row, std::uint32_t machine) {
  m_row = &row;
  m_written = 0;
  m_leftOut = 0;
  row.list({});
  for (const std::uint32_t i : m_silent.of(machine))
    note("open", "Did not end", m_answer.silent[i].why);
  for (const std::uint32_t i : m_findings.of(machine)) note(m_answer.findings[i]);
  for (const std::uint32_t i : m_slow.of(machine)) note(m_answer.slow[i]);
  tellLeftOut();
  row.endList();
}

}  // namespace fleet::page
