#include <zrcommon/profile.h>

#include "support/files.h"
#include "support/guarded.h"

namespace {

using namespace std::string_literals;

TEST(ProfileLines, HelpersCutUpTheirLine) {
  const auto cut = [](std::string line, auto helper) {
    const char* const result = helper(line.data());
    return line + "@" + (result ? std::to_string(result - line.data()) : "null");
  };
  EXPECT_EQ("\0\0a b\0\n@2"s, cut("\t a b \n", Trim));
  EXPECT_EQ("\0\0\0@3"s, cut(" \v\f", Trim));
  EXPECT_EQ("\0\0a b\0\0] x@2"s, cut("[ a b ]] x", GetSectionName));
  EXPECT_EQ("\0a@null"s, cut("[a", GetSectionName));
  EXPECT_EQ(nullptr, GetSectionName(GuardedText("").data()));
  EXPECT_EQ(nullptr, Trim(nullptr));
  EXPECT_EQ(nullptr, GetSectionName(nullptr));

  const auto compared = [](std::string line, const char* key) {
    const int result = CompareKey(line.data(), key);
    return line + "@" + std::to_string(result);
  };
  EXPECT_EQ("Port\0 \0 80=1@0"s, compared("Port  = 80=1", "pORT"));
  EXPECT_EQ("\0\0@0"s, compared(" =", ""));
  EXPECT_EQ("Port@0", compared("Port", "port"));
  EXPECT_EQ("Ports@-1", compared("Ports", "port"));
  EXPECT_EQ("a=1@-1", compared("a=1", nullptr));
  EXPECT_EQ(-1, CompareKey(nullptr, ""));

  const ScratchDirectory scratch;
  std::FILE* const stream = std::fopen((scratch / "p").c_str(), "w");
  char line[] = "ab\0##";
  WriteToFile(line, stream);
  WriteToFile(nullptr, stream);
  WriteToFile(line, nullptr);
  std::fclose(stream);
  EXPECT_EQ("ab\n\0#\0"s, std::string(line, sizeof line));
  EXPECT_EQ("ab\n", getFile(scratch / "p"));
}

}  // namespace
