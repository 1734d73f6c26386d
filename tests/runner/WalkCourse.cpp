#include "tests/runner/WalkCourse.h"

#include <utility>

namespace support {

namespace {

const char kPrefix[] = "DiagsRunner::GetCIMData, ";
const char kPlugin[] = "{nspID=\"plugin\"}";

bool isVor(const FaultPoint& point) { return point.fault == Fault::vorException; }

std::string walkError(const std::string& text) { return error(kPrefix + text); }

/// Failures that nobody on the way takes up end the walk.
Recovery endTheWalk(const FaultPoint& point) {
  return {{walkError(isVor(point) ? "caught vor exception" : "caught exception")}, ""};
}

/// One end of an association: the words about it, and its fetching.
struct End {
  const char* role;
  const char* reference;  ///< as the messages call it
  const char* result;
  std::string className;
  std::string path;
};

End serviceEnd(const std::string& name) {
  return {"service", "instRef1", "bGetResult1", "CIM_DiagnosticTest",
          "root/cimv2:CIM_DiagnosticTest.Name=\"" + name + "\""};
}

End elementEnd(const std::string& name) {
  return {"element", "instRef2", "bGetResult2", "CIM_LogicalDevice",
          "root/cimv2:CIM_LogicalDevice.DeviceID=\"" + name + " device\""};
}

/// Builds the course of one query.
class Builder {
 public:
  Builder(const Query& query, const std::vector<WalkedTest>& tests)
      : m_query(query),
        m_tests(tests),
        m_options(describe(NZELVOR20::TOptionsMap{{"nspID", query.family}})) {}

  Course build() {
    begin();
    if (isEnumeration()) {
      filter();
    }
    for (std::size_t i = 0; i < m_tests.size(); ++i) {
      association(std::to_string(i + 1), m_tests[i]);
    }
    m_course.push_back({associationName(m_tests.size() + 1), {}, {}});
    return std::move(m_course);
  }

 private:
  bool isEnumeration() const { return m_query.mode == DiagsRunner::EENUMTEST; }

  static std::string associationName(std::size_t number) {
    return "association " + std::to_string(number);
  }

  void add(Section section) { m_course.push_back(std::move(section)); }

  void begin() {
    const std::string family = m_query.family.ToString(10);
    add({"begin",
         {trace("DiagsRunner::GetCIMData"), trace("DiagsRunner::GetCIMData:Looking for " +
                                                  m_query.associationClass + " with " + family)},
         {}});
    add({"class",
         {"ns root.GetClass(\"" + m_query.associationClass + "\", " + m_options + ")"},
         [](const FaultPoint&) {
           return Recovery{{walkError("caught exception when get class")}, ""};
         }});
    add({"enumeration",
         {"class " + m_query.associationClass + ".EnumerateInstances(deep=true, " + m_options +
          ")"},
         endTheWalk});
  }

  void filter() {
    add({"matrix",
         {trace("Entering DiagsRunner::filterDiagsItems()"), "TOSSpecific.GetVORRootPath()",
          "TOSSpecific.GetFileSize(\"/opt/diags\\kfr\\data\\excludetestmatrix.xml\")",
          "allocate(82)", "readFile(\"/opt/diags\\kfr\\data\\excludetestmatrix.xml\", 81)",
          trace("Entering DiagsRunner::filterDiagsItemsLogger()"), trace("abe1xx -> no such test"),
          trace("Leaving DiagsRunner::filterDiagsItemsLogger()")},
         {}});
    for (std::size_t i = 0; i < m_tests.size(); ++i) {
      filterItem(i);
    }
    add({filterName(m_tests.size()), {trace("Leaving DiagsRunner::filterDiagsItems()")}, {}});
  }

  static std::string filterName(std::size_t index) { return "filter " + std::to_string(index); }

  /// An item whose property is empty stays in the list.
  void filterItem(std::size_t index) {
    const std::string label = "association" + std::to_string(index + 1);
    const std::string path = serviceEnd(m_tests[index].name).path;
    add({filterName(index),
         {"inst " + label + ".GetProperty(\"ServiceProvided\", {})",
          "prop " + label + ".ServiceProvided.GetValue({})", "ref " + path + ".GetPath()",
          trace("DiagsRunner::filterDiagsItems serviceProvided OP = " + path)},
         [index](const FaultPoint& point) {
           return point.fault == Fault::emptyHandle ? Recovery{{}, filterName(index + 1)}
                                                    : endTheWalk(point);
         }});
  }

  void association(const std::string& number, const WalkedTest& test) {
    m_number = number;
    m_next = associationName(std::stoul(number) + 1);
    ends(test.name);
    fetch(serviceEnd(test.name), test.route == Route::serviceByUpcall);
    fetch(elementEnd(test.name), test.route == Route::elementByUpcall);
    if (isEnumeration()) {
      exclusion(test);
    }
    naming(test);
  }

  std::vector<std::string> propertyOf(const std::string& label, const std::string& name) const {
    return {"inst " + label + m_number + ".GetProperty(\"" + name + "\", " + m_options + ")",
            "prop " + label + m_number + "." + name + ".GetValue(" + m_options + ")"};
  }

  void ends(const std::string& name) {
    std::vector<std::string> events = propertyOf("association", "ServiceProvided");
    const std::vector<std::string> second = propertyOf("association", "UserOfService");
    events.insert(events.end(), second.begin(), second.end());
    const std::string label = "prop association" + m_number;
    events.push_back(label + ".ServiceProvided.ToString()");
    events.push_back(
        trace("DiagsRunner::GetCIMData:Property 1: ServiceProvided=" + serviceEnd(name).path));
    events.push_back(label + ".UserOfService.ToString()");
    events.push_back(
        trace("DiagsRunner::GetCIMData:Property 2: UserOfService=" + elementEnd(name).path));
    add({"association " + m_number, events, endTheWalk});
  }

