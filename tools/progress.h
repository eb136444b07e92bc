#ifndef ZRCOMMON_TOOLS_PROGRESS_H
#define ZRCOMMON_TOOLS_PROGRESS_H

#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

/// A line such as "fetching ... 3s" for as long as the scope lasts, from its second second on, if
/// standard error is a terminal. It is wiped off at the end, before results are printed.
class Progress {
 public:
  /// @param howFar  asked each second, in a thread of its own; its text follows the time
  explicit Progress(
      std::string what, std::function<std::string()> howFar = [] { return ""; });
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

 private:
  void run();

  std::string what_;
  std::function<std::string()> howFar_;
  std::mutex mutex_;
  std::condition_variable ended_;
  bool hasEnded_ = false;
  std::thread thread_;
};

#endif  // ZRCOMMON_TOOLS_PROGRESS_H
