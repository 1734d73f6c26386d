#include <gtest/gtest.h>

#include <initializer_list>

#include "engine/identity/StorageDescriptor.h"

namespace engine {
namespace {

constexpr std::size_t kHead = 36;
constexpr char kSata = 11;
constexpr char kSas = 10;

/// A descriptor as Windows builds it: a head of fields, behind it the texts that they point to.
class Descriptor {
 public:
  explicit Descriptor(char bus) : m_bytes(kHead, '\0') { m_bytes[28] = bus; }

  Descriptor& text(std::size_t field, const std::string& text) {
    point(field, m_bytes.size());
    m_bytes += text + '\0';
    return *this;
  }
  Descriptor& point(std::size_t field, std::size_t at) {
    for (std::size_t byte = 0; byte < 4; ++byte) {
      m_bytes[field + byte] = static_cast<char>(at >> (8 * byte) & 0xFFU);
    }
    return *this;
  }
  Descriptor& removable() {
    m_bytes[10] = 1;
    return *this;
  }
  const std::string& bytes() const { return m_bytes; }

 private:
  std::string m_bytes;
};

Descriptor wellKnown(char bus) {
  return Descriptor(bus)
      .text(12, "Maker   ")
      .text(16, "Disk 9000")
      .text(20, "1.02")
      .text(24, "  WX-12345 ");
}

TEST(StorageDescriptor, IsADiskWithWhatItSays) {
  const auto disk = diskOfDescriptor(3, wellKnown(kSas).bytes(), 480'103'981'056);
  ASSERT_TRUE(disk);
  EXPECT_EQ(disk->kind, "disk");
  EXPECT_EQ(disk->location, "disk 3");
  EXPECT_EQ(disk->name, "disk 3: Disk 9000 480 GB");
  EXPECT_EQ(disk->manufacturer, "Maker");
  EXPECT_EQ(disk->model, "Disk 9000");
  EXPECT_EQ(disk->version, "1.02");
  EXPECT_EQ(disk->serial, "WX-12345");
}

TEST(StorageDescriptor, OfABusThatNamesItselfHasNoMaker) {
  for (const char bus : std::initializer_list<char>{2, 3, 7, 11, 17}) {
    EXPECT_EQ(diskOfDescriptor(0, wellKnown(bus).bytes(), 0)->manufacturer, "") << int{bus};
  }
  for (const char bus : std::initializer_list<char>{1, 6, 8, 9, 10, 15}) {
    EXPECT_EQ(diskOfDescriptor(0, wellKnown(bus).bytes(), 0)->manufacturer, "Maker") << int{bus};
  }
}

TEST(StorageDescriptor, OfMediaThatCanBeTakenOutIsNoDisk) {
  EXPECT_FALSE(diskOfDescriptor(0, wellKnown(kSata).removable().bytes(), 0));
}

TEST(StorageDescriptor, WithoutTextsIsADiskWithoutThem) {
  const auto disk = diskOfDescriptor(0, Descriptor(kSata).bytes(), 0);
  ASSERT_TRUE(disk);
  EXPECT_EQ(disk->name, "disk 0");
  EXPECT_EQ(disk->model + disk->version + disk->serial, "");
}

TEST(StorageDescriptor, ThatIsCutOffAnywhereIsReadToItsEndAlone) {
  const std::string whole = wellKnown(kSas).bytes();
  for (std::size_t length = 0; length < whole.size(); ++length) {
    const std::string cut = whole.substr(0, length);  // on the heap, where a sanitizer watches it
    const auto disk = diskOfDescriptor(0, cut, 0);
    ASSERT_EQ(disk.has_value(), length >= kHead) << length;
    if (disk && length < whole.size() - 2) {
      EXPECT_NE(disk->serial, "WX-12345") << length;
    }
  }
}

/// 1 and 35 lie in the head, the others behind the end.
TEST(StorageDescriptor, WhoseTextsAreElsewhereHasNone) {
  for (const std::size_t at : {std::size_t{1}, std::size_t{35}, std::size_t{0x7FFFFFFF},
                               std::size_t{0xFFFFFFFF}, wellKnown(kSata).bytes().size()}) {
    const auto disk = diskOfDescriptor(0, wellKnown(kSata).point(24, at).bytes(), 0);
    ASSERT_TRUE(disk);
    EXPECT_EQ(disk->serial, "") << at;
  }
}

TEST(DriveNumber, IsReadFromTheNamesOfWholeDisks) {
  EXPECT_EQ(driveNumber("PhysicalDrive0"), 0U);
  EXPECT_EQ(driveNumber("PhysicalDrive9999"), 9999U);
  for (const char* name : {"", "PhysicalDrive", "PhysicalDrive12345", "PhysicalDrive-1",
                           "PhysicalDrive1x", "HarddiskVolume1", "C:", "aPhysicalDrive1"}) {
    EXPECT_FALSE(driveNumber(name)) << name;
  }
}

}  // namespace
}  // namespace engine
