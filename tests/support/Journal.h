#pragma once

#include <cstddef>
#include <initializer_list>
#include <mutex>
#include <string>
#include <vector>

namespace support {

/// What kind of thing happened.
enum class Kind {
  framework,  ///< a call of the object model, `TCIMCopy` and the instance registry included
  os,         ///< a call of `TOSSpecific`
  log,        ///< a line of the core log
  output,     ///< text on standard output
  flush,      ///< a flush of standard output
  sleep,
  file  ///< reading a file, or allocating a buffer for it
};

struct Event {
  Kind kind;
  std::string text;
};

/// Everything that the code under test did to the world around it, in order, as readable text: one
/// line an event. Tests compare it whole. May be written from several threads.
class Journal {
 public:
  /// The journal of this process; a `World` empties it.
  static Journal& current();

  void add(Kind kind, const std::string& text);
  /// Adds to the standard output: what is written without anything between is one event.
  void write(const char* text, std::size_t length);
  void flush();
  void clear();

  std::vector<Event> events();
  /// The events of `kinds`, each ended by a line break; compare with `lines({...})`.
  std::string select(std::initializer_list<Kind> kinds);

  std::string all();
  /// All but the flushes.
  std::string allButFlushes();
  std::string calls() { return select({Kind::framework}); }
  std::string osCalls() { return select({Kind::os}); }
  std::string log() { return select({Kind::log}); }
  std::string files() { return select({Kind::file}); }
  std::string sleeps() { return select({Kind::sleep}); }
  /// Standard output, as it is: no quotes, nothing escaped.
  std::string output();
  /// Standard output piece by piece with its flushes.
  std::string outputPieces() { return select({Kind::output, Kind::flush}); }
  /// How often `text` occurs as a whole line.
  int countOf(const std::string& text);

 private:
  void closeOutput();

  std::mutex m_mutex;
  std::vector<Event> m_events;
  std::string m_pending;  ///< output that no other event has followed yet
  std::string m_output;
};

}  // namespace support
