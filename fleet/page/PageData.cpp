#include "fleet/page/PageData.h"

#include <ostream>
#include <unordered_map>
#include <vector>

#include "fleet/page/Notes.h"
#include "fleet/page/Words.h"
#include "text/JsonText.h"

namespace fleet::page {
namespace {

using text::JsonText;

void write(std::ostream& out, const JsonText& json) { out << insideScript(json.text()); }

/// Which tests a machine has, numbered in the order in which they come: those of most are the same.
class TestSets {
 public:
  /// Adds the list where it is a new one, else its number.
  void add(JsonText& row, const std::vector<Verdict>& verdicts) {
    std::vector<bool> set(verdicts.size());
    for (std::size_t i = 0; i < verdicts.size(); ++i) set[i] = verdicts[i] != Verdict::kNone;
    const auto [found, isNew] = m_numbers.emplace(set, m_numbers.size());
    if (!isNew) {
      row.add({}, found->second);
      return;
    }
    row.list({});
    for (std::size_t i = 0; i < set.size(); ++i) {
      if (set[i]) row.add({}, static_cast<std::uint64_t>(i));
    }
    row.endList();
  }

 private:
  std::unordered_map<std::vector<bool>, std::uint64_t> m_numbers;
};

std::string lettersOf(const std::vector<Verdict>& verdicts) {
  std::string letters;
  for (const Verdict verdict : verdicts) {
    if (verdict != Verdict::kNone) letters += lookOf(verdict).letter;
  }
  return letters;
}

std::uint64_t kindOf(Verdict verdict) {
  return static_cast<std::uint64_t>(&lookOf(verdict) - kLooks);
}

void writeRow(std::ostream& out, const Machine& machine, std::uint32_t number, TestSets& sets,
              Notes& notes, const PageLimits& limits) {
  JsonText row;
  row.list({});
  row.add({}, seen(machine.name, limits.nameBytes)).add({}, kindOf(machine.verdict));
  sets.add(row, machine.verdicts);
  row.add({}, lettersOf(machine.verdicts)).add({}, notes.slowOf(number));
  addFacts(row, machine, limits);
  notes.add(row, number);
  write(out, row.endList());
}

/// One of which there is no stream.
void writeRow(std::ostream& out, const Silent& silent, TestSets& sets, const PageLimits& limits) {
  JsonText row;
  row.list({});
  row.add({}, seen(silent.name, limits.nameBytes)).add({}, kindOf(Verdict::kNone));
  sets.add(row, {});
  row.add({}, "").add({}, std::uint64_t{0}).list({}).endList().list({}).list({});
  row.add({}, lookOf(Verdict::kNone).style).add({}, lookOf(Verdict::kNone).word);
  row.add({}, seen(silent.why, limits.textBytes)).endList().endList();
  write(out, row.endList());
}

void writeMachineRows(std::ostream& out, const Answer& answer, const PageLimits& limits) {
  TestSets sets;
  Notes notes(answer, limits);
  const char* comma = "";
  for (std::uint32_t i = 0; i < answer.machines.size(); ++i) {
    out << comma;
    writeRow(out, answer.machines[i], i, sets, notes, limits);
    comma = ",\n";
  }
  for (const Silent& silent : answer.silent) {
    if (silent.machine != kNowhere) continue;
    out << comma;
    writeRow(out, silent, sets, limits);
    comma = ",\n";
  }
}

void writeTests(std::ostream& out, const Answer& answer, const PageLimits& limits) {
  const char* comma = "";
  for (const Test& test : answer.tests) {
    JsonText name;
    out << comma;
    write(out, name.add({}, seen(test.name, limits.nameBytes)));
    comma = ",";
  }
}

void writeGroupRows(std::ostream& out, const Answer& answer, const PageLimits& limits) {
  const char* comma = "";
  for (const Group& group : answer.groups) {
    JsonText row;
    row.object().add("name", seen(joined({group.of, group.key}), limits.nameBytes));
    row.list("machines");
    for (const std::uint32_t machine : group.machines) {
      if (machine < answer.machines.size()) row.add({}, std::uint64_t{machine});
    }
    out << comma;
    write(out, row.endList().endObject());
    comma = ",\n";
  }
}

/// What a row's number of a kind means, and what the letter of a verdict.
void writeLooks(std::ostream& out) {
  JsonText json;
  json.object().list("kinds");
  for (const Look& look : kLooks) {
    json.list({}).add({}, nameOf(look.verdict)).add({}, look.style).add({}, look.word).endList();
  }
  json.endList().list("looks");
  for (const Look& look : kLooks) {
    if (look.verdict == Verdict::kNone) continue;
    json.list({}).add({}, std::string(1, look.letter)).add({}, look.style).add({}, look.word);
    json.add({}, look.sign).endList();
  }
  write(out, json.endList());
}

}  // namespace

std::string insideScript(std::string_view json) {
  std::string text;
  text.reserve(json.size());
  for (const char c : json) {
    if (c == '<') {
      text += "\\u003c";
    } else {
      text += c;
    }
  }
  return text;
}

void writeData(std::ostream& out, const Answer& answer, const PageLimits& limits) {
  writeLooks(out);
  out << ",\n\"tests\":[";
  writeTests(out, answer, limits);
  out << "],\n\"groups\":[";
  writeGroupRows(out, answer, limits);
  out << "],\n\"machines\":[\n";
  writeMachineRows(out, answer, limits);
  out << "\n]}";
}

}  // namespace fleet::page
