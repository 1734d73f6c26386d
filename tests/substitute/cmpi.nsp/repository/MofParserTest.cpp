#include <gtest/gtest.h>

#include "framework/TVORException.h"
#include "tests/substitute/cmpi.nsp/repository/Schema.h"

namespace cmpinsp {
namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

struct Row {
  const char* name;
  std::string text;
  std::string wanted;
};

TEST(MofParser, LiteralsHaveTheirValues) {
  const Row rows[] = {
      {"decimal", "12", "12"},
      {"negative", "-12", "-12"},
      {"with a plus", "+5", "5"},
      {"hexadecimal", "0x1F", "31"},
      {"hexadecimal in capitals", "0XFf", "255"},
      {"negative hexadecimal", "-0x10", "-16"},
      {"octal", "0144", "100"},
      {"binary", "1011b", "11"},
      {"zero", "0", "0"},
      {"the largest", "18446744073709551615", "18446744073709551615"},
      {"the smallest", "-9223372036854775808", "-9223372036854775808"},
      {"real", "1.5", "1.5"},
      {"real without a leading digit", ".5", "0.5"},
      {"real with an exponent", "-2.0E+1", "-20"},
      {"boolean", "TrUe", "true"},
      {"null", "Null", ""},
      {"string", "\"abc\"", "abc"},
      {"joined strings", "\"ab\" \"cd\" /* x */ \"ef\"", "abcdef"},
      {"escapes", R"("\b\t\n\f\r\"\'\\")", "\b\t\n\f\r\"'\\"},
      {"hexadecimal escapes", R"("\x41\X00e9;")", "A\xC3\xA9;"},
      {"a hexadecimal escape of four digits and a digit behind it", R"("\x00411")", "A1"},
      {"unknown escapes stay", R"("C:\dir\x")", R"(C:\dir\x)"},
      {"a raw line end and tab stay", "\"a\n\tb\"", "a\n\tb"},
      {"character", "'A'", "A"},
      {"escaped character", R"('\x41')", "A"},
      {"list", "{1, 2, 3}", "{1,2,3}"},
      {"negative integers among reals", "{-1, 2.5}", "{-1,2.5}"},
      {"empty list", "{}", "{}"},
  };
  for (const Row& row : rows) {
    const InstanceSyntax instance = parseInstance("instance of C { p = " + row.text + "; }");
    EXPECT_EQ(guessedValueOf(instance.assignments.at(0).value).ToString(10), row.wanted)
        << row.name;
  }
}

TEST(MofParser, ACharacterIsOneUnitOfItsCode) {
  const struct {
    const char* literal;
    unsigned code;
  } rows[] = {
      {"'A'", 0x41},
      {"'\\x7F'", 0x7F},
      {"'\xC2\x80'", 0x80},
      {"'\\x7FF'", 0x7FF},
      {"'\xE0\xA0\x80'", 0x800},
      {"'\\xD7FF'", 0xD7FF},
      {"'\xED\x9F\xBF'", 0xD7FF},
      {"'\\xE000'", 0xE000},
      {"'\\xFFFF'", 0xFFFF},
      {"'\\xD800'", 0xFFFD},
      {"'\\xDFFF'", 0xFFFD},
  };
  for (const auto& row : rows) {
    const InstanceSyntax instance =
        parseInstance("instance of C { p = " + std::string(row.literal) + "; }");
    EXPECT_EQ(instance.assignments.at(0).value.elements.at(0).magnitude, row.code) << row.literal;
  }
  for (const char* literal : {"''", "'AB'", "'\xF0\xA0\x80\x80'", "'\xC3'", "'\xE9'"}) {
    EXPECT_THROW(parseInstance("instance of C { p = " + std::string(literal) + "; }"),
                 NZELVOR20::TVORException)
        << literal;
  }
}

TEST(MofParser, ADateTimeIsDigitsInItsLayout) {
  const auto isTaken = [](const std::string& text) {
    const InstanceSyntax instance = parseInstance("instance of C { p = \"" + text + "\"; }");
    try {
      return valueOf(instance.assignments.at(0).value, ECIMType::eDateTime, false).GetText() ==
             text;
    } catch (const SyntaxError&) {
      return false;
    }
  };
  const std::string good = "20240131120000.123456+060";
  for (const std::string& text :
       {good, std::string("20240131120000.123456-060"), std::string("00000001000000.000000:000"),
        std::string("20240131******.******+***")}) {
    EXPECT_TRUE(isTaken(text)) << text;
  }
  for (std::size_t at = 0; at < good.size(); ++at) {
    for (const char wrong : {'x', '/', ':', ' '}) {
      std::string bad = good;
      bad[at] = wrong;
      const bool isInterval = at == 21 && wrong == ':';
      EXPECT_EQ(isTaken(bad), isInterval) << bad;
    }
  }
  EXPECT_FALSE(isTaken(good + "0"));
  EXPECT_FALSE(isTaken(good.substr(1)));
}

