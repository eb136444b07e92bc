#include <zrcommon/logging.h>
#include <zrcommon/network.h>

#include "support/test.h"

namespace {

tagInetSettings filledWith(char first) {
  tagInetSettings settings;
  std::memset(settings.bytes, first, sizeof settings.bytes);
  settings.bytes[787] = 'e';
  return settings;
}

S bytesOf(const tagInetSettings& settings) {
  return {reinterpret_cast<const char*>(settings.bytes), sizeof settings.bytes};
}

}  // namespace

TEST(InetOptions, SavedIntoNewAndExistingFiles) {
  tagInetSettings settings = filledWith('s');
  for (const S& before : {""s, "short"s, S(1000, 'o')}) {
    const ScratchDirectory files;
    const S path = files / S(255 - files.path().size() - 1, 'p');
    if (!before.empty()) putFile(path, before, 0600);
    EXPECT_EQ(1U, SaveInetOptions(path.c_str(), &settings));
    EXPECT_EQ(bytesOf(settings) + (before.size() > 788 ? before.substr(788) : ""), getFile(path));
    EXPECT_EQ(0666U, modeOf(path));
  }
}

TEST(InetOptions, EveryOpenWidensTheMode) {
  const ScratchDirectory files;
  for (const auto& [size, result] :
       Rows<std::size_t, unsigned int>{{0, 4}, {787, 4}, {788, 1}, {1000, 1}}) {
    tagInetSettings settings = filledWith('s');
    putFile(files / "opt", S(size, 'x'), 0400);
    EXPECT_EQ(result, ReadInetOptions((files / "opt").c_str(), &settings)) << size;
    EXPECT_EQ(result == 1 ? S(788, 'x') : bytesOf(filledWith('s')), bytesOf(settings));
    EXPECT_EQ(0666U, modeOf(files / "opt")) << size;
  }
}

TEST(InetOptions, FailuresLeaveEverythingAlone) {
  const ScratchDirectory files;
  tagInetSettings settings = filledWith('s');
  const S tooLong = files / S(256 - files.path().size() - 1, 'p');
  putFile(tooLong, S(788, 'x'), 0600);
  EXPECT_EQ(2U, SaveInetOptions(tooLong.c_str(), &settings));
  EXPECT_EQ(2U, ReadInetOptions(tooLong.c_str(), &settings));
  EXPECT_EQ(0600U, modeOf(tooLong));
  EXPECT_EQ(2U, SaveInetOptions((files / "no/such").c_str(), &settings));
  EXPECT_EQ(2U, ReadInetOptions((files / "none").c_str(), &settings));
  EXPECT_EQ(4U, ReadInetOptions(files.path().c_str(), &settings));
  EXPECT_EQ(0U, SaveInetOptions(nullptr, &settings) + ReadInetOptions(nullptr, &settings) +
                    SaveInetOptions((files / "none").c_str(), nullptr) +
                    ReadInetOptions(files.path().c_str(), nullptr));
  EXPECT_FALSE(isThere(files / "none"));
  EXPECT_EQ(bytesOf(filledWith('s')), bytesOf(settings));
}

// What may only be written is created anew, and so emptied first.
TEST(InetOptions, FilesOfAnotherUser) {
  const ScratchDirectory files;
  const S path = files / "opt";
  putFile(path, S(1000, 'x'), 0200);
  const Outcome outcome = runForked([&] {
    dropPrivileges();
    tagInetSettings settings = filledWith('s');
    if (ReadInetOptions(path.c_str(), &settings) != 3 || GetLastError() != EACCES) return 1;
    return modeOf(path) == 0200 && SaveInetOptions(path.c_str(), &settings) == 1 ? 0 : 2;
  });
  EXPECT_EQ(0, outcome.status);
  EXPECT_EQ(bytesOf(filledWith('s')), getFile(path));
}

TEST(InetOptions, AFullDiskLosesTheFile) {
  const TinyFileSystem disk(4096);
  putFile(disk / "filler", S(4096, 'f'));
  tagInetSettings settings = filledWith('s');
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
    EXPECT_EQ(S(786, '#'), memory.bytes());
    if (size) putFile(kInstallation + "zrinet.opt", S(size, 'x'));
    EXPECT_EQ(1U, ZRGetInetConfig(config, &error));
    EXPECT_EQ(S(786, size == 788 ? 'x' : '\0'), memory.bytes()) << size;
  }
  EXPECT_EQ(77U, error);
  std::filesystem::remove(kInstallation + "zrinet.opt");
}
