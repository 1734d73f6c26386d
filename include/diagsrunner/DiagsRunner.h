#pragma once

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <map>
#include <string>
#include <vector>

#include "diagsrunner/Export.h"
#include "diagsrunner/SharedFlag.h"
#include "diagsrunner/VendorMessageRecord.h"
#include "framework/ICIMInstance.h"
#include "framework/ICIMNamespace.h"
#include "framework/Options.h"
#include "framework/TCIMReference.h"
#include "framework/TCIMValue.h"
#include "framework/TCMPIInstance.h"

/// Finds, filters, runs and reports the hardware diagnostics that an object model offers.
///
/// A host obtains the one runner of the process with `GetDiagsRunner`, lists the tests, runs them
/// and asks for their outcome; each answer is a text for display. A test is named by its test
/// identifier: the service's Name, the element's DeviceID and the element's ElementName, joined by
/// ",".
///
/// Threads: nothing is locked. The host serialises its calls, except that `ExecuteInThread` and
/// `printStatus` run side by side. The first `GetDiagsRunner` comes before any other use.
///
/// Errors: the expected failures (an unknown test, a missing record) are answered with a text.
/// Where an operation says that it throws what the object model throws, `TVORException` and
/// whatever else a provider's framework throws pass to the caller, and so does a
/// `std::runtime_error` of the runner's own, "diagsrunner: no ...", where the object model answers
/// with an empty handle that cannot be done without: it names the class, the namespace, the
/// instance or the property that was missing.
///
/// The report: `Execute`, `ImmediateResults` and their readers take a namespace `ns` of the host's.
/// It receives copies of records, so it must not be empty and must accept instances of classes that
/// it does not know yet: the framework's `makeReportNamespace()` gives one that does. Records are
/// found by parts of their texts; where each run has a report of its own, no other run's record can
/// be taken for this one's.
class DIAGSRUNNER_API DiagsRunner {
 public:
  /// The mode of `GetCIMData` that applies the exclusion matrix and the excluded-test list.
  enum EGetCIMDataMode { EENUMTEST = 3 };

  /// The runner of this process. The first call builds it on `ns` and reads its data files; later
  /// calls return the same runner and ignore their argument. It belongs to the library; release it
  /// with `FreeDiagsRunner`. A runner is obtained once a process: after the release no other one is
  /// built, and this returns the former pointer, through which no call may be made any more. Throws
  /// `TVORException` with status 4 when a data file does not fit into memory; where that was the
  /// list of excluded tests, the next call returns a runner without that list.
  static DiagsRunner* GetDiagsRunner(boost::shared_ptr<NZELVOR20::ICIMNamespace> ns);

  /// Releases the runner; without one, or a second time, does nothing. Every call of the runner
  /// must have returned, `ExecuteInThread` and `printStatus` in other threads included.
  static void FreeDiagsRunner();

  /// Builds a runner on `ns` and loads the vendor messages. Hosts use `GetDiagsRunner`.
  explicit DiagsRunner(boost::shared_ptr<NZELVOR20::ICIMNamespace> ns);
  DiagsRunner(const DiagsRunner& other);
  DiagsRunner(DiagsRunner&& other);
  DiagsRunner& operator=(const DiagsRunner& other);
  DiagsRunner& operator=(DiagsRunner&& other);
  ~DiagsRunner();

  /// Walks the instances of the association `assocClass` and appends to `ids` the test identifier
  /// of each one whose ends, the properties `role1` (the service) and `role2` (the element), can be
  /// read. `retType` `EENUMTEST` leaves the excluded tests out; `nspKind` names the provider
  /// family. The references and `s4` to `s7` carry no behaviour. True when an identifier was
  /// appended. Throws nothing; failures are logged. What it finds cannot be run by that alone: only
  /// `EnumerateDiagTests` records a test as one that `Execute` takes.
  bool GetCIMData(NZELVOR20::TCIMReference& ref1, NZELVOR20::TCIMReference& ref2,
                  std::string assocClass, std::string role1, std::string role2, std::string s4,
                  std::string s5, std::string s6, std::string s7, std::vector<std::string>& ids,
                  int retType, NZELVOR20::TCIMValue nspKind);

  /// Writes to standard output what the runner's namespace holds for a class, or "Class Not Found".
  /// An aid for inspection. Throws what the enumeration of the instances throws.
  void EI(std::string className);
  /// The same for the namespace `ns`.
  void EI(std::string className, boost::shared_ptr<NZELVOR20::ICIMNamespace> ns);

  /// Appends a line "name : value" for each property of `inst` that is not null to `out`. Throws
  /// what the object model throws, and `std::runtime_error` for an empty `inst`.
  void EnumProperties(boost::shared_ptr<NZELVOR20::ICIMInstance> inst, std::string& out);

  /// Splits a test identifier at its first two commas. False when there are fewer; the outputs
  /// before the missing comma are set all the same.
  bool GetTestName(std::string id, std::string& name, std::string& deviceID,
                   std::string& elementName);

  /// Every available test, each identifier followed by "|", or "No matching diagnostic test or
  /// device found.\n". Asked once, then answered from memory, that nothing was found too, even when
  /// that was a failure: a provider that comes later is seen by the next process. The argument is
  /// ignored.
  std::string EnumerateDiagTests(std::string filter);

  /// Reads the list of tests that are never offered. Throws `TVORException` with status 4 when the
  /// file does not fit into memory.
  void GatherExcludedTests();

