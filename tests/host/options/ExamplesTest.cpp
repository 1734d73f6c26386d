#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "host/options/Examples.h"
#include "host/options/Options.h"
#include "host/options/Vocabulary.h"

namespace host {
namespace {

/// The words of a line; what a shell does itself, behind ">", is left out.
std::vector<std::string> wordsOf(const std::string& line) {
  std::vector<std::string> words;
  std::istringstream stream(line.substr(0, line.find(" >")));
  std::string word;
  while (stream >> std::ws && stream.peek() != EOF) {
    const char quote = static_cast<char>(stream.peek());
    if (quote == '"') {
      stream.get();
      std::getline(stream, word, '"');
    } else {
      stream >> word;
    }
    words.push_back(word);
  }
  return words;
}

TEST(Examples, EachOneMakesSense) {
  for (const Example& example : examples()) {
    std::vector<std::string> words = wordsOf(example.line);
    ASSERT_EQ(words.front(), "diags");
    words.erase(words.begin());
    if (words.back() == "--help") words.back() = "--all";
    EXPECT_TRUE(std::holds_alternative<Options>(parseOptions(words))) << example.line;
  }
}

TEST(Examples, EachIsOfItsOwnVerb) {
  for (const Example& example : examples()) {
    if (*example.verb == '\0') continue;
    EXPECT_EQ(wordsOf(example.line)[1], example.verb);
  }
}

TEST(Examples, EveryVerbHasTwoOrThree) {
  std::vector<std::string> verbs = {"", "completion"};
  for (const VerbWords& verb : commandVocabulary().verbs) verbs.push_back(verb.name);
  for (const std::string& verb : verbs) {
    const auto count =
        std::count_if(examples().begin(), examples().end(),
                      [&verb](const Example& example) { return verb == example.verb; });
    EXPECT_TRUE(count == 2 || count == 3) << verb << " has " << count;
  }
}

}  // namespace
}  // namespace host
