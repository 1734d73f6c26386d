#include <future>
#include <thread>
#include <vector>

#include "substitute/cmpi.nsp/broker/lifetime/Objects.h"
#include "tests/substitute/cmpi.nsp/broker/BrokerFixture.h"

namespace cmpinsp::broker {
namespace {

class Lifetime : public InCall {
 protected:
  static bool isLive(const void* object) { return findLive(object) != nullptr; }
};

TEST_F(Lifetime, ObjectsEndWithTheirCall) {
  CMPIString* string = nullptr;
  {
    const Scope inner(Scope::Reason::kCall, &own);
    string = CMNewString(broker(), "x", nullptr);
    EXPECT_TRUE(isLive(string));
  }
  EXPECT_FALSE(isLive(string));
  EXPECT_EQ(kStringTable.getCharPtr(string, &st), nullptr);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_HANDLE);
}

// Catches a list of a call's objects that is cut where one was taken out: what came before it, or
// after it, would live on.
TEST_F(Lifetime, AnObjectReleasedInsideACallLeavesTheOthersToEndWithIt) {
  for (std::size_t released = 0; released < 4; ++released) {
    std::vector<CMPIString*> strings;
    {
      const Scope inner(Scope::Reason::kCall, &own);
      for (int i = 0; i < 4; ++i) strings.push_back(CMNewString(broker(), "x", nullptr));
      EXPECT_EQ(CMRelease(strings[released]).rc, CMPI_RC_OK);
      for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(isLive(strings[i]), i != released) << i;
    }
    for (CMPIString* string : strings) EXPECT_FALSE(isLive(string)) << released;
  }
}

// Catches handles that stay with a thread that is no more: each thread would cost memory for ever.
TEST_F(Lifetime, HandlesOfEndedThreadsComeBack) {
  const void* ofThread = nullptr;
  std::thread([&] { ofThread = CMNewString(broker(), "x", nullptr); }).join();
  const Scope inner(Scope::Reason::kCall, &own);
  bool isBack = false;
  for (int i = 0; i < 100000 && !isBack; ++i) {
    isBack = CMNewString(broker(), "y", nullptr) == ofThread;
  }
  EXPECT_TRUE(isBack);
}

TEST_F(Lifetime, AStaleHandleStillHasAFunctionTable) {
  CMPIString* string = CMNewString(broker(), "x", nullptr);
  CMRelease(string);
  EXPECT_EQ(CMRelease(string).rc, CMPI_RC_ERR_INVALID_HANDLE);
  EXPECT_EQ(CMClone(string, nullptr), nullptr);
}

TEST_F(Lifetime, AReleasedHandleIsNotGivenOutAgainAtOnce) {
  CMPIString* string = CMNewString(broker(), "x", nullptr);
  CMNewString(broker(), "y", nullptr);
  CMRelease(string);
  for (int i = 0; i < 10; ++i) EXPECT_NE(CMNewString(broker(), "z", nullptr), string);
}

TEST_F(Lifetime, ClonesOutliveTheirCall) {
  CMPIInstance* copy = nullptr;
  {
    const Scope inner(Scope::Reason::kCall, &own);
    copy = CMClone(fan(), nullptr);
  }
  EXPECT_STREQ(text(CMGetProperty(copy, "Name", nullptr).value.string), "left");
  EXPECT_EQ(CMRelease(copy).rc, CMPI_RC_OK);
  EXPECT_FALSE(isLive(copy));
}

TEST_F(Lifetime, WhatTheBrokerPassedInIsNotTheProvidersToRelease) {
  EXPECT_EQ(CMRelease(context).rc, CMPI_RC_OK);
  EXPECT_TRUE(isLive(context));
}

TEST_F(Lifetime, WhatAnObjectGaveOutEndsWithIt) {
  CMPIObjectPath* path = CMClone(fanPath(), nullptr);
  CMPIString* name = CMGetClassName(path, nullptr);
  EXPECT_EQ(CMRelease(name).rc, CMPI_RC_OK);
  CMSetClassName(path, "Other");
  EXPECT_STREQ(text(name), "ACME_Fan");
  CMRelease(path);
  EXPECT_FALSE(isLive(name));
}

// A job that polls a cloned path for months must not make it grow.
TEST_F(Lifetime, PollingAClonedObjectDoesNotMakeItGrow) {
  CMPIObjectPath* path = CMClone(fanPath(), nullptr);
  CMPIString* first = CMGetKey(path, "Name", nullptr).value.string;
  EXPECT_EQ(CMGetKey(path, "Name", nullptr).value.string, first);
  CMRelease(path);
}

TEST_F(Lifetime, AMarkFreesWhatWasMadeInItExceptClones) {
  CMPIGcStat* mark = broker()->mft->mark(broker(), &st);
  CMPIString* string = CMNewString(broker(), "x", nullptr);
  CMPIString* copy = CMClone(string, nullptr);
  EXPECT_EQ(broker()->mft->release(broker(), mark).rc, CMPI_RC_OK);
  EXPECT_FALSE(isLive(string));
  EXPECT_TRUE(isLive(copy));
  EXPECT_EQ(broker()->mft->release(broker(), mark).rc, CMPI_RC_ERR_INVALID_HANDLE);
  CMRelease(copy);
}

TEST_F(Lifetime, AnOuterMarkTakesTheInnerOnesWithIt) {
  CMPIGcStat* outer = broker()->mft->mark(broker(), nullptr);
  CMPIGcStat* inner = broker()->mft->mark(broker(), nullptr);
  CMPIString* string = CMNewString(broker(), "x", nullptr);
  EXPECT_EQ(broker()->mft->release(broker(), outer).rc, CMPI_RC_OK);
  EXPECT_FALSE(isLive(string));
  EXPECT_EQ(broker()->mft->release(broker(), inner).rc, CMPI_RC_ERR_INVALID_HANDLE);
}

TEST_F(Lifetime, ChildrenOfAnOuterObjectSurviveAMark) {
  CMPIObjectPath* path = fanPath();
  CMPIGcStat* mark = broker()->mft->mark(broker(), nullptr);
  CMPIString* name = CMGetClassName(path, nullptr);
  broker()->mft->release(broker(), mark);
  EXPECT_STREQ(text(name), "ACME_Fan");
}

TEST_F(Lifetime, ForgottenMarksAndAttachmentsEndWithTheCall) {
  CMPIString* marked = nullptr;
  CMPIContext* prepared = CBPrepareAttachThread(broker(), context);
  {
    const Scope inner(Scope::Reason::kCall, &own);
    CBAttachThread(broker(), prepared);
    broker()->mft->mark(broker(), nullptr);
    marked = CMNewString(broker(), "x", nullptr);
  }
  EXPECT_FALSE(isLive(marked));
  EXPECT_FALSE(isLive(prepared));
}

TEST_F(Lifetime, AnAttachedThreadsObjectsEndWhenItDetaches) {
  CMPIContext* prepared = CBPrepareAttachThread(broker(), context);
  std::thread thread([&] {
    EXPECT_EQ(CBAttachThread(broker(), prepared).rc, CMPI_RC_OK);
    CMPIString* string = CMNewString(broker(), "x", nullptr);
    EXPECT_EQ(CBDetachThread(broker(), prepared).rc, CMPI_RC_OK);
    EXPECT_FALSE(isLive(string));
    EXPECT_FALSE(isLive(prepared));
    EXPECT_EQ(CBDetachThread(broker(), prepared).rc, CMPI_RC_ERR_INVALID_HANDLE);
  });
  thread.join();
}

TEST_F(Lifetime, AContextThatItsThreadReleasesStaysUntilTheThreadDetaches) {
  CMPIContext* prepared = CBPrepareAttachThread(broker(), context);
  CBAttachThread(broker(), prepared);
  CMPIString* string = CMNewString(broker(), "x", nullptr);
  EXPECT_EQ(CMRelease(prepared).rc, CMPI_RC_OK);
  EXPECT_EQ(CMGetContextEntry(prepared, CMPIInitNameSpace, &st).type, CMPI_string);
  EXPECT_EQ(CBDetachThread(broker(), prepared).rc, CMPI_RC_OK);
  EXPECT_FALSE(isLive(string));
  EXPECT_FALSE(isLive(prepared));
}

/// Two threads that are attached with one context; the other one came first.
class OneContextForTwoThreads : public Lifetime {
 protected:
  void SetUp() override {
    std::promise<void> attached;
    m_other = std::thread([&] {
      EXPECT_EQ(CBAttachThread(broker(), shared).rc, CMPI_RC_OK);
      attached.set_value();
      m_go.get_future().wait();
      EXPECT_EQ(CBDetachThread(broker(), shared).rc, CMPI_RC_OK);
    });
    attached.get_future().wait();
    EXPECT_EQ(CBAttachThread(broker(), shared).rc, CMPI_RC_OK);
  }
  void TearDown() override { endOther(); }
  void endOther() {
    if (!m_other.joinable()) return;
    m_go.set_value();
    m_other.join();
  }

