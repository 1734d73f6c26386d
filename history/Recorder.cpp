#include "history/Recorder.h"

#include "history/HistoryError.h"
#include "history/store/RunWriter.h"
#include "history/store/Store.h"

namespace history {

Recorder::Recorder(History& history) : m_store(*history.m_store) {
  if (m_store.database.isReadOnly()) {
    throw HistoryError(m_store.database.name() + " may only be read");
  }
}
Recorder::~Recorder() = default;

void Recorder::take(const engine::Event& event) {
  if (!m_run) m_run = std::make_unique<RunWriter>(m_store, event);
  m_run->add(event);
}

const std::string& Recorder::id() const {
  static const std::string kNone;
  return m_run ? m_run->id() : kNone;
}

}  // namespace history
