#include <zrcommon/logging.h>

#include <cstdio>

int main() {
  CZRLogger logger("update.log", "product", "UPDATE");
  logger.WriteToLog(2, "%d files checked", 12);  // written: the trace mask is 3
  logger.WriteToLog(4, "not written");           // filtered before it is formatted
  g_dwCurrentTraceLevel__ |= 4;
  logger.WriteToLog(4, 100000, "%s", "written now; for long messages, with a buffer's size");

  WriteToLog("plain.log", "a plain line, for a log that components of every user share");
  WriteToLog("/no/such/directory/log", "lost");
  std::printf("why the last one was lost: %u\n", GetLastError());
  return 0;
}
