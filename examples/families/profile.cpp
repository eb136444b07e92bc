#include <zrcommon/profile.h>

#include <cstdio>

int main() {
  if (std::FILE* file = std::fopen("update.ini", "w")) {
    std::fputs("[Update]\nHost = update.example.com\n", file);
    std::fclose(file);
  }
  unsigned int error = 0;
  char host[256] = {};  // zeros, since the last byte is never written
  if (GetPrivateProfileString("update", "host", "localhost", host, sizeof host, "update.ini",
                              &error) != 0)
    std::printf("the host was not found, code %u\n", error);
  const int port = GetPrivateProfileInt("update", "port", 80, "update.ini", &error);
  std::printf("%s:%d (code %u: there is no port in the file, this is the default)\n", host, port,
              error);

  if (WritePrivateProfileString("update", "Port", "8080", "update.ini", &error) != 0) return 1;
  return GetPrivateProfileInt("update", "port", 80, "update.ini", &error) == 8080 ? 0 : 1;
}