TEST(MofParser, DeclarationsThatAreUnusualButRightAreAccepted) {
  const Row rows[] = {
      {"nothing", "", ""},
      {"comments alone", "// a\n/* b\n c */", ""},
      {"blanks of every kind", "class\vA\f{\tuint8\r\np; };", "A"},
      {"CRLF", "class A {\r\n uint8 p;\r\n};\r\n", "A"},
      {"keywords in any case", "CLASS A { UINT8 p; String q; };", "A"},
      {"an alias for the class", "class A as $X { };", "A"},
      {"a fixed array", "class A { uint32 p[8] = {1}; };", "A"},
      {"a type with brackets", "class A { uint32[] p; };", "A"},
      {"a reference in lower case", "class A { A ref p; };", "A"},
      {"a reference to anything", "class A { ref p; };", "A"},
      {"objects", "class A { object p; object:A q; };", "A"},
      {"pragmas",
       "#pragma locale (\"en_US\")\n# PRAGMA namespace(\"\\\\\\\\.\\\\root\")\nclass A {};", "A"},
      {"pragmas with several values, without any, with others inside",
       "#pragma deleteclass(\"X\", NOFAIL)\n#pragma autorecover\n#pragma classflags(\"a\"(1, "
       "{2}))\n"
       "#pragma nonlocal()\nclass A {};",
       "A"},
      {"properties and parameters named like keywords",
       "class A { string class; uint8 instance; boolean qualifier; A REF ref; string of;"
       " uint8 as; A REF REF; uint32 m(string null, A REF true); };",
       "A"},
      {"classes named like keywords", "class Instance { }; class Of : Instance { };", "InstanceOf"},
      {"assignments to properties named like keywords",
       "instance of A { class = 1; instance = 2; of = 3; qualifier = 4; null = 5; };", ""},
      {"flavors of every kind",
       "[A : ToInstance ToSubClass, B(1) : EnableOverride Restricted, C{\"x\"}: NotToInstance"
       " Amended Translatable] class A {};",
       "A"},
      {"qualifier declarations",
       "Qualifier Q : string[3] = {\"a\", NULL}, Scope(class, any), Flavor(Restricted);\n"
       "QUALIFIER R : Boolean = False, FLAVOR(DisableOverride), scope(METHOD);\nclass A {};",
       "A"},
      {"instances in a list",
       "instance of A { p = {instance of B { }, instance of B { q = 1; }}; };", ""},
      {"old Windows forms", "[dynamic: ToInstance, provider(\"p\")] class A { [read] uint8 p; };",
       "A"},
      {"a comment mark in a string", "class A { string p = \"/* \" \" // \"; };", "A"},
      {"no end of line behind a comment", "class A {}; // end", "A"},
      {"vendor qualifiers",
       "[dynamic: ToInstance ToSubClass, Locale(1033), UUID(\"{1}\")] class A {};", "A"},
      {"qualifiers on instances", "[x] instance of A { [y] p = 1; };", ""},
      {"a comment between string pieces", "class A { string p = \"a\" // b\n\"c\"; };", "A"},
      {"names of letters beyond ASCII",
       "class A { uint8 gr\xC3\xB6\xC3\x9F"
       "e; };",
       "A"},
      {"a qualifier named like a keyword", "[Association, Schema(\"x\")] class A {};", "A"},
  };
  for (const Row& row : rows) {
    std::vector<substitute::Problem> problems;
    const CompilationUnit unit = parseMof("f", row.text, problems);
    std::string names;
    for (const ClassSyntax& found : unit.classes) names += found.name;
    EXPECT_EQ(names, row.wanted) << row.name;
    EXPECT_EQ(linesOf(problems), "") << row.name;
  }
}

