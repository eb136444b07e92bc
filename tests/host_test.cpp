// A host that is not position-independent, so that it holds copies of the library's variables, and
// that has functions of its own under names that the library exports.
#include <zrcommon/logging.h>
#include <zrcommon/profile.h>
#include <zrcommon/system.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>

namespace {

int callsToTheHost = 0;

bool holds(const char* path, const std::string& expected) {
  std::ifstream file(path, std::ios::binary);
  return expected == std::string(std::istreambuf_iterator<char>(file), {});
}

}  // namespace

char* Trim(char* text) {
  ++callsToTheHost;
  return text;
}
void WriteToLog(const char*, const char*) {
  ++callsToTheHost;
}

int main() {
  g_dwCurrentTraceLevel__ = 8;
  g_szLogFileName__ = "/scratch/log";
  CZRLogger("HOST").WriteToLog(8, "x");
  char header[] = "[ name ]";
  const bool isRight = std::strcmp("name", GetSectionName(header)) == 0 &&
                       !ZRLoadLibrary("/no/such.so") && callsToTheHost == 0 &&
                       holds("/scratch/log", "HOST x\r\n") &&
                       holds("/zrcommon.log", szErrMsg + std::string("\n"));
  if (!isRight) std::printf("%d calls to the host, message '%s'\n", callsToTheHost, szErrMsg);
  return isRight ? 0 : 1;
}
