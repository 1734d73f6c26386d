#include <gtest/gtest.h>

#include "substitute/cmpi.nsp/registration/RegistrationReaders.h"
#include "substitute/cmpi.nsp/registration/RegistrationTable.h"
#include "substitute/cmpi.nsp/repository/MofParser.h"
#include "tests/substitute/cmpi.nsp/Problems.h"

namespace cmpinsp {
namespace {

struct Row {
  const char* name;
  std::string text;
  std::string wanted;
  std::string faults;
};

std::string textOf(const std::vector<Registration>& registrations) {
  std::string text;
  for (const Registration& registration : registrations) {
    text += registration.className + "|" + registration.provider + "|" + registration.library + "|";
    for (const std::string& name : registration.namespaces) text += name + " ";
    text += "|";
    for (const std::string& name : interfaceNames(registration.interfaces)) text += name + " ";
    text += "@" + registration.place.toText() + "\n";
  }
  return text;
}

using Reader = void (*)(const std::string&, std::string_view, std::vector<Registration>&,
                        std::vector<substitute::Problem>&);

void expectRows(Reader read, const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    std::vector<Registration> registrations;
    std::vector<substitute::Problem> problems;
    read("f", row.text, registrations, problems);
    EXPECT_EQ(textOf(registrations), row.wanted) << row.name;
    EXPECT_EQ(linesOf(problems), row.faults) << row.name;
  }
}

void readLines(const std::string& file, std::string_view text,
               std::vector<Registration>& registrations,
               std::vector<substitute::Problem>& problems) {
  std::vector<InstancePlacement> placements;
  readRegistrationLines(file, text, registrations, placements, problems);
  EXPECT_TRUE(placements.empty());
}

TEST(RegistrationLines, ALineMayPlaceTheInstancesOfAFile) {
  std::vector<Registration> registrations;
  std::vector<InstancePlacement> placements;
  std::vector<substitute::Problem> problems;
  readRegistrationLines("f", "# c\n a.mof root/acme Instances\nA n P l instance\n", registrations,
                        placements, problems);
  EXPECT_EQ(linesOf(problems), "");
  EXPECT_EQ(textOf(registrations), "A|P|l|n |instance @f:3:1\n");
  ASSERT_EQ(placements.size(), 1u);
  EXPECT_EQ(placements[0].mofFile, "a.mof");
  EXPECT_EQ(placements[0].nameSpace, "root/acme");
  EXPECT_EQ(placements[0].place.toText(), "f:2:2");
}

TEST(RegistrationLines, EachLineIsAClass) {
  expectRows(
      readLines,
      {{"nothing", "", "", ""},
       {"comments and empty lines", "# c\n\n  \t# d\n", "", ""},
       {"a line", "A root/x P lib instance method\n", "A|P|lib|root/x |instance method @f:1:1\n",
        ""},
       {"tabs, CRLF, no end of line", "\tA\troot/x\tP lib\tassociation\r\n#\r\nB * P lib method",
        "A|P|lib|root/x |association @f:1:2\nB|P|lib|* |method @f:3:1\n", ""},
       {"types in any case", "A n P l Instance METHOD", "A|P|l|n |instance method @f:1:1\n", ""},
       {"a class in several namespaces", "A root/x P l instance\nA root/y P l instance\n",
        "A|P|l|root/x |instance @f:1:1\nA|P|l|root/y |instance @f:2:1\n", ""},
       {"every type", "A n P l property indication method association instance",
        "A|P|l|n |instance association method property indication @f:1:1\n", ""},
       {"three words that place nothing", "a.mof n instance\n", "",
        "f:1:1: expected a class, a namespace, a provider, a library and types, found 3 words\n"},
       {"too few words", "x\n A n P l\n", "",
        "f:1:1: expected a class, a namespace, a provider, a library and types, found 1 words\n"
        "f:2:2: expected a class, a namespace, a provider, a library and types, found 4 words\n"},
       {"an unknown type beside a known one", "A n P l instance metod",
        "A|P|l|n |instance @f:1:1\n", "f:1:18: expected a provider type, found \"metod\"\n"},
       {"unknown types alone", "A n P l x", "", "f:1:9: expected a provider type, found \"x\"\n"}});
}

TEST(RegistrationSections, EachSectionIsAClass) {
  const std::string good =
      "[A]\n   provider: P\n   location: lib\n   type: instance method\n   namespace: root/x "
      "root/y\n"
      "   unload: never\n#\n";
  const std::string goodText = "A|P|lib|root/x root/y |instance method @f:1:1\n";
  expectRows(
      readRegistrationSections,
      {{"nothing", "", "", ""},
       {"a section", good, goodText, ""},
       {"blanks and CRLF",
        "[ A ]\r\nprovider :P\r\nlocation:lib\r\ntype:instance method\r\n"
        "namespace:root/x root/y",
        goodText, ""},
       {"a location with blanks and a colon in its path",
        "[A]\nprovider: P\nlocation:\t C:\\Program Files\\Acme\\acme.dll \r\ntype: instance\n"
        "namespace: n\n",
        "A|P|C:\\Program Files\\Acme\\acme.dll|n |instance @f:1:1\n", ""},
       {"two sections", good + "[B]\nprovider: P\nlocation: l\ntype: association\nnamespace: *\n",
        goodText + "B|P|l|* |association @f:8:1\n", ""},
       {"namespaces on several lines, any server's types and keys",
        "# c\n[A]\nPROVIDER: P\nlocation: l\ntype: class instance qualifier\nnamespace: root/x\n"
        "namespace: root/y\nuser: root\ngroup: g\nparameters: a b: c\n",
        "A|P|l|root/x root/y |instance @f:2:1\n", ""},
       {"a server's own provider is passed over",
        "[$ClassProvider$]\n provider: X\n nonsense\n" + good,
        "A|P|lib|root/x root/y |instance method @f:4:1\n", ""},
       {"a location that is blank",
        "[A]\n provider: P\n location: \t\n type: instance\n namespace: n\n", "",
        "f:1:1: section [A] has no usable \"location:\" line\n"},
       {"a section lacks its location", "[A]\n provider: P\n type: instance\n namespace: n\n", "",
        "f:1:1: section [A] has no usable \"location:\" line\n"},
       {"a section has unknown types alone",
        "[A]\n provider: P\n location: l\n type: inst\n namespace: n\n", "",
        "f:4:8: expected a provider type, found \"inst\"\n"
        "f:1:1: section [A] has no usable \"type:\" line\n"},
       {"an entry before any section", "provider: P\n", "",
        "f:1:1: expected a section \"[Class]\"\n"},
       {"a section name without end", "[A\n provider: P\n", "",
        "f:1:1: expected a class between \"[\" and \"]\"\n"},
       {"an unknown key",
        "[A]\n provider: P\n location: l\n type: instance\n namespace: n\n kind: x\n",
        "A|P|l|n |instance @f:1:1\n", "f:6:2: unknown key \"kind\"\n"},
       {"a line without a key", "[A]\n provider P\n location: l\n type: instance\n namespace: n\n",
        "",
        "f:2:2: expected \"key: value\"\nf:1:1: section [A] has no usable \"provider:\" line\n"},
       {"two providers in one entry",
        "[A]\n provider: P Q\n location: l\n type: instance\n namespace: n\n", "",
        "f:2:14: expected one provider\nf:1:1: section [A] has no usable \"provider:\" line\n"}});
}

void readInstances(const std::string& file, std::string_view text,
                   std::vector<Registration>& registrations,
                   std::vector<substitute::Problem>& problems) {
  const std::vector<CompilationUnit> units{parseMof(file, text, problems)};
  readRegistrationInstances(units, registrations, problems);
}

const std::string kModule =
    "instance of PG_ProviderModule { Name = \"M\"; Location = \"lib\"; Vendor = \"v\"; };\n";
const std::string kProvider =
    "instance of PG_Provider { ProviderModuleName = \"M\"; Name = \"P\"; };\n";
const std::string kCapabilities =
    "instance of PG_ProviderCapabilities { ProviderModuleName = \"M\"; ProviderName = \"P\";"
    " CapabilityID = \"1\"; ClassName = \"A\"; Namespaces = {\"root/x\", \"root/y\"};"
    " ProviderType = {2, 3, 5}; SupportedProperties = NULL; };\n";

TEST(RegistrationInstances, ModuleProviderAndCapabilitiesGoTogether) {
  const std::string wanted = "A|P|lib|root/x root/y |instance association method @f:";
  expectRows(
      readInstances,
      {{"nothing", "", "", ""},
       {"in their usual order", kModule + kProvider + kCapabilities, wanted + "3:13\n", ""},
       {"in another order", kCapabilities + kProvider + kModule, wanted + "1:13\n", ""},
       {"other instances are passed over",
        "instance of X { };\n" + kModule + kProvider + kCapabilities, wanted + "4:13\n", ""},
       {"comments, joined strings, one namespace for all",
        "// c\n" + kModule + "/* d */" + kProvider +
            "instance of PG_ProviderCapabilities { ProviderName = \"P\"; ClassName = \"A\" \"B\";"
            " Namespaces = {\"*\"}; ProviderType = {0x7, 4}; };",
        "AB|P|lib|* |instance indication @f:4:13\n", ""},
       {"the same module twice", kModule + kModule + kProvider + kCapabilities, wanted + "4:13\n",
        ""},
       {"a module whose library is named in several ways",
        kModule + "instance of PG_ProviderModule { Name = \"M\"; Location = \"/usr/lib/" +
            libraryFileName("lib") + "\"; };\n" + kProvider + kCapabilities,
        wanted + "4:13\n", ""},
       {"a module in two libraries",
        kModule + "instance of PG_ProviderModule { Name = \"M\"; Location = \"other\"; };\n" +
            kProvider + kCapabilities,
        wanted + "4:13\n", "f:2:13: module M is in library other, but in library lib at f:1:13\n"},
       {"a module for another interface",
        "instance of PG_ProviderModule { Name = \"M\"; Location = \"lib\";"
        " InterfaceType = \"JMPI\"; };\n" +
            kProvider + kCapabilities,
        "",
        "f:1:13: module M is for the interface JMPI, its providers are left out: CMPI alone is "
        "spoken here\n"},
       {"no provider", kModule + kCapabilities, "", "f:2:13: no PG_Provider named \"P\"\n"},
       {"no module", kProvider + kCapabilities, "",
        "f:2:13: no PG_ProviderModule named \"M\" with a Location\n"},
       {"no class", "instance of PG_ProviderCapabilities { ProviderName = \"P\"; };", "",
        "f:1:13: PG_ProviderCapabilities needs ClassName and ProviderName\n"},
       {"no known type",
        kModule + kProvider +
            "instance of PG_ProviderCapabilities { ProviderName = \"P\"; ClassName = \"A\";"
            " Namespaces = {\"n\"}; ProviderType = {6}; };",
        "", "f:3:13: PG_ProviderCapabilities for A needs Namespaces and a known ProviderType\n"},
       {"a type that is no number",
        kModule + kProvider +
            "instance of PG_ProviderCapabilities { ProviderName = \"P\"; ClassName = \"A\";"
            " Namespaces = {\"n\"};\n ProviderType = {\"x\"}; };",
        "",
        "f:4:18: ProviderType: expected a value of type uint16\n"
        "f:3:13: PG_ProviderCapabilities for A needs Namespaces and a known ProviderType\n"}});
}

}  // namespace
}  // namespace cmpinsp
