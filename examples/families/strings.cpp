#include <zrcommon/strings.h>

#include <cstdio>

int main() {
  unsigned short wide[32] = {};
  CopySZToWSZ(wide, "Update");
  CatSZToWSZ(wide, " list");
  char narrow[32] = {};
  CopyWSZToSZ(narrow, my_wcsupr(wide));
  std::printf("%s, %u units\n", narrow, my_wcslen(wide));

  char text[] = "  trimmed  ";
  std::printf("[%s]\n", TrimLeft(TrimRight(text)));
  return my_stricmp(narrow, "update LIST") == 0 ? 0 : 1;
}
