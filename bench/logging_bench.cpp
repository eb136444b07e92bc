#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zrcommon/logging.h>

#include <cstdlib>
#include <string>

#include "bench/contest.h"
#include "bench/empty.h"

namespace {

const std::string kMessage(80, 'm');

// Each contestant has a log of its own.
class LogFile {
 public:
  explicit LogFile(const char* name) : path_(std::string("/tmp/zrcommon-bench-") + name) {
    ::unlink(path_.c_str());
    ::close(::open(path_.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
  }
  const char* path() const { return path_.c_str(); }

 private:
  std::string path_;
};

void mustWrite(int fd, const char* text, std::size_t length) {
  if (::write(fd, text, length) != static_cast<ssize_t>(length)) std::abort();
}

void bareClassWrite(const char* path) {
  benchmark::DoNotOptimize(::access(path, F_OK));
  const int fd = ::open(path, O_RDWR | O_CLOEXEC, 0600);
  benchmark::DoNotOptimize(::lseek(fd, 0, SEEK_END));
  mustWrite(fd, "BENCH", 5);
  mustWrite(fd, " ", 1);
  mustWrite(fd, kMessage.data(), kMessage.size());
  mustWrite(fd, "\r\n", 2);
  ::close(fd);
}

void barePlainWrite(const char* path) {
  benchmark::DoNotOptimize(::access(path, F_OK));
  const int fd = ::open(path, O_WRONLY | O_APPEND | O_CLOEXEC, 0600);
  mustWrite(fd, kMessage.data(), kMessage.size());
  mustWrite(fd, "\n", 1);
  ::close(fd);
  benchmark::DoNotOptimize(::chmod(path, 0666));
}

}  // namespace

void enterLoggingRows() {
  static const LogFile ours("ours");
  static const LogFile bare("bare");
  static CZRLogger logger(ours.path(), "bench", "BENCH");
  enterFamily("Logging");
  enter("CZRLogger::WriteToLog", "80 B", "ours",
        [] { logger.WriteToLog(1, "%s", kMessage.c_str()); });
  enter("CZRLogger::WriteToLog", "80 B", "bare calls", [] { bareClassWrite(bare.path()); });
  enter("WriteToLog", "80 B", "ours", [] { WriteToLog(ours.path(), kMessage.c_str()); });
  enter("WriteToLog", "80 B", "bare calls", [] { barePlainWrite(bare.path()); });
  enter("CZRLogger::WriteToLog", "filtered", "ours", [] { logger.WriteToLog(4, "x"); });
  enter("CZRLogger::WriteToLog", "filtered", "bare call", [] { emptyCall(&logger, 4, "x"); });
}
