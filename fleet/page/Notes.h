#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "fleet/Answer.h"
#include "fleet/page/PageLimits.h"
#include "text/JsonText.h"

namespace fleet::page {

/// Who a machine is: pairs of a name and a text, of those that are known.
void addFacts(text::JsonText& row, const Machine& machine, const PageLimits& limits);

/// What a machine's row opens to besides: why it is silent, its findings and slow parts, each with
/// style, heading and text. All of them together are bounded.
class Notes {
 public:
  Notes(const Answer& answer, const PageLimits& limits);

  std::uint64_t slowOf(std::uint32_t machine) const { return m_slow.of(machine).size(); }

  void add(text::JsonText& row, std::uint32_t machine);

 private:
  /// For each machine, which entries of a list are of it, in their order.
  class Places {
   public:
    template <class Entry>
    Places(const std::vector<Entry>& entries, std::size_t machines) : m_places(machines) {
      for (std::uint32_t i = 0; i < entries.size(); ++i) {
        if (entries[i].machine < machines) m_places[entries[i].machine].push_back(i);
      }
    }
    const std::vector<std::uint32_t>& of(std::uint32_t machine) const { return m_places[machine]; }

   private:
    std::vector<std::vector<std::uint32_t>> m_places;
  };

  void note(const char* style, const std::string& heading, const std::string& text);
  void note(const Finding& finding);
  void note(const Slow& slow);
  void tellLeftOut();

  const Answer& m_answer;
  PageLimits m_limits;
  Places m_findings;
  Places m_slow;
  Places m_silent;
  std::size_t m_bytes = 0;
  std::size_t m_written = 0;  ///< of the machine whose row it is, as the next one
  std::size_t m_leftOut = 0;
  text::JsonText* m_row = nullptr;
};

}  // namespace fleet::page
