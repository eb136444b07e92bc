#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>
#include <zrcommon/profile.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

#include "bench/contest.h"
#include "bench/profile_peers.h"
#include "bench/sweep_inputs.h"

namespace {

constexpr std::size_t kBlockBytes = 65536;

// Sections of 20 entries of 20 to 40 bytes, each section after a comment.
ProfileSample makeSample(const std::string& name, std::size_t size) {
  ProfileSample sample;
  sample.path = "/tmp/zrcommon-bench-" + name + ".ini";
  std::string text;
  for (int section = 0; text.size() < size; ++section) {
    sample.lastSection = "section" + std::to_string(10000 + section);
    if (text.size() < size / 2) sample.middleSection = sample.lastSection;
    text += "# settings of this part\n[" + sample.lastSection + "]\n";
    for (int key = 0; key < 20 && text.size() < size; ++key) {
      sample.lastKey = "setting" + std::to_string(10 + key);
      text += sample.lastKey + "=" + std::string(static_cast<std::size_t>(10 + key), 'v') + "\n";
    }
  }
  std::ofstream(sample.path) << text;
  return sample;
}

void must(bool ok) {
  if (!ok) std::abort();
}

void readOurs(const ProfileSample& sample, const std::string& section, const std::string& key) {
  char value[1025] = {};
  unsigned int error = 0;
  must(GetPrivateProfileString(section.c_str(), key.c_str(), "", value, sizeof value,
                               sample.path.c_str(), &error) == 0);
  benchmark::DoNotOptimize(value);
}

// Reads the file by blocks to its end; @p visit gets each.
template <typename Visit>
void readBare(const ProfileSample& sample, Visit visit) {
  static char block[kBlockBytes];
  const int fd = ::open(sample.path.c_str(), O_RDONLY | O_CLOEXEC);
  for (ssize_t got = 0; (got = ::read(fd, block, sizeof block)) > 0;)
    visit(block, static_cast<std::size_t>(got));
  ::close(fd);
}

void countLines(const char* block, std::size_t size) {
  std::size_t lines = 0;
  const char* const end = block + size;
  while (const void* lineFeed = std::memchr(block, '\n', static_cast<std::size_t>(end - block))) {
    block = static_cast<const char*>(lineFeed) + 1;
    ++lines;
  }
  benchmark::DoNotOptimize(lines);
}

void readLastBare(const ProfileSample& sample) {
  readBare(sample, [](const char* block, std::size_t) { benchmark::DoNotOptimize(block); });
}

void enterReading(const std::string& size, const ProfileSample& sample) {
  const char* const last = "read the last key";
  enter(last, size, "ours", [&] { readOurs(sample, sample.lastSection, sample.lastKey); });
  enterReadingPeers(last, size, sample);
  enter(last, size, "bare reads", [&] { readLastBare(sample); });
  enter(last, size, "bare reads and line ends", [&] { readBare(sample, countLines); });
  enter("read the first key", size, "ours", [&] { readOurs(sample, "section10000", "setting10"); });
}

// Profiles of lines as short as they can be, which inih alone of the peers reads.
void enterShortLines(const std::string& lines, std::string (*make)(std::size_t size)) {
  const std::string operation = "read the last key, 256 KiB";
  auto* const sample = new ProfileSample{"/tmp/zrcommon-bench-" + lines, "", "last", "key"};
  std::ofstream(sample->path) << make(256U << 10U);
  enter(operation, lines, "ours", [=] { readOurs(*sample, sample->lastSection, sample->lastKey); });
  enterReadingPeers(operation, lines, *sample, "inih");
}

void changeOurs(const ProfileSample& sample) {
  unsigned int error = 0;
  must(WritePrivateProfileString(sample.middleSection.c_str(), "setting19", "changed",
                                 sample.path.c_str(), &error) == 0);
}

void copyBare(const ProfileSample& sample) {
  const std::string copy = sample.path + ".tmp";
  const int fd = ::open(copy.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  readBare(sample, [fd](const char* block, std::size_t size) {
    must(::write(fd, block, size) == static_cast<ssize_t>(size));
  });
  ::close(fd);
  must(std::remove(sample.path.c_str()) == 0);
  must(std::rename(copy.c_str(), sample.path.c_str()) == 0);
}

void enterChanging(const std::string& size, const ProfileSample& sample) {
  const char* const change = "change in the middle";
  enter(change, size, "ours", [&] { changeOurs(sample); });
  enterChangingPeers(change, size, sample);
  enter(change, size, "bare copy and rename", [&] { copyBare(sample); });
}

}  // namespace

void replaceFile(const std::string& path, const char* text, std::size_t length) {
  const std::string copy = path + ".tmp";
  const int fd = ::open(copy.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  must(::write(fd, text, length) == static_cast<ssize_t>(length));
  ::close(fd);
  must(std::remove(path.c_str()) == 0);
  must(std::rename(copy.c_str(), path.c_str()) == 0);
}

void enterProfileRows() {
  enterFamily("Profiles");
  const std::pair<const char*, std::size_t> sizes[] = {
      {"1 KiB", 1U << 10U}, {"64 KiB", 64U << 10U}, {"1 MiB", 1U << 20U}};
  for (const auto& [name, size] : sizes) {
    const auto* sample = new ProfileSample(makeSample(std::to_string(size), size));
    enterReading(name, *sample);
    const auto* changed = new ProfileSample(makeSample(std::to_string(size) + "-changed", size));
    enterChanging(name, *changed);
  }
  enterShortLines("headers alone", headersAlone);
  enterShortLines("blank lines", blankLines);
  enterShortLines("one-byte comments", shortComments);
}
