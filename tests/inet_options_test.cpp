#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zrcommon/logging.h>
#include <zrcommon/network.h>

#include <cerrno>
#include <cstring>

#include "support/child.h"
#include "support/files.h"
#include "support/guarded.h"

namespace {

constexpr char kInstalled[] = "/usr/lib/Valdrix/Valdrix/zrinet.opt";

tagInetSettings filledWith(unsigned char first) {
  tagInetSettings settings;
  for (unsigned char& byte : settings.bytes) byte = first++;
  return settings;
}

std::string bytesOf(const tagInetSettings& settings) {
  return {reinterpret_cast<const char*>(settings.bytes), sizeof settings.bytes};
}

TEST(InetOptions, SavedIntoNewAndExistingFiles) {
  tagInetSettings settings = filledWith(200);
  for (const std::string& before : {std::string(), std::string("short"), std::string(1000, 'o')}) {
    ScratchDirectory files;
    const std::string path = files / "opt";
    if (!before.empty()) putFile(path, before, 0600);
    EXPECT_EQ(1U, SaveInetOptions(path.c_str(), &settings));
    EXPECT_EQ(bytesOf(settings) + (before.size() > 788 ? before.substr(788) : ""), getFile(path));
    EXPECT_EQ(0666U, modeOf(path));
    tagInetSettings readBack = {};
    EXPECT_EQ(1U, ReadInetOptions(path.c_str(), &readBack));
    EXPECT_EQ(bytesOf(settings), bytesOf(readBack));
  }
}

TEST(InetOptions, EveryOpenWidensTheMode) {
  ScratchDirectory files;
  tagInetSettings settings = filledWith(1);
  const tagInetSettings before = settings;
  const struct {
    std::size_t size;
    unsigned int result;
  } rows[] = {{0, 4}, {787, 4}, {788, 1}, {1000, 1}};
  for (const auto& row : rows) {
    putFile(files / "opt", std::string(row.size, 'x'), 0400);
    EXPECT_EQ(row.result, ReadInetOptions((files / "opt").c_str(), &settings)) << row.size;
    EXPECT_EQ(row.result == 1 ? std::string(788, 'x') : bytesOf(before), bytesOf(settings));
    EXPECT_EQ(0666U, modeOf(files / "opt")) << row.size;
    settings = before;
  }
}

TEST(InetOptions, FailuresLeaveEverythingAlone) {
  ScratchDirectory files;
  tagInetSettings settings = filledWith(9);
  const std::string longest = files / std::string(255 - files.path().size() - 1, 'p');
  EXPECT_EQ(1U, SaveInetOptions(longest.c_str(), &settings));
  EXPECT_EQ(1U, ReadInetOptions(longest.c_str(), &settings));
  const std::string tooLong = longest + "p";
  putFile(tooLong, std::string(788, 'x'), 0600);
  EXPECT_EQ(2U, SaveInetOptions(tooLong.c_str(), &settings));
  EXPECT_EQ(2U, ReadInetOptions(tooLong.c_str(), &settings));
  EXPECT_EQ(0600U, modeOf(tooLong));
  EXPECT_EQ(2U, SaveInetOptions((files / "no/such").c_str(), &settings));
  EXPECT_EQ(2U, ReadInetOptions((files / "none").c_str(), &settings));
  EXPECT_EQ(4U, ReadInetOptions(files.path().c_str(), &settings));
  EXPECT_EQ(0U, SaveInetOptions(nullptr, &settings));
  EXPECT_EQ(0U, SaveInetOptions((files / "none").c_str(), nullptr));
  EXPECT_EQ(0U, ReadInetOptions(nullptr, &settings));
  EXPECT_EQ(0U, ReadInetOptions(longest.c_str(), nullptr));
  EXPECT_FALSE(isThere(files / "none"));
  EXPECT_EQ(bytesOf(filledWith(9)), bytesOf(settings));
}

TEST(InetOptions, AFileOfAnotherUserIsUnreadable) {
  ScratchDirectory files;
  putFile(files / "opt", std::string(788, 'x'), 0000);
  const Outcome outcome = runForked([&] {
    dropPrivileges();
    tagInetSettings settings = {};
    const unsigned int result = ReadInetOptions((files / "opt").c_str(), &settings);
    return static_cast<int>(result * 10 + (GetLastError() == EACCES ? 1 : 0));
  });
  EXPECT_EQ(31, outcome.status);
  EXPECT_EQ(0U, modeOf(files / "opt"));
}

// What cannot be opened for both ways is created anew, and so emptied first.
TEST(InetOptions, AWriteOnlyFileIsCreatedAnew) {
  ScratchDirectory files;
  putFile(files / "opt", std::string(1000, 'x'), 0200);
  const Outcome outcome = runForked([&] {
    dropPrivileges();
    tagInetSettings settings = filledWith(5);
    return static_cast<int>(SaveInetOptions((files / "opt").c_str(), &settings));
  });
  EXPECT_EQ(1, outcome.status);
  EXPECT_EQ(bytesOf(filledWith(5)), getFile(files / "opt"));
}

TEST(InetOptions, AFullDiskLosesTheFile) {
  const TinyFileSystem disk(4096);
  putFile(disk / "filler", std::string(4096, 'f'));
  tagInetSettings settings = filledWith(3);
  EXPECT_EQ(3U, SaveInetOptions((disk / "opt").c_str(), &settings));
  EXPECT_EQ(static_cast<unsigned int>(ENOSPC), GetLastError());
  EXPECT_FALSE(isThere(disk / "opt"));
}

TEST(InetOptions, ConfigIsZerosWithoutAWholeFile) {
  unsigned int error = 77;
  EXPECT_EQ(0U, ZRGetInetConfig(nullptr, &error));
  for (const std::size_t size : {0U, 787U, 788U}) {
    Guarded memory(sizeof(tagZRINETCONFIG));
    auto* const config = memory.data<tagZRINETCONFIG>();
    EXPECT_EQ(0U, ZRGetInetConfig(config, nullptr));
    EXPECT_EQ(std::string(786, '#'), memory.bytes());
    if (size) putFile(kInstalled, std::string(size, 'x'));
    EXPECT_EQ(1U, ZRGetInetConfig(config, &error));
    EXPECT_EQ(std::string(786, size == 788 ? 'x' : '\0'), memory.bytes()) << size;
  }
  EXPECT_EQ(77U, error);
  ::unlink(kInstalled);
}

}  // namespace
