#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "fleet/gather/Member.h"

namespace fleet {

/// The machines, and the latest result of each of their tests. Whatever the order in which the
/// streams come, it ends up the same.
class Roster {
 public:
  /// A stream that began later than `now`, and more than a day, has a clock that is not trusted.
  Roster(Tables& tables, engine::Time now) : m_tables(tables), m_now(now) {}

  void add(StreamResult&& result, std::vector<Complaint>& complaints);
  /// The machines by name and serial number. To be called once.
  std::vector<Member> finish(std::vector<Complaint>& complaints);

 private:
  struct Key {
    std::string name;
    std::string serial;
    bool isClockTrusted;
    bool operator<(const Key& other) const;
  };

  using Members = std::map<Key, Member>;

  bool isTrusted(const std::optional<engine::Time>& began) const;
  void describe(Member& member, StreamResult& result, const Age& age);
  void join(Member& member, Member&& other, bool isClockTrusted);
  void joinNameless();
  void joinDistrusted(std::vector<Complaint>& complaints);
  void tellClashes(std::vector<Complaint>& complaints) const;

  Tables& m_tables;
  engine::Time m_now;
  Members m_members;
};

}  // namespace fleet