TEST(MofParser, FaultsNameTheirPlaceAndWhatWasExpected) {
  const Row rows[] = {
      {"no class name", "class {};", "f:1:7: expected the name of the class, found \"{\"\n"},
      {"no body", "class A;", "f:1:8: expected \"{\" before the class body, found \";\"\n"},
      {"no semicolon behind a class", "class A {}\nclass B {};",
       "f:2:1: expected \";\" after the class body, found \"class\"\n"},
      {"no semicolon behind a property", "class A {\n  uint8 p\n  uint8 q;\n};",
       "f:3:3: expected \";\" after the property, found \"uint8\"\n"},
      {"an unknown type", "class A { unit8 p; };",
       "f:1:11: expected a type or a class before \"REF\", found \"unit8\"\n"},
      {"no value", "class A { uint8 p = ; };", "f:1:21: expected a value, found \";\"\n"},
      {"a number too large", "class A { uint8 p = 18446744073709551616; };",
       "f:1:21: expected an integer of at most 64 bits, found \"18446744073709551616\"\n"},
      {"a bad octal", "class A { uint8 p = 089; };",
       "f:1:21: expected an integer of at most 64 bits, found \"089\"\n"},
      {"a bad real", "class A { real32 p = 1.5x; };",
       "f:1:22: expected a real number, found \"1.5x\"\n"},
      {"two characters", "class A { char16 p = 'ab'; };",
       "f:1:22: expected one character between the apostrophes, found \"ab\"\n"},
      {"an open qualifier block", "[Key class A {};",
       "f:1:6: expected \"]\" after the qualifiers, found \"class\"\n"},
      {"a trailing comma", "class A { [Key,] uint8 p; };",
       "f:1:16: expected the name of a qualifier, found \"]\"\n"},
      {"a comment without end", "class A {};\n/* x",
       "f:2:1: expected a class, an instance, a qualifier declaration or a pragma, found a comment "
       "without end\n"},
      {"a string without end", "class A { string p = \"x; };",
       "f:1:22: expected a value, found a string without end\n"},
      {"the end inside a class", "class A { uint8 p;",
       "f:1:19: expected a property, a method or \"}\", found the end of the file\n"},
      {"something else", "hello;",
       "f:1:1: expected a class, an instance, a qualifier declaration or a pragma, found "
       "\"hello\"\n"},
      {"an include without a string", "#pragma include(x)",
       "f:1:17: expected a string, found \"x\"\n"},
      {"a namespace without a string", "#pragma namespace(root)",
       "f:1:19: expected a string, found \"root\"\n"},
      {"a pragma without end", "#pragma x(\"a\"\nclass A {};",
       "f:2:11: expected \")\" after the pragma's value, found \";\"\n"},
      {"a comment that is not nested", "/* /* */ */",
       "f:1:10: expected a class, an instance, a qualifier declaration or a pragma, found \"*\"\n"},
      {"a scope without a list", "Qualifier Q : string, Scope;",
       "f:1:28: expected \"(\" before the list, found \";\"\n"},
      {"an instance without a class", "instance of { };",
       "f:1:13: expected the class of the instance, found \"{\"\n"},
      {"an alias without a name", "instance of A as B { };",
       "f:1:18: expected an alias, found \"B\"\n"},
      {"a reference without a name", "class A { A REF; };",
       "f:1:16: expected the name of the property or method, found \";\"\n"},
      {"a parameter without a type", "class A { uint32 m(,); };",
       "f:1:20: expected the type of a parameter, found \",\"\n"},
      {"a pragma without a name", "#pragma (\"x\")",
       "f:1:9: expected the name of the pragma, found \"(\"\n"},
      {"a qualifier declaration without a type", "Qualifier Key : key, Scope(any);",
       "f:1:17: expected the type of the qualifier, found \"key\"\n"},
      {"a list in a list", "instance of A { p = {{1}}; };",
       "f:1:22: expected a value, found \"{\"\n"},
  };
  for (const Row& row : rows) {
    std::vector<substitute::Problem> problems;
    parseMof("f", row.text, problems);
    EXPECT_EQ(linesOf(problems), row.wanted) << row.name;
  }
}

TEST(MofParser, ALongTokenIsCutWhereItsFaultIsTold) {
  const std::string longest(40, 'x');
  for (const bool isLonger : {false, true}) {
    std::vector<substitute::Problem> problems;
    parseMof("f", longest + (isLonger ? "y" : ""), problems);
    EXPECT_EQ(
        linesOf(problems),
        "f:1:1: expected a class, an instance, a qualifier declaration or a pragma, found \"" +
            longest + (isLonger ? "...\"\n" : "\"\n"));
  }
}

