#include <algorithm>
#include <random>

#include "plain_profile.h"
#include "support/files.h"

namespace {

using namespace std::string_literals;

struct Name {
  const char* section;
  const char* key;
};

const Name kNames[] = {{"s", "k"}, {"s", "l"}, {"t", "k"}, {"s", ""}, {"", "k"}, {"u", "x"}};

// A name of blanks stands for the empty name.
std::string asGiven(const char* name) {
  return " "s + name;
}

std::string readOurs(const std::string& path, const Name& name) {
  char out[1025] = {};
  unsigned int error = 0;
  GetPrivateProfileString(asGiven(name.section).c_str(), asGiven(name.key).c_str(), "", out,
                          sizeof out, path.c_str(), &error);
  return std::to_string(error) + " " + out;
}

const char* const kShort[] = {"[s]", " [ S ]x", "[t]", "[t", "[", "]", "k=1", "\tK = v ", "l=2",
                              "k",   "=3",      "#k=", ";",  "",  "",  "\r",  "k=5\1\n",  "\1k=4"};
const std::string kBlanks(1010, ' ');
const std::string kLong[] = {kBlanks,
                             kBlanks + "[s]",
                             std::string(1019, 'x'),
                             std::string(1022, 'y'),
                             std::string(1023, 'z'),
                             std::string(4092, '[')};

// Some are larger than what is read at once. Zero bytes stand as \1 in the table.
std::string makeFile(std::mt19937& random) {
  std::string file;
  for (auto count = random() % (random() % 10 ? 20 : 400); count; --count) {
    const bool isLong = random() % 4 == 0;
    file += isLong ? kLong[random() % std::size(kLong)] : kShort[random() % std::size(kShort)];
    file += random() % 4 ? "\n" : "";
  }
  std::replace(file.begin(), file.end(), '\1', '\0');
  return file;
}

TEST(ProfileRandom, FilesAreReadAndChangedAsByThePlainProcedure) {
  const ScratchDirectory scratch;
  const std::string path = scratch / "p";
  std::mt19937 random(20240229);
  for (int round = 0; round < 3000; ++round) {
    putFile(path, makeFile(random));
    for (const Name& name : kNames)
      ASSERT_EQ(PlainProfile(path, name.section, name.key).read(), readOurs(path, name)) << round;
    const Name& name = kNames[random() % std::size(kNames)];
    PlainProfile(path, name.section, name.key).write("new", scratch / "expected");
    unsigned int error = 0;
    WritePrivateProfileString(asGiven(name.section).c_str(), asGiven(name.key).c_str(), "new",
                              path.c_str(), &error);
    ASSERT_TRUE(getFile(scratch / "expected") == getFile(path)) << round;
    // The empty name may match a blank line that the rewriting of a long one leaves.
    if (*name.key) {
      ASSERT_EQ("0 new", readOurs(path, name)) << round;
    }
  }
}

}  // namespace
