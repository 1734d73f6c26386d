#include "history/History.h"

#include <cstdlib>
#include <optional>
#include <utility>

#include "engine/events/EventLine.h"
#include "engine/events/EventNames.h"
#include "history/store/PutAside.h"
#include "history/store/RunRows.h"
#include "history/store/Statement.h"
#include "history/store/Store.h"
#include "text/SafeText.h"

namespace history {
namespace {

std::string quoted(std::string_view text) { return "\"" + text::visible(text) + "\""; }

/// "last" and "last-N": how many runs back; nothing for any other word.
std::optional<std::int64_t> runsBack(std::string_view word) {
  constexpr std::string_view kLast = "last";
  if (word.substr(0, kLast.size()) != kLast) return std::nullopt;
  word.remove_prefix(kLast.size());
  if (word.empty()) return 0;
  constexpr std::size_t kMostDigits = 9;
  if (word.size() < 2 || word.size() > kMostDigits || word.front() != '-') return std::nullopt;
  word.remove_prefix(1);
  if (word.find_first_not_of("0123456789") != std::string_view::npos) return std::nullopt;
  return std::atoll(std::string(word).c_str());
}

/// The runs that begin so, two at most: more than one is too many.
std::vector<std::string> idsThatBegin(Database& database, std::string_view start) {
  Statement ids(
      database,
      "SELECT id FROM runs WHERE substr(id, 1, length(?1)) = ?1 ORDER BY id = ?1 DESC, id "
      "LIMIT 2");
  ids.bind(1, start);
  std::vector<std::string> found;
  while (ids.step()) found.push_back(ids.text(0));
  return found;
}

std::string idBack(Database& database, std::int64_t back, std::string_view word) {
  Statement ids(database, "SELECT id FROM runs ORDER BY id DESC LIMIT 1 OFFSET ?");
  ids.bind(1, back);
  if (ids.step()) return ids.text(0);
  throw HistoryError("there is no run " + quoted(word) + ": " + database.name() + " has " +
                     std::to_string(database.number("SELECT count(*) FROM runs")));
}

/// Calls `use` for each line of the block.
template <typename Use>
void forEachLine(std::string_view lines, Use use) {
  while (!lines.empty()) {
    const std::size_t end = lines.find('\n');
    use(lines.substr(0, end));
    lines.remove_prefix(end == std::string_view::npos ? lines.size() : end + 1);
  }
}

}  // namespace

History History::open(const std::filesystem::path& directory, const Options& options) {
  try {
    return History(std::make_unique<Store>(directory, options));
  } catch (const DamagedHistory&) {
    if (!options.putsDamagedAside) throw;
  }
  // One process at a time: it must not put aside what another one has just begun anew.
  const Mending mending(directory, options.patience);
  try {
    return History(std::make_unique<Store>(directory, options));
  } catch (const DamagedHistory& damage) {
    const std::filesystem::path aside = putAside(fileIn(directory));
    History history(std::make_unique<Store>(directory, options));
    history.m_notice = std::string(damage.what()) + "; it is now " +
                       text::visible(aside.u8string()) + ", and a new history begins";
    return history;
  }
}

History::History(std::unique_ptr<Store> store) : m_store(std::move(store)) {}
History::History(History&&) noexcept = default;
History& History::operator=(History&&) noexcept = default;
History::~History() = default;

std::string History::resolve(std::string_view word) const {
  Database& database = m_store->database;
  if (const std::optional<std::int64_t> back = runsBack(word)) {
    return idBack(database, *back, word);
  }
  const std::vector<std::string> ids = idsThatBegin(database, word);
  if (ids.empty()) {
    throw HistoryError("there is no run " + quoted(word) + " in " + database.name());
  }
  if (ids.front() != word && ids.size() > 1) {
    throw HistoryError("several runs begin with " + quoted(word) + ": " + ids[0] + " and " +
                       ids[1]);
  }
  return ids.front();
}

std::vector<RunRecord> History::runs(const RunFilter& filter, std::size_t most) const {
  RunRows rows(*m_store, filter, most);
  std::vector<RunRecord> found;
  while (std::optional<RunRecord> next = rows.next()) found.push_back(std::move(*next));
  return found;
}

RunRecord History::run(const std::string& id) const {
  return recordOf(*m_store, numberOf(*m_store, id));
}

engine::Event History::eventIn(std::string_view line, const std::string& id) const {
  try {
    return engine::eventFrom(line);
  } catch (const engine::NoEvent& fault) {
    throw DamagedHistory(m_store->database.name() + " is damaged: of run " + text::visible(id) +
                         ", " + text::visible(fault.what()));
  }
}

void History::events(const std::string& id, engine::EventSink& sink) const {
  Statement chunks(m_store->database, "SELECT lines FROM chunks WHERE run = ? ORDER BY number");
  chunks.bind(1, numberOf(*m_store, id));
  while (chunks.step()) {
    forEachLine(chunks.bytes(0), [&](std::string_view line) { sink.take(eventIn(line, id)); });
  }
}

std::optional<engine::RunStarted> History::start(const std::string& id) const {
  Statement chunks(m_store->database,
                   "SELECT lines FROM chunks WHERE run = ? ORDER BY number LIMIT 1");
  chunks.bind(1, numberOf(*m_store, id));
  if (!chunks.step()) return std::nullopt;
  const std::string_view lines = chunks.bytes(0);
  engine::Event first = eventIn(lines.substr(0, lines.find('\n')), id);
  auto* const run = std::get_if<engine::RunStarted>(&first.body);
  if (run == nullptr) return std::nullopt;
  return std::move(*run);
}

void History::remove(const std::string& id) {
  Transaction transaction(m_store->database);
  const std::int64_t number = numberOf(*m_store, id);
  if (recordOf(*m_store, number).state == RunState::kRunning) {
    throw HistoryError("run " + text::visible(id) + " still goes on");
  }
  removeRun(m_store->database, number);
  transaction.commit();
  shrink(m_store->database);
}

std::uint64_t History::keepWithin(std::uint64_t mostBytes) {
  return removeOldest(*m_store, mostBytes);
}

}  // namespace history
