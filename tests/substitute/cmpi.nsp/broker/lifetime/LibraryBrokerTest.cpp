#include <gtest/gtest.h>

#include <cstdint>
#include <thread>

#include "substitute/cmpi.nsp/broker/calls/Provider.h"
#include "substitute/cmpi.nsp/broker/lifetime/LibraryBroker.h"
#include "tests/substitute/cmpi.nsp/broker/BrokerFixture.h"

namespace cmpinsp::broker {
namespace {

/// Two providers of one library, and one of another.
struct SharedLibrary : testing::Test {
  ~SharedLibrary() override {
    for (Broker* broker : {&first, &second, &stranger}) broker->retire();
  }

  FakeUpcalls upcalls;
  Broker& first = Broker::make("First", "/providers/libshared.so", upcalls);
  Broker& second = Broker::make("Second", "/providers/libshared.so", upcalls);
  Broker& stranger = Broker::make("Stranger", "/providers/libother.so", upcalls);
};

TEST_F(SharedLibrary, ItsProvidersGetOneHandle) {
  EXPECT_EQ(first.handle(), second.handle());
  EXPECT_NE(first.handle(), stranger.handle());
}

TEST_F(SharedLibrary, TheHandleStandsForTheProviderThatIsCalled) {
  const Scope outer(Scope::Reason::kCall, &first);
  EXPECT_EQ(&Broker::of(first.handle()), &first);
  const Scope inner(Scope::Reason::kCall, &second);
  EXPECT_EQ(&Broker::of(first.handle()), &second);
  EXPECT_EQ(&Broker::of(stranger.handle()), &stranger);
}

TEST_F(SharedLibrary, OutsideACallTheHandleStandsForTheOldestThatIsLeft) {
  EXPECT_EQ(&Broker::of(second.handle()), &first);
  first.retire();
  EXPECT_EQ(&Broker::of(second.handle()), &second);
  second.retire();
  EXPECT_EQ(&Broker::of(second.handle()), &second);
}

// Catches a broker that is known by the address of its handle: wrappers pass a copy.
TEST_F(SharedLibrary, ACopyOfTheHandleStandsForTheSameProvider) {
  const CMPIBroker copy = *second.handle();
  EXPECT_EQ(&Broker::of(&copy), &first);
  const Scope scope(Scope::Reason::kCall, &second);
  EXPECT_EQ(&Broker::of(&copy), &second);
  const CMPIBroker strangersCopy = *stranger.handle();
  EXPECT_EQ(&Broker::of(&strangersCopy), &stranger);
}

TEST_F(SharedLibrary, ACopyOutlivesTheProvider) {
  const CMPIBroker copy = *stranger.handle();
  stranger.retire();
  EXPECT_EQ(&Broker::of(&copy), &stranger);
}

// Catches a foreign handle that is taken for one of ours, and one that is followed: nothing can be
// read at these addresses.
TEST_F(SharedLibrary, AHandleOfSomebodyElseIsToldWithoutFollowingIt) {
  const Scope scope(Scope::Reason::kCall, &first);
  for (const std::uintptr_t address : {std::uintptr_t{0}, std::uintptr_t{16}, ~std::uintptr_t{7}}) {
    CMPIBroker foreign = *first.handle();
    foreign.hdl = reinterpret_cast<void*>(address);
    EXPECT_THROW(Broker::of(&foreign), Failure) << address;
  }
  EXPECT_THROW(Broker::of(nullptr), Failure);
}

TEST_F(SharedLibrary, AnAttachedThreadWorksForTheProviderThatPreparedIt) {
  const Scope scope(Scope::Reason::kCall, &second);
  CMPIContext* context = makeObject(Ownership::kBorrowed, &second,
                                    std::make_unique<ContextBody>(std::string("root/cimv2")));
  CMPIContext* prepared = CBPrepareAttachThread(second.handle(), context);
  const Broker* seen = nullptr;
  std::thread([&] {
    CBAttachThread(second.handle(), prepared);
    seen = &Broker::of(second.handle());
    CBDetachThread(second.handle(), prepared);
  }).join();
  EXPECT_EQ(seen, &second);
}

TEST_F(SharedLibrary, MemoryStaysUntilTheLastProviderIsGone) {
  const Scope scope(Scope::Reason::kCall, &first);
  const CMPIBrokerMemFT* memory = first.handle()->mft;
  auto* text = memory->cmpiStrDup(first.handle(), "kept");
  first.retire();
  const Scope other(Scope::Reason::kCall, &second);
  text = static_cast<char*>(memory->cmpiRealloc(second.handle(), text, 1000));
  ASSERT_NE(text, nullptr);
  EXPECT_STREQ(text, "kept");
}

// Catches memory that goes with one object manager under the interface that another one uses.
TEST(SharedInterface, ItsMemoryStaysWhileAnotherObjectManagerUsesIt) {
  FakeUpcalls upcalls;
  FakeUpcalls others;
  Provider other("GenericToo", PROVIDER_FILE, others);
  {
    Provider first("Generic", PROVIDER_FILE, upcalls);
    first.load();
    other.load();
  }
  NamedValues out;
  const ObjectPath path{"root/cimv2", "ACME_Fan", {}};
  EXPECT_EQ(other.invokeMethod(path, "Note", {}, out).ToString(10), "of the first");
}

// The same interface in one object manager: its last user takes the memory along.
TEST_F(SharedLibrary, MemoryGoesWithTheLastUserOfAnInterface) {
  CMPIMethodMI mi{};
  auto* text = first.handle()->mft->cmpiStrDup(first.handle(), "gone");
  first.library().setUsedElsewhere(&mi, true);
  first.retire();
  second.library().setUsedElsewhere(&mi, false);
  second.retire();
  EXPECT_EQ(second.handle()->mft->cmpiRealloc(second.handle(), text, 1), nullptr);
}

TEST_F(SharedLibrary, AnotherObjectManagerHasAHandleOfItsOwn) {
  FakeUpcalls others;
  Broker& own = Broker::make("First", "/providers/libshared.so", others);
  EXPECT_NE(own.handle(), first.handle());
  own.retire();
}

}  // namespace
}  // namespace cmpinsp::broker
