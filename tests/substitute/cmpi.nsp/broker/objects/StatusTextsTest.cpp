#include <functional>
#include <thread>

#include "substitute/cmpi.nsp/broker/objects/Status.h"
#include "tests/substitute/cmpi.nsp/broker/BrokerFixture.h"

/// The words of statuses. A provider's author has nothing else to go by: many codes stand for
/// several mistakes.
namespace cmpinsp::broker {
namespace {

struct StatusTexts : InCall {
  struct Row {
    const char* text;
    std::function<void()> call;
  };

  void expectTexts(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
      st = CMPIStatus{CMPI_RC_OK, nullptr};
      row.call();
      EXPECT_NE(st.rc, CMPI_RC_OK) << row.text;
      EXPECT_STREQ(text(st.msg), row.text);
    }
  }

  CMPIString* string = CMNewString(broker(), "x", nullptr);
  CMPIObjectPath* path = fanPath();
  CMPIInstance* instance = fan();
  CMPIArray* array = CMNewArray(broker(), 1, CMPI_uint16, nullptr);
  CMPIArgs* args = CMNewArgs(broker(), nullptr);
};

TEST_F(StatusTexts, OfBadHandlesNameWhatIsThereAndWhatIsNeeded) {
  expectTexts({
      {"a null handle where a CMPIString is needed",
       [&] { kStringTable.getCharPtr(nullptr, &st); }},
      {"no live object where a CMPIString is needed",
       [&] { kStringTable.getCharPtr(static_cast<CMPIString*>(foreignAddress()), &st); }},
      {"a CMPIObjectPath where a CMPIString is needed",
       [&] { kStringTable.getCharPtr(reinterpret_cast<CMPIString*>(path), &st); }},
      {"a CMPIArgs where a CMPIInstance is needed",
       [&] { kInstanceTable.getPropertyCount(reinterpret_cast<CMPIInstance*>(args), &st); }},
      {"no live object", [&] { CDGetType(broker(), foreignAddress(), &st); }},
      {"this is not the broker's own handle",
       [&] { kBrokerEncTable.newString(nullptr, "x", &st); }},
      {"this thread has no such mark", [&] { st = broker()->mft->release(broker(), nullptr); }},
      {"this thread was not attached", [&] { st = CBDetachThread(broker(), context); }},
  });
}

TEST_F(StatusTexts, OfWhatIsNotThereNameIt) {
  expectTexts({
      {"there is no Colour", [&] { CMGetProperty(instance, "Colour", &st); }},
      {"there is no Zone", [&] { CMGetKey(path, "Zone", &st); }},
      {"there is no Depth", [&] { CMGetArg(args, "Depth", &st); }},
      {"there is nothing at 0", [&] { CMGetArgAt(args, 0, nullptr, &st); }},
      {"there is nothing at 9", [&] { CMGetArrayElementAt(array, 9, &st); }},
      {"there is nothing at 77", [&] { CMGetPropertyAt(instance, 77, nullptr, &st); }},
      {"class Nobody is not declared", [&] { CMClassPathIsA(broker(), path, "Nobody", &st); }},
      {"there are no translated messages",
       [&] {
         CMPIMsgFileHandle file = nullptr;
         st = broker()->eft->openMessageFile(broker(), "x", &file);
       }},
      {"no open message file",
       [&] { st = broker()->eft->closeMessageFile(broker(), foreignAddress()); }},
  });
}

TEST_F(StatusTexts, OfArgumentsThatMakeNoSenseNameThem) {
  expectTexts({
      {"the property's name is null", [&] { CMGetProperty(instance, nullptr, &st); }},
      {"the argument's name is null", [&] { st = CMAddArg(args, nullptr, "x", CMPI_chars); }},
      {"the name is null", [&] { CMGetKey(path, nullptr, &st); }},
      {"the class name is null", [&] { st = CMSetClassName(path, nullptr); }},
      {"the type is null", [&] { CDIsOfType(broker(), string, nullptr, &st); }},
      {"the text is null", [&] { CMNewDateTimeFromChars(broker(), nullptr, &st); }},
      {"\"noon\" is no CIM date-time", [&] { CMNewDateTimeFromChars(broker(), "noon", &st); }},
      {"18446744073709551615 microseconds are out of range",
       [&] { CMNewDateTimeFromBinary(broker(), ~CMPIUint64{0}, 0, &st); }},
      {"the path names no class",
       [&] { CMNewInstance(broker(), CMNewObjectPath(broker(), "root", nullptr, nullptr), &st); }},
      {"an array of 4294967295 elements is too large",
       [&] { CMNewArray(broker(), 0xFFFFFFFFU, CMPI_uint8, &st); }},
      {"type code 8336 is no element type", [&] { CMNewArray(broker(), 1, CMPI_uint16A, &st); }},
      {"the element is not of the array's type",
       [&] { st = CMSetArrayElementAt(array, 0, "x", CMPI_chars); }},
  });
}

TEST_F(StatusTexts, AreThoseOfTheException) {
  using namespace NZELVOR20;
  expectTexts({
      {"gone", [&] { st = perform([] { throw Failure(CMPI_RC_ERR_NOT_FOUND, "gone"); }); }},
      {"invalid class: X",
       [&] { st = perform([] { throw TVORException(TVORStatusCode(eVORInvalidClass, "X")); }); }},
      {"oops", [&] { st = perform([] { throw std::runtime_error("oops"); }); }},
      {"an exception of unknown type", [&] { st = perform([] { throw 7; }); }},
      {"a mark is not supported", [&] { st = perform([] { notSupported("a mark"); }); }},
  });
}

// Catches a status that keeps the words of an earlier failure.
TEST_F(StatusTexts, ASuccessHasNone) {
  st = CMPIStatus{CMPI_RC_ERR_FAILED, string};
  CMNewString(broker(), "x", &st);
  EXPECT_EQ(st.rc, CMPI_RC_OK);
  EXPECT_EQ(st.msg, nullptr);
}

}  // namespace
}  // namespace cmpinsp::broker
