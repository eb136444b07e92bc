#include <gtest/gtest.h>

#include "support/child.h"
#include "support/files.h"

// The commands on the system's services, as a shell runs them; "*" stands for any output.
TEST(SystemTool, Commands) {
  const std::string features = "/usr/lib/Valdrix/Valdrix/zrfeature.dat";
  putFile("/scratch/f", "ana ANANAS, mandarins" + std::string(3000, '.') + "Ana");
  putFile(features, "abcdefghijklm");
  putFile("/etc/init.d/svc", "#!/bin/sh\necho $1 >/scratch/done\n", 0755);
  const struct {
    std::vector<std::string> arguments;
    int status;
    const char* out;
    const char* err;
  } rows[] = {
      {{"copy", "/scratch/f", "/scratch/new"}, 0, "", ""},
      {{"copy", "--for-all", "/scratch/f", "/scratch/all"}, 0, "", ""},
      {{"copy", "/scratch/none", "/scratch/x"}, 1, "", "No such file"},
      {{"copy", "/scratch/f", "/dev/full"}, 1, "", "No space"},
      {{"copy", "/scratch/f"}, 2, "", "TARGET"},
      {{"find", "ANA", "/scratch/f"}, 0, "0\n4\n6\n3021\n", ""},
      {{"find", "Ana", "/scratch/f"}, 1, "", "lower-case"},
      {{"find", "PEAR", "/scratch/f"}, 1, "", "nothing found in"},
      {{"find", "ANA", "/scratch/f", "--json"}, 0, "[0, 4, 6, 3021]\n", ""},
      {{"find", "PEAR", "/scratch/f", "--json"}, 1, "[]\n", "nothing found in"},
      {{"find", "PEAR", "/scratch"}, 1, "", "directory"},
      {{"find", std::string(2043, 'A'), "/scratch/f"}, 1, "", "2042"},
      {{"service", "svc", "restart"}, 0, "", ""},
      {{"service", "none", "start"}, 1, "", "120"},
      {{"service", "svc", "jump"}, 2, "", "ACTION"},
      {{"features"}, 0, "61 62 63 64 65 66 67 68 69 6a 6b\n", ""},
      {{"time"}, 0, "*", ""},
      {{"time", "--json"}, 0, "*", ""},
  };
  for (const auto& row : rows) {
    std::vector<std::string> command = row.arguments;
    command.insert(command.begin(), ZR_BUILD_DIR "/zrtool");
    const Outcome outcome = run(command);
    EXPECT_EQ(row.status, outcome.status) << command[1] << outcome.err;
    EXPECT_EQ(row.out == std::string("*") ? outcome.out : row.out, outcome.out) << command[1];
    EXPECT_NE(std::string::npos, outcome.err.find(row.err)) << command[1] << outcome.err;
    EXPECT_EQ(std::string(row.err).empty(), outcome.err.empty()) << outcome.err;
  }
  const std::string paths = run({ZR_BUILD_DIR "/zrtool", "paths", "--json"}).out;
  EXPECT_EQ(0U, paths.find("{\"installation\": \"/usr/lib/Valdrix/Valdrix/\", \"application\": "));
  EXPECT_EQ(0600U, modeOf("/scratch/new"));
  EXPECT_EQ(0777U, modeOf("/scratch/all"));
  EXPECT_EQ("restart\n", getFile("/scratch/done"));
  putFile(features, "short");
  EXPECT_NE(std::string::npos, run({ZR_BUILD_DIR "/zrtool", "features"}).err.find("shorter"));
}