  CMPIContext* shared = CBPrepareAttachThread(broker(), context);

 private:
  std::promise<void> m_go;
  std::thread m_other;
};

// Catches a context that the first thread to go takes from under the upcalls of the other.
TEST_F(OneContextForTwoThreads, TheContextStaysForTheSecondOne) {
  endOther();
  EXPECT_EQ(CMGetContextEntry(shared, CMPIInitNameSpace, &st).type, CMPI_string);
  EXPECT_EQ(CBDetachThread(broker(), shared).rc, CMPI_RC_OK);
  EXPECT_FALSE(isLive(shared));
}

TEST_F(OneContextForTwoThreads, TheContextStaysForTheFirstOne) {
  EXPECT_EQ(CBDetachThread(broker(), shared).rc, CMPI_RC_OK);
  EXPECT_TRUE(isLive(shared));
  endOther();
  EXPECT_FALSE(isLive(shared));
}

// What the thread had made used to pile up until it ended.
TEST_F(Lifetime, AThreadDetachesThoughTheCallsContextThatItCameWithIsGone) {
  std::promise<CMPIContext*> attached;
  std::promise<void> hasEnded;
  std::thread thread;
  {
    const Scope inner(Scope::Reason::kCall, &own);
    CMPIContext* const ofCall = makeObject(Ownership::kBorrowed, &own,
                                           std::make_unique<ContextBody>(std::string("root/x")));
    thread = std::thread([&, ofCall] {
      EXPECT_EQ(CBAttachThread(broker(), ofCall).rc, CMPI_RC_OK);
      CMPIString* string = CMNewString(broker(), "x", nullptr);
      attached.set_value(ofCall);
      hasEnded.get_future().wait();
      EXPECT_FALSE(isLive(ofCall));
      EXPECT_EQ(CBDetachThread(broker(), ofCall).rc, CMPI_RC_OK);
      EXPECT_FALSE(isLive(string));
    });
    attached.get_future().wait();
  }
  hasEnded.set_value();
  thread.join();
}

TEST_F(Lifetime, DetachingWithoutAttachingIsTold) {
  EXPECT_EQ(CBDetachThread(broker(), context).rc, CMPI_RC_ERR_FAILED);
}

// Older providers enter the broker from threads that they never attached.
TEST_F(Lifetime, AThreadThatWasNeverAttachedHasObjectsUntilItEnds) {
  CMPIString* string = nullptr;
  std::thread thread([&] {
    string = CMNewString(broker(), "x", nullptr);
    EXPECT_STREQ(text(string), "x");
  });
  thread.join();
  EXPECT_FALSE(isLive(string));
}

TEST_F(Lifetime, AnotherThreadCannotReleaseAnObjectOfThisCall) {
  CMPIString* string = CMNewString(broker(), "x", nullptr);
  std::thread thread([&] { CMRelease(string); });
  thread.join();
  EXPECT_TRUE(isLive(string));
}

TEST_F(Lifetime, NoAddressIsTakenForAnObjectByMistake) {
  CMPIString* string = CMNewString(broker(), "x", nullptr);
  char* inside = reinterpret_cast<char*>(string);
  EXPECT_FALSE(isLive(nullptr));
  EXPECT_FALSE(isLive(foreignAddress()));
  EXPECT_FALSE(isLive(inside + 8));
  EXPECT_FALSE(isLive(
      reinterpret_cast<void*>(reinterpret_cast<std::uintptr_t>(inside) & ~std::uintptr_t{0xFFFF})));
  EXPECT_FALSE(isLive(reinterpret_cast<void*>(~std::uintptr_t{63})));
}

TEST_F(Lifetime, TenThousandObjectsComeAndGo) {
  for (int round = 0; round < 2; ++round) {
    const Scope inner(Scope::Reason::kCall, &own);
    for (int i = 0; i < 10000; ++i) ASSERT_NE(CMNewString(broker(), "x", nullptr), nullptr);
  }
}

}  // namespace
}  // namespace cmpinsp::broker