  /// The direct way, and the one through the upcall namespace, which is a detour unless the object
  /// model makes it necessary.
  void fetch(const End& end, bool byUpcall) {
    const std::string second = std::string(end.role) + " by upcall " + m_number;
    const std::string reference = end.reference;
    // This one names the first reference for both ends.
    const std::string givenUp =
        walkError(std::string(end.result) + " false, caught exception when get instRef1 instance");
    const auto failed = [reference](bool vor) {
      return walkError(std::string(vor ? "caught vor exception" : "caught exception") +
                       " when get " + reference + " instance");
    };
    // Without its class there is no name to look up in the upcall namespace.
    add({std::string(end.role) + " class " + m_number,
         {"ref " + end.path + ".GetClass()"},
         [failed, givenUp, next = m_next](const FaultPoint& point) {
           return Recovery{{failed(isVor(point)), givenUp}, next};
         }});
    std::vector<std::string> direct = {
        "class " + end.className + ".GetNamespace(" + m_options + ")",
        "ns cmpi.GetInstance(" + end.path + ", " + m_options + ")"};
    if (byUpcall) {
      direct.push_back(failed(true));
    }
    add({std::string(end.role) + " directly " + m_number, direct,
         [failed, second](const FaultPoint& point) {
           return Recovery{{failed(isVor(point))}, second};
         }});
    add({second,
         {"class " + end.className + ".GetName()",
          "class " + end.className + ".GetNamespace(" + kPlugin + ")",
          "ns cmpi.GetUpcallNamespace()",
          "ns upcall.GetClass(\"" + end.className + "\", " + kPlugin + ")",
          "class upcall:" + end.className + ".GetNamespace(" + kPlugin + ")",
          "ns plugin.GetInstance(" + end.path + ", " + kPlugin + ")"},
         [givenUp, next = m_next](const FaultPoint&) {
           return Recovery{{givenUp}, next};
         },
         {},
         !byUpcall});
  }

  /// What fails is logged and leaves the decision as it stands; characteristics that are empty
  /// count as null.
  void exclusion(const WalkedTest& test) {
    const std::string naming = "naming " + m_number;
    const std::string decided = test.isExcluded ? m_next : naming;
    add(excluding("exclusion by name", "Name", naming));
    add(excluding("exclusion by class name", "CreationClassName", decided));
    Section characteristics = excluding("exclusion of packages", "Characteristics", decided);
    characteristics.recover = [decided, logged = characteristics.recover](const FaultPoint& point) {
      return point.fault == Fault::emptyHandle ? Recovery{{}, decided} : logged(point);
    };
    add(characteristics);
  }

  Section excluding(const std::string& name, const std::string& property,
                    const std::string& resumeAt) const {
    return {name + " " + m_number, propertyOf("service", property),
            [resumeAt](const FaultPoint& point) {
              return Recovery{
                  {walkError(isVor(point) ? "get vor exception when retType == EENUMTEST "
                                          : "get exception when retType == EENUMTEST")},
                  resumeAt};
            }};
  }

  void naming(const WalkedTest& test) {
    const std::string id = test.name + "," + test.name + " device," + test.name + " element";
    std::vector<std::string> events = propertyOf("service", "Name");
    for (const char* name : {"DeviceID", "ElementName"}) {
      const std::vector<std::string> read = propertyOf("element", name);
      events.insert(events.end(), read.begin(), read.end());
    }
    if (m_query.associationClass == kAvailableService &&
        m_query.family == NZELVOR20::TCIMValue("pegasus")) {
      events.push_back("inst association" + m_number + ".GetPegasusNSPStr()");
      const std::string inserted = "DiagsRunner::GetCIMData m_diagPegasusNS.insert ";
      events.push_back(trace(inserted + "testItemID=" + id));
      events.push_back(trace(inserted + "testItemNspStr=root/PG_" + test.name));
    }
    add({"naming " + m_number, events,
         [next = m_next](const FaultPoint& point) {
           return Recovery{{walkError(isVor(point) ? "vor caught exception when diagnostic "
                                                   : "caught exception when diagnostic")},
                           next};
         },
         id, test.isExcluded && isEnumeration()});
  }

  const Query& m_query;
  const std::vector<WalkedTest>& m_tests;
  const std::string m_options;
  std::string m_number;
  std::string m_next;
  Course m_course;
};

}  // namespace

WalkWorld::WalkWorld(const std::vector<WalkedTest>& tests) {
  std::string list;
  for (const WalkedTest& walked : tests) {
    const ScriptedTest test =
        addTest(walked.name, walked.name + " device", walked.name + " element");
    test.association->setPegasusText("root/PG_" + walked.name);
    if (walked.route == Route::serviceByUpcall) {
      cmpi->removeInstance(test.service->path().text());
    }
    if (walked.route == Route::elementByUpcall) {
      cmpi->removeInstance(test.element->path().text());
    }
    if (walked.isExcluded) {
      list += "zel:" + walked.name + ":";
    }
  }
  setDataFile("excludetests.xml", "<vor version='1'><test name='" + list + "'/></vor>");
  setDataFile("excludetestmatrix.xml",
              "<list><biosid name='abe1xx'><diagnostictest name='no such test'/></biosid></list>");
}

Course walkCourse(const Query& query, const std::vector<WalkedTest>& tests) {
  return Builder(query, tests).build();
}

}  // namespace support
