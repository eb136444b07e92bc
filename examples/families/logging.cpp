#include <zrcommon/logging.h>

#include <cstdio>

int main() {
  CZRLogger logger("update.log", "product", "UPDATE");
  logger.WriteToLog(2, "%d files checked", 12);  // written: the trace mask is 3
  logger.WriteToLog(4, "not written");           // filtered before it is formatted
  g_dwCurrentTraceLevel__ |= 4;
  logger.WriteToLog(4, 100000, "%s", "written now; the second argument sizes the buffer");

  WriteToLog("plain.log", "a line without a component name");
  WriteToLog("/no/such/directory/log", "not written");
  std::printf("the last line was not written, errno %u\n", GetLastError());
  return 0;
}
