#include <zrcommon/system.h>

#include <cstdio>

int main() {
  char directory[260] = {};
  if (!GetModulePath(directory)) return 1;
  tagSYSTEMTIME now = {};
  if (!GetLocalTime(&now)) return 1;
  std::printf("in %s, %u-%02u-%02u\n", directory, now.wYear, now.wMonth, now.wDay);

  char name[64] = {};
  if (!GetUniqueFileName("/tmp", "upd", nullptr, name)) return 1;
  std::printf("%s is free\n", name);

  if (!ZRLoadLibrary("/no/such/module.so")) std::printf("not loaded, see /zrcommon.log\n");
  unsigned int error = 0;
  if (!HandleService("no-such-service", kServiceStatus, &error))
    std::printf("no such service, code %u\n", error);
  return error == 120 ? 0 : 1;
}
