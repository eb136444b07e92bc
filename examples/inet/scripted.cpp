// libinet.so that answers from a script, for what a real server can't be made to do.
//
// INET_SCRIPT names the script (script.h tells what it can say). With a script that is missing or
// wrong, every call fails and prints the errors to standard error.
// INET_RECORD names a file that gets one line for every call, and for loading and unloading. It
// shows the settings as text, if they are not zeros, and says when a handle is not zero.
#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iostream>

#include "examples/inet/inet.h"
#include "examples/inet/script.h"
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

struct Scripted {
  Scripted() { record("load"); }
  ~Scripted() { record("unload"); }

  bool isWrong() const {
    for (const std::string& error : script.errors())
      std::cerr << "inet_scripted: " << setting("INET_SCRIPT") << ": " << error << std::endl;
    return !script.errors().empty();
  }

  std::ifstream file{setting("INET_SCRIPT")};
  const InetScript script{file};
  std::size_t nextRead = 0;
};
Scripted scripted;

}  // namespace

int GetHeader(const char*, unsigned int dataSize, char*, std::size_t* headerSize) {
  record("header " + std::to_string(dataSize) + " into " + std::to_string(*headerSize));
  return scripted.isWrong() ? -1 : scripted.script.header;
}

int InetOpenFile(const char* url, tagZRINETCONFIG* config, void** handle) {
  record("open " + request(url, config) + (*handle ? " (the handle is not zero)" : ""));
  if (scripted.isWrong()) return 0;
  *handle = &scripted;
  return scripted.script.open;
}

int InetReadFile(void**, char* buffer, unsigned int size) {
  record("read " + std::to_string(size));
  if (scripted.nextRead == scripted.script.reads.size()) return 0;
  const InetScript::Answer& piece = scripted.script.reads[scripted.nextRead++];
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
  if (scripted.isWrong()) return -1;
  for (const InetScript::Answer& answer : scripted.script.presences)
    if (std::string(url).find(answer.text) != std::string::npos) return answer.number;
  return 0;
}
