#include "tools/progress.h"

#include <unistd.h>

#include <chrono>
#include <iostream>
#include <system_error>

Progress::Progress(std::string what, std::function<std::string()> howFar)
    : what_(std::move(what)), howFar_(std::move(howFar)) {
  if (!::isatty(STDERR_FILENO)) return;
  try {
    thread_ = std::thread([this] { run(); });
  } catch (const std::system_error&) {
    // The work itself needs no thread.
  }
}

Progress::~Progress() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    hasEnded_ = true;
  }
  ended_.notify_one();
  thread_.join();
}

void Progress::run() {
  constexpr char kWipe[] = "\r\033[K";
  std::unique_lock<std::mutex> lock(mutex_);
  int seconds = 0;
  while (!ended_.wait_for(lock, std::chrono::seconds(1), [this] { return hasEnded_; }))
    std::cerr << kWipe << what_ << " ... " << ++seconds << 's' << howFar_() << std::flush;
  if (seconds > 0) std::cerr << kWipe << std::flush;
}
