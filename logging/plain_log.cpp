#include <fcntl.h>
#include <sys/stat.h>

#include <cstring>

#include "base/file.h"
#include "zrcommon/logging.h"

using namespace zrcommon;

void WriteToLog(const char* path, const char* text) {
  if (!path || !text) return;
  const int flags = exists(path) ? O_WRONLY | O_APPEND : O_WRONLY | O_CREAT;
  {
    const Fd file(openFile(path, flags, 0600));
    if (!file) return;
    writeOnce(file.get(), text, std::strlen(text));
    writeOnce(file.get(), "\n", 1);
  }
  // Kept: WriteToLog() gives the file mode 0666 after every write, whatever mode it had; CZRLogger
  // never changes a mode (test PlainLog.WidensTheModeOnEveryWrite)
  ::chmod(path, 0666);
}
