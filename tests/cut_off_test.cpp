// Writers of profiles that are ended half-way, and what the tool makes of it.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <zrcommon/profile.h>

#include <csignal>
#include <cstdio>

#include "support/child.h"
#include "support/files.h"
#include "support/syscalls.h"

namespace {

const std::string kProfile = "/scratch/p";
const std::string kCopy = kProfile + ".tmp";

void write() {
  unsigned int error = 0;
  WritePrivateProfileString("s", "key", "a new value", kProfile.c_str(), &error);
}

int recover(bool discard = false) {
  std::vector<std::string> command = {ZR_BUILD_DIR "/zrtool", "profile", "recover", kProfile};
  if (discard) command.emplace_back("--discard");
  return run(command).status;
}

void putFiles(const std::string& profile, const std::string& copy) {
  std::remove(kProfile.c_str());
  std::remove(kCopy.c_str());
  if (!profile.empty()) putFile(kProfile, profile);
  if (!copy.empty()) putFile(kCopy, copy);
}

// The state that a writer leaves which is ended in front of one of its calls.
std::string recoverFrom(const std::string& before, const std::string& after, std::size_t call) {
  putFiles(before, "");
  EXPECT_EQ(SIGKILL, trace(write, {{call, {Fault::kKills, 0}}}).signal);
  const bool hasCopy = isThere(kCopy);
  if (isThere(kProfile)) {
    EXPECT_TRUE(getFile(kProfile) == before);
    EXPECT_EQ(hasCopy ? 1 : 0, recover());
    EXPECT_EQ(0, recover(true));
    EXPECT_TRUE(getFile(kProfile) == before && !isThere(kCopy));
    return hasCopy ? "both " : "old ";
  }
  EXPECT_TRUE(getFile(kCopy) == after);
  EXPECT_EQ(0, recover());
  EXPECT_TRUE(getFile(kProfile) == after && !isThere(kCopy));
  return "copy ";
}

// The states one after the other, each named once.
std::string statesOf(const std::string& before) {
  putFiles(before, "");
  const std::size_t calls = trace(write).calls.size();
  const std::string after = getFile(kProfile);
  EXPECT_NE(before, after);
  std::printf("%zu cuts\n", calls);
  std::string states;
  for (std::size_t call = 0; call < calls; ++call) {
    const std::string state = recoverFrom(before, after, call);
    if (states.size() < state.size() || states.substr(states.size() - state.size()) != state)
      states += state;
  }
  return states;
}

TEST(CutOff, TheOldProfileOrTheNewOneIsWhole) {
  std::string large = "[a]\n";
  while (large.size() < 100000) large += "entry = 0123456789\n";
  for (const std::string& before :
       {std::string("[s]\nkey=1\n"), large + "[s]\n key=1\n" + large, "[s]\nkey=1\n" + large})
    EXPECT_EQ("old both copy ", statesOf(before));
}

TEST(CutOff, TheToolTouchesNothingElse) {
  putFiles("", "");
  EXPECT_EQ(1, recover());
  putFiles("[s]\n", "");
  EXPECT_EQ(0, recover(true));
  putFile(kCopy, "");
  ASSERT_EQ(0, ::remove(kProfile.c_str()));
  EXPECT_EQ(1, recover(true)) << "an empty copy";
  ASSERT_EQ(0, ::remove(kCopy.c_str()));
  ASSERT_EQ(0, ::mkdir(kCopy.c_str(), 0700));
  EXPECT_EQ(1, recover(true)) << "a directory instead of the copy";
  putFile(kProfile, "[s]\n");
  EXPECT_EQ(1, recover(true));
  EXPECT_TRUE(isThere(kCopy) && getFile(kProfile) == "[s]\n");
}

TEST(CutOff, TheDoctorSeesWhatIsLeft) {
  const std::string place = "/usr/lib/Valdrix/Valdrix/";
  putFile(place + "a", "");
  putFile(place + "a.tmp", "");
  putFile(place + "b.tmp", "");
  const std::string out = run({ZR_BUILD_DIR "/zrtool", "doctor"}).out;
  EXPECT_NE(out.npos, out.find("note     temporary file " + place + "a.tmp"));
  EXPECT_NE(out.npos, out.find("PROBLEM  temporary file " + place + "b.tmp"));
  for (const char* name : {"a", "a.tmp", "b.tmp"}) std::remove((place + name).c_str());
}

}  // namespace
