#include "plain_profile.h"
#include "support/test.h"

namespace {

// A name of blanks stands for the empty name.
S asGiven(const char* name) {
  return " "s + name;
}

S readOurs(const S& path, const char* section, const char* key) {
  char out[1025] = {};
  unsigned int error = 0;
  GetPrivateProfileString(asGiven(section).c_str(), asGiven(key).c_str(), "", out, sizeof out,
                          path.c_str(), &error);
  return std::to_string(error) + " " + out;
}

// Some are larger than what is read at once. Zero bytes stand as \1 in the table.
S makeFile(Dice& dice) {
  static const S kBlanks(1010, ' ');
  static const S kLines[] = {"[s]",        " [ S ]x",    "[t]",        "[t",        "[",
                             "]",          "k=1",        "\tK = v ",   "l=2",       "k",
                             "=3",         "#k=",        ";",          "",          "",
                             "\r",         "k=5\1\n",    "\1k=4",      kBlanks,     kBlanks + "[s]",
                             S(1019, 'x'), S(1022, 'y'), S(1023, 'z'), S(4092, '[')};
  S file;
  for (auto count = dice.below(dice.below(10) ? 20 : 400); count; --count)
    file += kLines[dice.below(std::size(kLines))] + (dice.below(4) ? "\n" : "");
  std::replace(file.begin(), file.end(), '\1', '\0');
  return file;
}

}  // namespace

TEST(ProfileRandom, FilesAreReadAndChangedAsByThePlainProcedure) {
  const ScratchDirectory scratch;
  const S path = scratch / "p";
  const std::pair<const char*, const char*> names[] = {{"s", "k"}, {"s", "l"}, {"t", "k"},
                                                       {"s", ""},  {"", "k"},  {"u", "x"}};
  Dice dice;
  for (int round = 0; round < 3000; ++round) {
    putFile(path, makeFile(dice));
    for (const auto& [section, key] : names)
      ASSERT_EQ(PlainProfile(path, section, key).read(), readOurs(path, section, key)) << round;
    const auto& [section, key] = names[dice.below(std::size(names))];
    PlainProfile(path, section, key).write("new", scratch / "expected");
    unsigned int error = 0;
    WritePrivateProfileString(asGiven(section).c_str(), asGiven(key).c_str(), "new", path.c_str(),
                              &error);
    ASSERT_TRUE(getFile(scratch / "expected") == getFile(path)) << round;
    // The empty name may match a blank line that the rewriting of a long one leaves.
    ASSERT_TRUE(!*key || readOurs(path, section, key) == "0 new") << round;
  }
}

TEST(ProfileTool, Commands) {
  const ScratchDirectory scratch;
  const S file = scratch / "p";
  putFile(file, "[net]\nPort = 21\nFlag\n");
  for (const auto& [arguments, status, out] :
       Rows<std::vector<S>, int, S>{{{"get", file, "net", "flag"}, 1, ""},
                                    {{"get", file, "net", "x", "--default", "y"}, 0, "y\n"},
                                    {{"get-int", file, "net", "x", "--default", "-3"}, 0, "-3\n"},
                                    {{"set", file, "net", "flag", " up "}, 0, ""},
                                    {{"get", file, "net", "flag"}, 0, "up\n"},
                                    {{"set", file, "net", "#x", "1"}, 1, ""},
                                    {{"set", file, "net", "x", S(257, 'v')}, 1, ""},
                                    {{"set", file + "x", "net", "x", "1"}, 1, ""},
                                    {{"lint", file + "x"}, 1, ""},
                                    {{"lint", file, "--json"}, 0, "[]\n"}}) {
    std::vector<S> words = arguments;
    words.insert(words.begin(), "profile");
    const Outcome outcome = runTool(words);
    EXPECT_EQ(status, outcome.status) << words[1] << outcome.err;
    EXPECT_EQ(out, outcome.out) << words[1];
  }
}

TEST(ProfileTool, LintRemarks) {
  const ScratchDirectory scratch;
  const S file = scratch / "p", name(1020, 'n');
  // The numbers of the lines that are remarked on.
  for (const auto& [text, expected] :
       Rows<S, S>{{"#c\n\n[a]\nk='\nl=a;b\n[b]\nk=\n", "4 "},
                  {"\xEF\xBB\xBF[a]\n", "1 1 "},
                  {"k=1\n[a\nk=1\nk=1\n[a]\n", "1 2 "},
                  {"[a]\nk=1\nl=2\nK=3\n[b]\nk=1\n[A]\nk\nk\n", "4 7 "},
                  {"[a]\nk\nl= ;\nm=x #\nn=\"1\" ;\n", "2 3 4 5 5 "},
                  {"[a]\r\nk=1\nl=1\n\0\n"s, "2 4 "},
                  {"[a]\n#" + name + "xy\n#" + name + "xyz", "2 2 3 3 3 "},
                  {"[a]\n" + name.substr(0, 256) + "=\n" + name.substr(0, 257) + "=\n", "3 "}}) {
    putFile(file, text);
    const Outcome outcome = runTool({"profile", "lint", file});
    S lines;
    for (std::size_t at = 0; (at = outcome.out.find(file + ":", at)) != S::npos;) {
      at += file.size() + 1;
      lines += outcome.out.substr(at, outcome.out.find(':', at) - at) + " ";
    }
    EXPECT_EQ(expected, lines) << outcome.out;
    EXPECT_EQ(1, outcome.status);
  }
  putFile(file, "[a]\nk=\"v\"\n");
  EXPECT_EQ("[\n  {\"line\": 2, \"remark\": \"the quotes are part of the value\"}\n]\n",
            runTool({"profile", "lint", file, "--json"}).out);
}
