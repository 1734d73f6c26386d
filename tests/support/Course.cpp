#include "tests/support/Course.h"

#include <stdexcept>

namespace support {

namespace {

bool isFrameworkCall(const std::string& event) {
  for (const char* other :
       {"log ", "out ", "flush", "sleep(", "allocate(", "readFile(", "TOSSpecific."}) {
    if (event.compare(0, std::string(other).size(), other) == 0) {
      return false;
    }
  }
  return true;
}

void addEvents(CourseEnd& end, const std::vector<std::string>& events) {
  for (const std::string& event : events) {
    end.journal += event + "\n";
  }
}

void finishSection(CourseEnd& end, const Section& section) {
  if (!section.adds.empty()) {
    end.added.push_back(section.adds);
  }
}

std::size_t positionOf(const Course& course, const std::string& name) {
  for (std::size_t i = 0; i < course.size(); ++i) {
    if (course[i].name == name) {
      return i;
    }
  }
  throw std::logic_error("the course has no section " + name);
}

/// Goes from section `from`, whether or not it is a detour, to the end.
void resume(CourseEnd& end, const Course& course, std::size_t from) {
  for (std::size_t i = from; i < course.size(); ++i) {
    if (i == from || !course[i].isDetour) {
      addEvents(end, course[i].events);
      finishSection(end, course[i]);
    }
  }
  end.isWhole = true;
}

/// Goes through `section` up to the call that fails; false when it is not in this section.
bool reachFailure(CourseEnd& end, const Section& section, int& callsToGo, const FaultPoint& point) {
  for (const std::string& event : section.events) {
    addEvents(end, {event});
    if (isFrameworkCall(event) && --callsToGo == 0) {
      if (event != point.callText) {
        throw std::logic_error("the course has another call there: " + event);
      }
      return true;
    }
  }
  return false;
}

}  // namespace

CourseEnd faultlessEnd(const Course& course) {
  CourseEnd end;
  resume(end, course, 0);
  return end;
}

CourseEnd endAfter(const Course& course, const FaultPoint& point) {
  CourseEnd end;
  int callsToGo = point.call;
  for (const Section& section : course) {
    if (section.isDetour) {
      continue;
    }
    if (reachFailure(end, section, callsToGo, point)) {
      const Recovery recovery = section.recover(point);
      addEvents(end, recovery.events);
      if (!recovery.resumeAt.empty()) {
        resume(end, course, positionOf(course, recovery.resumeAt));
      }
      return end;
    }
    finishSection(end, section);
  }
  throw std::logic_error("the course has no such call: " + point.callText);
}

}  // namespace support
