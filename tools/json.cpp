#include "tools/json.h"

#include <cstdio>
#include <iostream>

std::string jsonText(const std::string& text) {
  std::string json = "\"";
  for (const char each : text) {
    const auto byte = static_cast<unsigned char>(each);
    char escape[8] = {each};
    if (byte < 0x20 || byte > 0x7E || each == '"' || each == '\\')
      (void)std::snprintf(escape, sizeof escape, "\\u%04x", unsigned{byte});
    json += escape;
  }
  return json + '"';
}

void printJson(const JsonObject& object) {
  std::cout << object.text() << '\n';
}

void printJson(const std::vector<JsonObject>& objects) {
  const char* separator = "[\n  ";
  for (const JsonObject& object : objects) {
    std::cout << separator << object.text();
    separator = ",\n  ";
  }
  std::cout << (objects.empty() ? "[" : "\n") << "]\n";
}
