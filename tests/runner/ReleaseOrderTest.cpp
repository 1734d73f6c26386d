#include <gtest/gtest.h>

#include <string>

#include "tests/support/ScarceMemory.h"
#include "tests/support/WithRunner.h"

/// What an operation has given back when it writes its last line.
namespace support {
namespace {

/// Counts what is held when the line `last` comes, which is not recorded yet.
class LastLine {
 public:
  LastLine(World& world, const std::string& last) {
    world.logger.onLine = [this, &world, last](const std::string& text) {
      if (text == last) {
        m_blocks = liveBlocks();
        m_buffers = world.platform.heldBuffers();
      }
    };
  }

  long blocks() const { return m_blocks; }
  int buffers() const { return m_buffers; }

 private:
  long m_blocks = -1;
  int m_buffers = -1;
};

// While the last line is written it is one block, and afterwards it is one in the journal.

TEST(ReleaseOrder, TheParserAndTheTextOfTheVendorMessagesAreGoneBeforeTheConstructorsLastLine) {
  World world;
  world.setDataFile("vendor_diagnostic_msgs.xml",
                    "<diaganalysis version='1.0'><diagnostictest name='Mem'><result state='Failed'>"
                    "<msg>Broken.</msg></result></diagnostictest></diaganalysis>");
  const LastLine last(world, "Exiting DiagsRunner::DiagsRunner");
  const DiagsRunner runner(world.root->handle());
  EXPECT_EQ(last.blocks(), liveBlocks());
  EXPECT_EQ(last.buffers(), 0);
}

TEST(ReleaseOrder, TheParserOfTheMatrixIsGoneBeforeTheFiltersLastLineAndItsTextAfterIt) {
  WithRunner<> world;
  world.setDataFile("excludetestmatrix.xml",
                    "<x><biosid name='abe1xx'><diagnostictest name='Mem'/></biosid></x>");
  DiagsRunner& runner = world.runner();
  std::vector<boost::shared_ptr<NZELVOR20::ICIMInstance>> items;
  const LastLine last(world, "Leaving DiagsRunner::filterDiagsItems()");
  runner.filterDiagsItems(items);
  EXPECT_EQ(last.blocks(), liveBlocks());
  EXPECT_EQ(last.buffers(), 1);
  EXPECT_EQ(world.platform.heldBuffers(), 0);
}

}  // namespace
}  // namespace support
