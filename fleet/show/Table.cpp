#include "fleet/show/Table.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "fleet/show/Sentences.h"
#include "text/Columns.h"
#include "text/SafeText.h"

namespace fleet {
namespace {

constexpr std::size_t kWidestName = 40;

std::string padded(const std::string& text, std::size_t width) {
  const std::string shown = text::fitted(text::visible(text), width);
  const std::size_t columns = text::columnsOf(shown);
  return columns < width ? shown + std::string(width - columns, ' ') : shown;
}

std::string rightward(std::uint64_t number, std::size_t width) {
  const std::string text = number == 0 ? "-" : std::to_string(number);
  return text.size() < width ? std::string(width - text.size(), ' ') + text : text;
}

class Table {
 public:
  Table(std::ostream& out, const Answer& answer, const TableOptions& options)
      : m_out(out), m_answer(answer), m_options(options) {}

  void write() {
    for (const std::string& line : headlines(m_answer)) m_out << line << '\n';
    writeMachines();
    writeSilent();
    writeTests();
    writeGroups();
    writeSlow();
  }

 private:
  /// A section of so many lines; `line` writes each.
  template <typename Write>
  void section(const std::string& title, std::size_t count, const Write& write) {
    if (count == 0) return;
    m_out << '\n' << title << '\n';
    const std::size_t shown =
        m_options.isVerbose ? count : std::min<std::size_t>(count, m_options.most);
    for (std::size_t i = 0; i < shown; ++i) write(i);
    if (shown < count) m_out << "  and " << count - shown << " more (--limit, --verbose)\n";
  }

  void line(const std::string& name, std::size_t width, const std::string& text) {
    const std::string shown =
        width == 0 ? text::fitted(text::visible(name), kWidestName) : padded(name, width);
    m_out << "  " << shown << "  " << text::visible(text) << '\n';
  }

  /// The failing ones, then those that did not finish.
  void writeMachines() {
    for (const Verdict verdict : {Verdict::kFailed, Verdict::kUnfinished}) {
      std::vector<std::uint32_t> machines;
      std::size_t width = 0;
      for (std::uint32_t i = 0; i < m_answer.machines.size(); ++i) {
        const Machine& machine = m_answer.machines[i];
        if (machine.verdict != verdict) continue;
        machines.push_back(i);
        width = std::max(width, text::columnsOf(text::visible(machine.name)));
      }
      width = std::min(width, kWidestName);
      section(verdict == Verdict::kFailed ? "Failing machines" : "Machines that did not finish",
              machines.size(), [&](std::size_t i) {
                line(m_answer.machines[machines[i]].name, width,
                     whyOf(m_answer, machines[i], verdict));
              });
    }
  }

  void writeSilent() {
    section("Silent machines", m_answer.silent.size(), [&](std::size_t i) {
      line(m_answer.silent[i].name, 0, sentenceOf(m_answer, m_answer.silent[i]));
    });
  }

  /// Those that did not pass everywhere.
  void writeTests() {
    std::vector<const Test*> tests;
    for (const Test& test : m_answer.tests) {
      const std::uint32_t bad = test.verdicts[static_cast<std::size_t>(Verdict::kFailed)] +
                                test.verdicts[static_cast<std::size_t>(Verdict::kUnfinished)] +
                                test.verdicts[static_cast<std::size_t>(Verdict::kWarned)];
      if (bad > 0 || m_options.isVerbose) tests.push_back(&test);
    }
    std::stable_sort(tests.begin(), tests.end(), [](const Test* one, const Test* other) {
      return std::lexicographical_compare(std::rbegin(other->verdicts), std::rend(other->verdicts),
                                          std::rbegin(one->verdicts), std::rend(one->verdicts));
    });
    const std::string title = "  failed  unfinished  warned  passed  skipped";
    section(padded("Tests", kWidestName + 2) + title, tests.size(), [&](std::size_t i) {
      const std::uint32_t* const verdicts = tests[i]->verdicts;
      const auto count = [&](Verdict verdict, std::size_t width) {
        return rightward(verdicts[static_cast<std::size_t>(verdict)], width);
      };
      m_out << "  " << padded(tests[i]->name, kWidestName) << count(Verdict::kFailed, 8)
            << count(Verdict::kUnfinished, 12) << count(Verdict::kWarned, 8)
            << count(Verdict::kPassed, 8) << count(Verdict::kSkipped, 9) << '\n';
    });
  }

  void writeGroups() {
    std::vector<const Group*> groups;
    for (const Group& group : m_answer.groups) {
      if (group.kind != GroupKind::kTest) groups.push_back(&group);
    }
    section("What the failing ones have in common", groups.size(),
            [&](std::size_t i) { m_out << "  " << text::visible(sentenceOf(*groups[i])) << '\n'; });
  }

  void writeSlow() {
    for (const Unlike unlike : {Unlike::kSlow, Unlike::kDifferent}) {
      std::vector<const Slow*> slow;
      for (const Slow& one : m_answer.slow) {
        if (one.unlike == unlike) slow.push_back(&one);
      }
      section(unlike == Unlike::kSlow ? "Passes, but is slow beside its peers"
                                      : "Passes, but is unlike its peers",
              slow.size(), [&](std::size_t i) {
                line(m_answer.machines[slow[i]->machine].name, 0, sentenceOf(m_answer, *slow[i]));
              });
    }
  }

  std::ostream& m_out;
  const Answer& m_answer;
  const TableOptions& m_options;
};

}  // namespace

void writeTable(std::ostream& out, const Answer& answer, const TableOptions& options) {
  Table(out, answer, options).write();
}

}  // namespace fleet