  /// Removes from `items` the associations that the exclusion matrix hides on this machine. Throws
  /// `TVORException` with status 4 when the file does not fit into memory, and what the object
  /// model throws.
  void filterDiagsItems(std::vector<boost::shared_ptr<NZELVOR20::ICIMInstance>>& items);

  /// Logs an exclusion matrix: fragments of service paths by firmware identifier.
  void filterDiagsItemsLogger(std::map<std::string, std::vector<std::string>> matrix);

  /// Runs one listed test to its end on this thread, with progress on standard output. There is no
  /// time limit: it returns when the job is over. The second argument is not read; the record of
  /// the run is copied into `ns`. Returns
  /// - "Pass", "Aborted", "Incomplete" or "Fail": the verdict of the record;
  /// - "No Results.\n": the job ended, and no record of it was found within 50 seconds, or it could
  ///   not be read or copied;
  /// - "No Status\n": the service started no job. Whether it refused the run, because another one
  ///   goes on for instance, is not told: the method's return value is not looked at;
  /// - "": the service's first method started no job, and the second one, or following its job,
  ///   failed with a `TVORException`;
  /// - "No matching diagnostic test or device found.\n": the test is not listed, or the path of its
  ///   element can't be read any more;
  /// - " No matching diagnostic test or device found.\n", with a blank in front: the test is known,
  ///   but its service and element are not found together.
  /// Throws what the object model throws, except where a lookup can be retried or the answer is one
  /// of these texts.
  std::string Execute(std::string testID, std::string unused,
                      boost::shared_ptr<NZELVOR20::ICIMNamespace>& ns);

  /// A thread's entry: invokes "RunDiagnostic" on the service of the last run, with its parameters
  /// as that run left them, and raises the flag that `printStatus` waits for. `Execute` of a test
  /// comes before it, the thread with this is started next, and `printStatus` is called last; only
  /// another `Execute` takes the flag down again. The argument is not read; always returns a null
  /// pointer. A run that the service refuses raises the flag like one that it makes, and is not
  /// told. An exception of the invocation passes on, and the flag stays down: the host's own thread
  /// function calls this and catches, since a thread that an exception leaves ends the process.
  static void* ExecuteInThread(void* unused);

  /// Follows the job that `job` names to its end, without a time limit, and writes the outcome, an
  /// answer of `ImmediateResults`, to `result`, which stays as it was for a test that is not
  /// listed. Throws what the object model throws, the first reading of the job's state apart.
  void HandleConcrete(NZELVOR20::TCIMReference job, std::string& result, std::string testID,
                      boost::shared_ptr<NZELVOR20::ICIMNamespace>& ns);

  /// Shows an estimated percentage on standard output until the run in `ExecuteInThread` is over;
  /// to be called after that thread was started. The percentage is the clock's: how much of the
  /// expected duration, `minutes`, has passed, not how far the test is; it stops at 99 until the
  /// end. There is no time-out, and the display never ends otherwise: not after an exception in the
  /// thread, and not when there is no such thread.
  void printStatus(unsigned int minutes);

  /// "(Pass)", "(Aborted)", "(Incomplete)" or "(Fail)" from the record of the test's last run in
  /// `ns`; empty when there is none. An identifier that was never listed is not refused: it is
  /// recorded by this, without a provider family, so that the other operations know it from then
  /// on. Throws what the object model throws.
  std::string SimpleResults(std::string testID, boost::shared_ptr<NZELVOR20::ICIMNamespace>& ns);

  /// Waits up to 50 seconds for the record of the test's last run, adds the vendor's messages,
  /// copies it into `ns` and returns "Pass", "Aborted", "Incomplete", "Fail" or "No Results.\n".
  /// The record is looked for in the runner's own namespace; a second call for one run puts the
  /// messages in front again. `TVORException` is answered with "No Results.\n"; other exceptions
  /// pass on.
  std::string ImmediateResults(std::string testID, boost::shared_ptr<NZELVOR20::ICIMNamespace>& ns);

  /// The record data of the test's last run in `ns`, "No extended results.\n" or "testID is not
  /// found in m_diagNS.\n". Throws what the object model throws.
  std::string ExtendedResults(std::string testID, boost::shared_ptr<NZELVOR20::ICIMNamespace>& ns);

 private:
  friend struct DiagsRunnerAccess;

  boost::shared_ptr<NZELVOR20::ICIMNamespace> m_sharedAux;
  boost::weak_ptr<NZELVOR20::ICIMNamespace> m_weakAux;
  bool m_flagAux;
  std::string m_biosID;
  SharedFlag m_runFinished;
  std::string m_testList;
  std::vector<std::string> m_excludedTests;
  std::map<std::string, int> m_testIndex;
  std::map<std::string, NZELVOR20::TCIMValue> m_runParams;
  std::map<std::string, std::string> m_finishedTests;
  boost::shared_ptr<NZELVOR20::ICIMNamespace> m_namespace;
  boost::shared_ptr<NZELVOR20::TCMPIInstance> m_runService;
  VendorMessages m_vendorMessages;
  std::vector<boost::shared_ptr<NZELVOR20::ICIMInstance>> m_testInstances;
  std::map<std::string, NZELVOR20::TCIMValue> m_diagNS;
  std::map<std::string, NZELVOR20::TCIMValue> m_diagPegasusNS;
};
