#include "profile/line.h"

#include <strings.h>

#include <cstdio>
#include <cstring>

#include "base/blank.h"
#include "zrcommon/profile.h"

using namespace zrcommon;

char* Trim(char* text) {
  if (!text) return nullptr;
  while (isBlank(*text)) *text++ = '\0';
  if (*text) text[trimmedRight(text).size()] = '\0';
  return text;
}

char* GetSectionName(char* line) {
  if (!line || !*line) return nullptr;
  *line = '\0';
  char* const name = line + 1;
  char* const end = std::strchr(name, ']');
  if (!end) return nullptr;
  *end = '\0';
  return Trim(name);
}

int CompareKey(char* line, const char* key) {
  if (!line || !key) return -1;
  if (char* const equals = std::strchr(line, '=')) {
    const std::size_t length = keyOf(line).size();
    *equals = '\0';
    line[length] = '\0';
  }
  return ::strcasecmp(line, key) == 0 ? 0 : -1;
}

void WriteToFile(char* line, FILE* stream) {
  if (!line || !stream) return;
  const std::size_t length = std::strlen(line);
  line[length] = '\n';
  line[length + 1] = '\0';
  (void)std::fwrite(line, 1, length + 1, stream);
}