TEST(MofParser, AFaultyDeclarationDoesNotLoseTheOthers) {
  const Row rows[] = {
      {"a fault inside a class", "class A { uint8 };  class B {};", "B"},
      {"a missing closing brace", "class A { uint8 p;\nclass B {};", "B"},
      {"the qualifiers of the next class stay with it",
       "class A { uint8 p\n[Association, Key] class B {};", "[B"},
      {"a fault inside the qualifiers themselves", "[a b] class A {}; class B {};", "AB"},
      {"a fault in nested braces", "instance of A { p = {1,,2}; q = 3; };\nclass B {};", "B"},
      {"a missing semicolon", "class A {}\nclass B {};", "B"},
      {"a stray bracket", "class A { ] }; class B {}; class C : B {};", "BC"},
      {"a pragma behind a fault", "class A {\n#pragma include(\"x\")\nclass B {};", "<x>B"},
      {"a qualifier declaration behind a fault",
       "class A {\nQualifier Q : string, Scope(any);\nclass B {};", "B"},
  };
  for (const Row& row : rows) {
    std::vector<substitute::Problem> problems;
    const CompilationUnit unit = parseMof("f", row.text, problems);
    std::string names;
    for (const IncludeSyntax& found : unit.includes) names += "<" + found.path + ">";
    for (const ClassSyntax& found : unit.classes) {
      names += (found.qualifiers.empty() ? "" : "[") + found.name;
    }
    EXPECT_EQ(names, row.wanted) << row.name;
    EXPECT_EQ(problems.size(), 1u) << row.name << "\n" << linesOf(problems);
  }
}

TEST(MofParser, IncludesKeepTheirOrderWithForwardSlashes) {
  std::vector<substitute::Problem> problems;
  const CompilationUnit unit = parseMof(
      "f", "#pragma include (\"Core/a.mof\")\n#pragma INCLUDE(\"..\\\\b.mof\")\n", problems);
  ASSERT_EQ(unit.includes.size(), 2u);
  EXPECT_EQ(unit.includes[0].path, "Core/a.mof");
  EXPECT_EQ(unit.includes[1].path, "../b.mof");
  EXPECT_EQ(unit.includes[1].at.line, 2u);
}

TEST(MofParser, ANamespaceIsInForceUntilTheNextPragma) {
  const struct {
    const char* pragma;
    const char* wanted;
  } rows[] = {{"root/acme", "root/acme"},
              {"/root/acme", "root/acme"},
              {"//./root/acme", "root/acme"},
              {"\\\\\\\\.\\\\root\\\\acme", "root/acme"},
              {"http://host:5988/root/acme", "root/acme"},
              {"//host", ""},
              {"", ""}};
  for (const auto& row : rows) {
    std::vector<substitute::Problem> problems;
    const CompilationUnit unit =
        parseMof("f",
                 "instance of A { };\n#pragma namespace(\"" + std::string(row.pragma) +
                     "\")\n#pragma include(\"b\")\ninstance of B { p = instance of C { }; };",
                 problems, "root/start");
    ASSERT_EQ(linesOf(problems), "") << row.pragma;
    EXPECT_EQ(unit.instances.at(0).nameSpace, "root/start") << row.pragma;
    EXPECT_EQ(unit.instances.at(1).nameSpace, row.wanted) << row.pragma;
    EXPECT_EQ(unit.includes.at(0).nameSpace, row.wanted) << row.pragma;
  }
}

TEST(MofParser, InstancesNestUpToALimit) {
  const auto nested = [](int depth) {
    std::string text;
    for (int i = 0; i < depth; ++i) text += "instance of A { p = ";
    text += "1";
    for (int i = 0; i < depth; ++i) text += "; }";
    return text;
  };
  EXPECT_NO_THROW(parseInstance(nested(30)));
  EXPECT_THROW(parseInstance(nested(100000)), NZELVOR20::TVORException);
}

TEST(MofParser, AnEmbeddedInstanceHasNothingBehindIt) {
  try {
    parseInstance("instance of A { };\nclass B {};");
    FAIL();
  } catch (const NZELVOR20::TVORException& error) {
    EXPECT_NE(std::string(error.what()).find("2:1: expected nothing behind the instance"),
              std::string::npos)
        << error.what();
  }
}

TEST(MofParser, TheFingerprintSeesWordsButNotLayout) {
  std::vector<substitute::Problem> problems;
  const auto print = [&](const std::string& text) {
    return parseMof("f", text, problems).classes.at(0).fingerprint;
  };
  EXPECT_EQ(print("class A { uint8 p; };"), print("CLASS a {\n/* x */ UINT8 P ;\n} ;"));
  EXPECT_NE(print("class A { uint8 p; };"), print("class A { uint8 q; };"));
  EXPECT_NE(print("[Version(\"1\")] class A {};"), print("[Version(\"2\")] class A {};"));
  EXPECT_NE(print("class A { string p = \"x\"; };"), print("class A { string p = \"X\"; };"));
}

TEST(MofParser, ALongRunOfStringPiecesTakesLinearTime) {
  std::string text = "class A { string p =";
  for (int i = 0; i < 100000; ++i) text += " \"0123456789\"";
  const Schema schema(text + "; };");
  EXPECT_EQ(schema.property("A", "p").defaultValue.ToText().size(), 1000000u);
}

}  // namespace
}  // namespace cmpinsp
