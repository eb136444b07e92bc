// libinet.so that answers from a script, for what a real server can't be made to do.
//
// INET_SCRIPT names the script, one answer a line:
//   open N         what InetOpenFile returns (1)
//   header N       what GetHeader returns (0)
//   read N [TEXT]  what the next InetReadFile returns; the buffer is filled with TEXT over and
//   over,
//                  as far as both N and the size asked for go. In TEXT \r \n \0 \\ stand for those
//                  bytes. After the last line every read returns 0.
//   present N [TEXT]  what IsInternetFilePresent returns for an address that holds TEXT (for every
//                  address, if there is none); the first line that fits counts, and without one 0
// INET_RECORD names a file that gets one line for every call, and for loading and unloading. It
// shows the settings as text, if they are not zeros, and says when a handle is not zero.
#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "examples/inet/inet.h"
#include "zrcommon/network.h"

namespace {

std::string setting(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

void record(const std::string& line) {
  std::ofstream(setting("INET_RECORD"), std::ios::app) << line << '\n';
}

// The address with the settings that came with it.
std::string request(const char* url, const tagZRINETCONFIG* config) {
  const std::string settings(reinterpret_cast<const char*>(config->bytes), sizeof config->bytes);
  const std::string shown = settings.substr(0, settings.find('\0'));
  return std::string(url) + (shown.empty() ? "" : " with " + shown);
}

std::string unescaped(const std::string& text) {
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\' || i + 1 == text.size()) {
      bytes.push_back(text[i]);
      continue;
    }
    const char mark = text[++i];
    bytes.push_back(mark == 'r' ? '\r' : mark == 'n' ? '\n' : mark == '0' ? '\0' : mark);
  }
  return bytes;
}

struct Answer {
  int number;
  std::string text;
};

struct Script {
  int open = 1;
  int header = 0;
  std::vector<Answer> reads;
  std::vector<Answer> presences;
  std::size_t nextRead = 0;

  Script() {
    record("load");
    std::ifstream file(setting("INET_SCRIPT"));
    for (std::string line; std::getline(file, line);) take(line);
  }
  ~Script() { record("unload"); }

  void take(const std::string& line) {
    std::istringstream words(line);
    std::string what;
    int number = 0;
    std::string text;
    words >> what >> number;
    words.get();
    std::getline(words, text);
    if (what == "open") open = number;
    if (what == "header") header = number;
    if (what == "read") reads.push_back({number, unescaped(text.empty() ? "x" : text)});
    if (what == "present") presences.push_back({number, text});
  }
};
Script script;

}  // namespace

int GetHeader(const char*, unsigned int dataSize, char*, std::size_t* headerSize) {
  record("header " + std::to_string(dataSize) + " into " + std::to_string(*headerSize));
  return script.header;
}

int InetOpenFile(const char* url, tagZRINETCONFIG* config, void** handle) {
  record("open " + request(url, config) + (*handle ? " (the handle is not zero)" : ""));
  *handle = &script;
  return script.open;
}

int InetReadFile(void**, char* buffer, unsigned int size) {
  record("read " + std::to_string(size));
  if (script.nextRead == script.reads.size()) return 0;
  const Answer& piece = script.reads[script.nextRead++];
  const auto filled = static_cast<unsigned int>(std::max(piece.number, 0));
  for (unsigned int i = 0; i < std::min(filled, size); ++i)
    buffer[i] = piece.text[i % piece.text.size()];
  return piece.number;
}

int InetCloseFile(void**) {
  record("close");
  return 1;
}

int IsInternetFilePresent(const char* url, tagZRINETCONFIG* config) {
  record("present " + request(url, config));
  for (const Answer& answer : script.presences)
    if (std::string(url).find(answer.text) != std::string::npos) return answer.number;
  return 0;
}
