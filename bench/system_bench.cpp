#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <zrcommon/system.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

#include "bench/contest.h"

namespace {

using Byte = unsigned char;

constexpr std::size_t kTextBytes = std::size_t{1} << 20U;
constexpr std::size_t kFileBytes = std::size_t{64} << 20U;
constexpr std::size_t kCopyBytes = std::size_t{1} << 20U;
constexpr std::size_t kChunkBytes = 2048;
constexpr std::size_t kCopyChunkBytes = 1024;

void must(bool ok) {
  if (!ok) std::abort();
}

std::string repeat(const std::string& unit, std::size_t size) {
  must(!unit.empty());
  std::string text;
  while (text.size() < size) text += unit;
  text.resize(size);
  return text;
}

std::string randomBytes(std::size_t size, unsigned int kinds) {
  std::mt19937 random(7);
  std::string text(size, '\0');
  for (char& byte : text) byte = static_cast<char>('a' + random() % kinds);
  return text;
}

// English prose: a licence that is part of every Debian system.
std::string prose() {
  std::ifstream file("/usr/share/common-licenses/GPL-3");
  return repeat({std::istreambuf_iterator<char>(file), {}}, kTextBytes);
}

// A part of the text with one byte changed, so that it occurs nowhere.
std::string nearMiss(const std::string& text, std::size_t size, std::size_t place, char byte) {
  std::string pattern = text.substr(text.size() / 2 + 1, size);
  pattern[place] = byte;
  must(text.find(pattern) == std::string::npos);
  return pattern;
}

void enterSearch(const std::string& name, const std::string& text, const std::string& pattern) {
  const std::string row = "SearchFor in 1 MiB, " + name;
  const std::string size = std::to_string(pattern.size()) + " B";
  enter(row, size, "ours", [text, pattern] {
    must(SearchFor(reinterpret_cast<const Byte*>(text.data()), static_cast<int>(text.size()),
                   reinterpret_cast<const Byte*>(pattern.data()),
                   static_cast<int>(pattern.size())) == -1);
  });
  enter(row, size, "memmem", [text, pattern] {
    // memmem() is known to be pure, and would be called once for all rounds.
    benchmark::DoNotOptimize(text.data());
    benchmark::ClobberMemory();
    must(!::memmem(text.data(), text.size(), pattern.data(), pattern.size()));
  });
}

void enterSearches() {
  const std::string random = randomBytes(kTextBytes, 256);
  const std::string english = prose();
  const std::string run = repeat("a", kTextBytes);
  const std::string periodic = repeat("the quick brown fox jumps over the lazy dog ", kTextBytes);
  const std::string twoKinds = randomBytes(kTextBytes, 2);
  for (const std::size_t size : {4, 16, 64, 200}) {
    enterSearch("random bytes", random, nearMiss(random, size, size - 2, 'q'));
    enterSearch("English", english, nearMiss(english, size, size - 2, 'q'));
    enterSearch("a alone", run, nearMiss(run, size, size / 2, 'b'));
    enterSearch("periodic", periodic, nearMiss(periodic, size, size / 2, '#'));
    enterSearch("random a and b", twoKinds, nearMiss(twoKinds, size, size / 2, 'c'));
  }
}

std::string makeFile(const char* name, const std::string& content) {
  const std::string path = std::string("/tmp/zrcommon-bench-") + name;
  std::ofstream(path, std::ios::binary) << content;
  return path;
}

void bareSearch(int file, int overlap) {
  char chunk[kChunkBytes];
  must(::lseek(file, 0, SEEK_SET) == 0);
  ssize_t got = ::read(file, chunk, sizeof chunk);
  while (got > overlap) {
    must(::lseek(file, -overlap, SEEK_CUR) >= 0);
    got = ::read(file, chunk, sizeof chunk);
  }
}

void enterFileSearches() {
  const std::string path = makeFile("search", randomBytes(kFileBytes, 60));
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  ::unlink(path.c_str());
  for (const int size : {4, 16, 64, 200}) {
    const std::string pattern = repeat("#NOSUCHTEXT", static_cast<std::size_t>(size));
    const std::string row = "SearchInFile in 64 MiB";
    const std::string bytes = std::to_string(size) + " B";
    enter(row, bytes, "ours", [file, pattern, size] {
      must(SearchInFile(file, reinterpret_cast<const Byte*>(pattern.data()), size, 0) == -1);
    });
    enter(row, bytes, "bare calls", [file, size] { bareSearch(file, size + 5); });
  }
}

void bareCopy(const char* source, const char* target) {
  char chunk[kCopyChunkBytes];
  const int from = ::open(source, O_RDONLY | O_CLOEXEC);
  const int to = ::open(target, O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  for (ssize_t got = ::read(from, chunk, sizeof chunk); got > 0;
       got = ::read(from, chunk, sizeof chunk))
    must(::write(to, chunk, static_cast<std::size_t>(got)) == got);
  ::close(to);
  ::close(from);
}

void cp(std::string source, std::string target) {
  char name[] = "cp";
  char* arguments[] = {name, source.data(), target.data(), nullptr};
  pid_t child = -1;
  int status = -1;
  must(::posix_spawnp(&child, name, nullptr, nullptr, arguments, environ) == 0);
  must(::waitpid(child, &status, 0) == child && status == 0);
}

void enterCopies() {
  const std::string source = makeFile("copied", randomBytes(kCopyBytes, 256));
  const auto target = [](const char* name) {
    return std::string("/tmp/zrcommon-bench-to-") + name;
  };
  for (const auto& [row, copy] :
       {std::pair{"ZRCopyFile", ZRCopyFile}, std::pair{"CopyFile", CopyFile}}) {
    enter(row, "1 MiB", "ours",
          [=, copy = copy] { must(copy(source.c_str(), target("ours").c_str()) == 1); });
    enter(row, "1 MiB", "bare calls", [=] { bareCopy(source.c_str(), target("bare").c_str()); });
    enter(row, "1 MiB", "cp", [=] { cp(source, target("cp")); });
  }
}

}  // namespace

void enterSystemRows() {
  enterFamily("System");
  enterSearches();
  enterFileSearches();
  enterCopies();
}
