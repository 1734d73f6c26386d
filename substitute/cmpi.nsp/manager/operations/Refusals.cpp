#include "substitute/cmpi.nsp/manager/operations/Refusals.h"

#include <algorithm>
#include <utility>

#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp {

namespace {

constexpr std::size_t kKeptAtMost = 100;

bool contains(const std::vector<std::string>& texts, const std::string& text) {
  return std::find(texts.begin(), texts.end(), text) != texts.end();
}

}  // namespace

void Refusals::add(const std::string& className, Outcome outcome, const std::string& reason) {
  auto asked = std::find_if(m_asked.begin(), m_asked.end(), [&](const Asked& one) {
    return vorcore::equalNames(one.className, className);
  });
  if (asked == m_asked.end()) asked = m_asked.insert(m_asked.end(), Asked{className, {}, true});
  asked->isRefused = asked->isRefused && outcome == Outcome::eRefused;
  if (outcome == Outcome::eRefused && !contains(asked->reasons, reason)) {
    asked->reasons.push_back(reason);
  }
}

std::vector<std::string> Refusals::texts() const {
  std::vector<std::string> texts;
  for (const Asked& asked : m_asked) {
    if (!asked.isRefused) continue;
    std::string text = "class " + asked.className + " looks empty, since nobody enumerates it";
    for (std::size_t at = 0; at < asked.reasons.size(); ++at) {
      text += (at == 0 ? ": " : "; ") + asked.reasons[at];
    }
    texts.push_back(std::move(text));
  }
  return texts;
}

void KeptRefusals::keep(const std::string& text) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  if (m_texts.size() < kKeptAtMost && !contains(m_texts, text)) m_texts.push_back(text);
}

std::vector<std::string> KeptRefusals::take() {
  const std::lock_guard<std::mutex> lock(m_mutex);
  return std::exchange(m_texts, {});
}

}  // namespace cmpinsp
