#include <atomic>
#include <thread>

#include "substitute/cmpi.nsp/broker/calls/Provider.h"
#include "tests/substitute/cmpi.nsp/broker/BrokerFixture.h"

namespace cmpinsp::broker {
namespace {

using NZELVOR20::TCIMValue;

const ObjectPath kFan{"root/cimv2", "ACME_Fan", {{"Name", TCIMValue("left")}}};

/// Answers from any thread.
class QuietUpcalls final : public IUpcalls {
 public:
  QuietUpcalls() { fake.addFan("left"); }
  InstanceDataPtr getInstance(const ObjectPath&, PropertyNames) override {
    return fake.instances[0];
  }
  const ClassRepository& classes() const override { return fake.classes(); }
  boost::shared_ptr<NZELVOR20::ICIMNamespace> namespaceHandle() const override { return {}; }

  void enumerateInstances(const ObjectPath&, PropertyNames, const InstanceSink&) override {}
  void enumerateInstanceNames(const ObjectPath&, const PathSink&) override {}
  ObjectPath createInstance(const ObjectPath& path, const InstanceDataPtr&) override {
    return path;
  }
  void modifyInstance(const ObjectPath&, const InstanceDataPtr&, PropertyNames) override {}
  void deleteInstance(const ObjectPath&) override {}
  void executeQuery(const ObjectPath&, const std::string&, const std::string&,
                    const InstanceSink&) override {}
  void associators(const ObjectPath&, const AssociationFilter&, PropertyNames,
                   const InstanceSink&) override {}
  void associatorNames(const ObjectPath&, const AssociationFilter&, const PathSink&) override {}
  void references(const ObjectPath&, const AssociationFilter&, PropertyNames,
                  const InstanceSink&) override {}
  void referenceNames(const ObjectPath&, const AssociationFilter&, const PathSink&) override {}
  TCIMValue invokeMethod(const ObjectPath&, const std::string&, const Arguments&,
                         Arguments&) override {
    return TCIMValue();
  }
  void setProperty(const ObjectPath&, const std::string&, const TCIMValue&) override {}
  TCIMValue getProperty(const ObjectPath&, const std::string&) override { return TCIMValue(); }

  FakeUpcalls fake;
};

class ProviderThreads : public testing::Test {
 protected:
  TCIMValue invoke(const char* method) {
    Arguments out;
    return provider.invokeMethod(kFan, method, {}, out);
  }

  QuietUpcalls upcalls;
  Provider provider{"Threaded", PROVIDER_FILE, upcalls};
};

TEST_F(ProviderThreads, EightAttachedThreadsWorkAtOnce) {
  EXPECT_EQ(invoke("Workers"), TCIMValue::Uint32(8 * 500));
}

// The call that started the job has returned, and its objects are gone.
TEST_F(ProviderThreads, AJobGoesOnAfterTheCallThatStartedIt) {
  invoke("Start");
  EXPECT_EQ(invoke("Join"), TCIMValue::Uint32(500));
}

// Catches an answer, an error or the end of the answers that another thread may deliver while the
// calling one delivers too. The number has a digit for each.
TEST_F(ProviderThreads, ResultsComeFromTheCallingThreadAlone) {
  EXPECT_EQ(invoke("DeliverElsewhere"), TCIMValue::Uint32(111 * CMPI_RC_ERR_FAILED));
}

TEST_F(ProviderThreads, SeveralCallersAreInOneProviderAtOnce) {
  std::atomic<int> wrong{0};
  std::vector<std::thread> callers;
  Provider plain("Test", PROVIDER_FILE, upcalls);
  for (int caller = 0; caller < 4; ++caller) {
    callers.emplace_back([&] {
      for (int round = 0; round < 200; ++round) {
        if (!(plain.getInstance(kFan, nullptr)->path == kFan)) ++wrong;
      }
    });
  }
  for (std::thread& caller : callers) caller.join();
  EXPECT_EQ(wrong.load(), 0);
}

}  // namespace
}  // namespace cmpinsp::broker
