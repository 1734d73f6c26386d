#include "substitute/cmpi.nsp/broker/calls/Provider.h"
#include "substitute/cmpi.nsp/broker/objects/EmbeddedInstance.h"
#include "substitute/cmpi.nsp/model/PathReference.h"
#include "tests/substitute/cmpi.nsp/broker/BrokerFixture.h"
#include "tests/substitute/cmpi.nsp/broker/KeptLog.h"

namespace cmpinsp::broker {
namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

constexpr const char* kJob = "root/cimv2:ACME_Fan.Name=\"job\"";

/// A provider whose method `Run` answers as its input says.
struct MethodAnswers : testing::Test {
  TCIMValue run(const char* how, const char* method = "Run") {
    return provider.invokeMethod({"root/cimv2", "ACME_Fan", {}}, method, {{"How", TCIMValue(how)}},
                                 out);
  }
  /// The output of that name as a path's text; what it is otherwise.
  std::string job() const {
    for (const auto& output : out) {
      if (output.first != "Job") continue;
      const bool refers = output.second.GetType() == ECIMType::eReference;
      return refers ? pathOf(output.second.ToReference()).toText() : output.second.ToString(10);
    }
    return "no job";
  }

  const KeptLog log;
  FakeUpcalls upcalls;
  Provider provider{"Answering", PROVIDER_FILE, upcalls};
  Arguments out;
};

// Catches a started run that is out of reach, since what the method returned beside its job is not
// of the declared type.
TEST_F(MethodAnswers, AReturnValueThatDoesNotFitComesAsItIsAndTheOutputsWithIt) {
  EXPECT_EQ(run("text returned"), TCIMValue(""));
  EXPECT_EQ(job(), kJob);
  EXPECT_EQ(log.text().find("1 "), 0U) << log.text();
  EXPECT_NE(log.text().find("provider Answering, invokeMethod ACME_Fan.Run: the return value: "),
            std::string::npos)
      << log.text();
  EXPECT_NE(log.text().find("; it is taken as it came\n"), std::string::npos) << log.text();
}

TEST_F(MethodAnswers, AnOutputThatDoesNotFitComesAsItIsAndTheOthersWithIt) {
  EXPECT_EQ(run("text for a number"), TCIMValue::Uint32(4096));
  EXPECT_EQ(job(), kJob);
  ASSERT_EQ(out.size(), 2U);
  EXPECT_EQ(out[1].second, TCIMValue("many"));
  EXPECT_NE(log.text().find("ACME_Fan.Run: Count: "), std::string::npos) << log.text();
}

TEST_F(MethodAnswers, TheLastOfSeveralReturnedValuesCounts) {
  EXPECT_EQ(run("several values"), TCIMValue::Uint32(2));
}

struct JobRow {
  const char* text;
  const char* job;
  bool isLogged;
};

constexpr JobRow kJobs[] = {
    {"root/cimv2:ACME_Fan.Name=\"job\"", kJob, false},
    {"ACME_Fan.Name=\"job\"", kJob, false},
    {"root/other:ACME_Fan.Name=\"job\"", "root/other:ACME_Fan.Name=\"job\"", false},
    {"ACME_Fan", "ACME_Fan", true},
    {"job number 7", "job number 7", true},
    {"", "", true},
};

// Of a method that the class declares, and of one that it does not.
TEST_F(MethodAnswers, AJobReturnedAsTheTextOfAPathIsThatPath) {
  for (const char* method : {"Run", "RunUndeclared"}) {
    for (const JobRow& row : kJobs) {
      out.clear();
      const std::size_t logged = log.text().size();
      run(row.text, method);
      EXPECT_EQ(job(), row.job) << method;
      EXPECT_EQ(log.text().size() > logged, row.isLogged) << method << " " << row.text;
    }
  }
}

// Catches a key that is spelt as a provider, or whoever asked it, has spelt it: in the path of an
// instance and in a reference.
TEST_F(MethodAnswers, KeysOfPathsAreSpeltAsTheyAreDeclared) {
  const ObjectPath path{"root/cimv2", "ACME_Fan", {{"nAmE", TCIMValue("left")}}};
  const TCIMValue fan = provider.invokeMethod(path, "Echo", {}, out);
  EXPECT_EQ(dataOf(*fan.ToInstance())->path.toText(), "root/cimv2:ACME_Fan.Name=\"left\"");
  ASSERT_EQ(out.size(), 1U);
  EXPECT_EQ(pathOf(out[0].second.ToReference()).toText(), "root/cimv2:ACME_Fan.Name=\"left\"");
}

}  // namespace
}  // namespace cmpinsp::broker
