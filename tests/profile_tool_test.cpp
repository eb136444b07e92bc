#include <vector>

#include "support/child.h"
#include "support/files.h"

namespace {

using namespace std::string_literals;

Outcome runProfile(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), {ZR_BUILD_DIR "/zrtool", "profile"});
  return run(arguments);
}

TEST(ProfileTool, Commands) {
  const ScratchDirectory scratch;
  const std::string file = scratch / "p";
  putFile(file, "[net]\nPort = 21\nFlag\n");
  const struct {
    std::vector<std::string> arguments;
    int status;
    std::string out;
  } rows[] = {
      {{"get", file, "NET", "port"}, 0, "21\n"},
      {{"get", file, "net", "flag"}, 1, ""},
      {{"get", file, "net", "x", "--default", "y"}, 0, "y\n"},
      {{"get-int", file, "net", "port"}, 0, "21\n"},
      {{"get-int", file, "net", "flag"}, 1, ""},
      {{"get-int", file, "net", "x", "--default", "-3"}, 0, "-3\n"},
      {{"set", file, "net", "flag", " up "}, 0, ""},
      {{"get", file, "net", "flag"}, 0, "up\n"},
      {{"lint", file}, 0, ""},
      {{"set", file, "net", "#x", "1"}, 1, ""},
      {{"set", file, "net", "x", std::string(257, 'v')}, 1, ""},
      {{"set", file + "x", "net", "x", "1"}, 1, ""},
      {{"lint", file + "x"}, 1, ""},
      {{"lint", file, "--json"}, 0, "[]\n"},
      {{"get", file, "net"}, 2, ""},
  };
  for (const auto& row : rows) {
    const Outcome outcome = runProfile(row.arguments);
    EXPECT_EQ(row.status, outcome.status) << row.arguments[0] << outcome.err;
    EXPECT_EQ(row.out, outcome.out) << row.arguments[0];
  }
}

// The numbers of the lines that lint remarks on.
std::string remarked(const std::string& out, const std::string& file) {
  std::string lines;
  for (std::size_t at = 0; (at = out.find(file + ":", at)) != out.npos;) {
    at += file.size() + 1;
    lines += out.substr(at, out.find(':', at) - at) + " ";
  }
  return lines;
}

TEST(ProfileTool, LintRemarks) {
  const ScratchDirectory scratch;
  const std::string file = scratch / "p";
  const std::string name(1020, 'n');
  const std::pair<std::string, std::string> rows[] = {
      {"#c\n\n[a]\nk='\nl=a;b\n[b]\nk=\n", "4 "},
      {"\xEF\xBB\xBF[a]\n", "1 1 "},
      {"k=1\n[a\nk=1\nk=1\n[a]\n", "1 2 "},
      {"[a]\nk=1\nl=2\nK=3\n[b]\nk=1\n[A]\nk\nk\n", "4 7 "},
      {"[a]\nk\nl= ;\nm=x #\nn=\"1\" ;\n", "2 3 4 5 5 "},
      {"[a]\r\nk=1\nl=1\n\0\n"s, "2 4 "},
      {"[a]\n#" + name + "xy\n#" + name + "xyz", "2 2 3 3 3 "},
      {"[a]\n" + name.substr(0, 256) + "=\n" + name.substr(0, 257) + "=\n", "3 "},
  };
  for (const auto& [text, expected] : rows) {
    putFile(file, text);
    const Outcome outcome = runProfile({"lint", file});
    EXPECT_EQ(expected, remarked(outcome.out, file)) << outcome.out;
    EXPECT_EQ(1, outcome.status);
  }
  putFile(file, "[a]\nk=\"v\"\n");
  EXPECT_EQ("[\n  {\"line\": 2, \"remark\": \"the quotes are part of the value\"}\n]\n",
            runProfile({"lint", file, "--json"}).out);
}

}  // namespace
