#include "support/operations.h"

#include <fcntl.h>
#include <unistd.h>
#include <zrcommon/logging.h>
#include <zrcommon/network.h>
#include <zrcommon/profile.h>
#include <zrcommon/system.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "support/files.h"

namespace {

namespace fs = std::filesystem;

constexpr char kFile[] = "/scratch/f";
constexpr char kOther[] = "/scratch/g";
const std::string kInstalled = "/usr/lib/Valdrix/Valdrix/";
const std::string kService = "/etc/init.d/service";

void smallFile() {
  putFile(kFile, "0123456789", 0600);
}
void twoFiles() {
  smallFile();
  putFile(kOther, "an older target", 0640);
}
void profile() {
  putFile(kFile, "[s]\nkey=12\n[t]\n", 0600);
}
void options() {
  putFile(kFile, std::string(788, 'o'), 0600);
}
void inetLibrary() {
  fs::copy_file(ZR_BUILD_DIR "/tests/libquiet_inet.so", kInstalled + "libinet.so");
  putFile(kInstalled + "zrinet.opt", std::string(788, 'o'), 0600);
}
// One record of the server directory, each byte with its halves swapped.
void directory() {
  std::string record(524, '\0');
  record[0] = 12;
  record.replace(4, 16, "Connection Check");
  record.replace(264, 9, "http://a/");
  for (char& each : record) {
    const auto byte = static_cast<unsigned char>(each);
    each = static_cast<char>(byte % 16 * 16 + byte / 16);
  }
  putFile(kInstalled + "infoeml.dat", record);
}
void directoryAndInet() {
  directory();
  inetLibrary();
}
void features() {
  putFile(kInstalled + "zrfeature.dat", "0123456789a");
}
void service() {
  putFile(kService, "#!/bin/sh\necho run >> /scratch/f\n", 0755);
}

void logLine(Result& result) {
  CZRLogger(kFile, nullptr, "APP").WriteToLog(1, "%d", 77);
  result.say("done");
}
void logLongLine(Result& result) {
  CZRLogger(kFile, nullptr, "APP").WriteToLog(1, 100, "%d", 77);
  result.say("done");
}
void logUnfiltered(Result& result) {
  CZRLogger(kFile, nullptr, "APP").WriteToFile("77");
  result.say("done");
}
void logPlainly(Result& result) {
  WriteToLog(kFile, "text");
  result.say("done");
}
void readText(Result& result) {
  char value[20] = {};
  unsigned int error = 9;
  const int found = GetPrivateProfileString("s", "key", "none", value, 19, kFile, &error);
  result.say("%d %u %s", found, error, value);
}
void readNumber(Result& result) {
  unsigned int error = 9;
  const int value = GetPrivateProfileInt("s", "key", -7, kFile, &error);
  result.say("%d %u", value, error);
}
void writeEntry(Result& result) {
  unsigned int error = 9;
  const int written = WritePrivateProfileString("s", "key", "345", kFile, &error);
  result.say("%d %u", written, error);
}
void writeLine(Result& result) {
  char line[10] = "line";
  std::FILE* const stream = std::fopen(kFile, "we");
  if (!stream) return result.say("no stream");
  std::setbuf(stream, nullptr);
  WriteToFile(line, stream);
  result.say("%d", std::ferror(stream) != 0);
  std::fclose(stream);
}
void saveOptions(Result& result) {
  tagInetSettings settings = {};
  result.say("%u", SaveInetOptions(kFile, &settings));
}
void readOptions(Result& result) {
  tagInetSettings settings = {{'-'}};
  const unsigned int read = ReadInetOptions(kFile, &settings);
  result.say("%u %c", read, settings.bytes[0]);
}
void getConfig(Result& result) {
  tagZRINETCONFIG config = {{'-'}};
  unsigned int error = 9;
  const unsigned int got = ZRGetInetConfig(&config, &error);
  result.say("%u %u %d", got, error, config.bytes[0]);
}
void fetch(Result& result) {
  char body[20] = "-";
  unsigned int received = 9;
  unsigned int error = 9;
  const unsigned int got =
      ZRSendDataAndGetResponse("http://a/", body, sizeof body, &received, &error);
  result.say("%u %u %u %s", got, received, error, body);
}
void fetchSimply(Result& result) {
  char body[20] = "-";
  result.say("%u %s", SendDataAndGetResponse("http://a/", body, sizeof body), body);
}
void askForFile(Result& result) {
  result.say("%u", ZRIsInternetConnectionOn("http://a/"));
}
void checkConnection(Result& result) {
  unsigned int error = 9;
  const unsigned int connected = CheckInternetConnection(&error);
  result.say("%u %u", connected, error);
}
void listInterfaces(Result& result) {
  std::vector<tagZR_ETHERNET_INTERFACES_INFO> interfaces;
  unsigned int error = 9;
  const unsigned int listed = GetEthernetInterfacesDetails(interfaces, &error);
  const bool hasLoopback = !interfaces.empty() && std::strcmp(interfaces[0].name, "lo") == 0;
  result.say("%u %u %s", listed, error, hasLoopback ? "lo" : "-");
}
void listAddresses(Result& result) {
  tagZR_MACADDR_INFO info = {};
  unsigned int error = 9;
  const unsigned int listed = GetFormattedMACAddress(&info, &error);
  result.say("%u %u", listed, error);
}
void lookUp(Result& result) {
  char value[20] = "-";
  const unsigned int found = GetValueFromInfoEml(12, "Connection Check", value, sizeof value);
  result.say("%u %s", found, value);
}
void loadModule(Result& result) {
  void* const module = ZRLoadLibrary("/usr/lib/Valdrix/Valdrix/libinet.so");
  result.say("%d", ZRGetProcAddress(module, "GetHeader") != nullptr);
  ZRFreeLibrary(module);
}
void loadNothing(Result& result) {
  result.say("%d", ZRLoadLibrary(nullptr) != nullptr);
}
void installPath(Result& result) {
  char path[260] = "-";
  const int got = GetZrPath(path);
  result.say("%d %s", got, path);
}
bool isWhole(const char* path) {
  return path[0] == '/' && path[std::strlen(path) - 1] == '/';
}
void appPath(Result& result) {
  char path[4096] = {};
  const int got = GetAppPath(path, sizeof path);
  result.say("%d %d", got, isWhole(path));
}
void modulePath(Result& result) {
  char path[260] = "-";
  const int got = GetModulePath(path);
  result.say("%d %d", got, isWhole(path));
}
void validPath(Result& result) {
  result.say("%d", IsValidPath(kFile));
}
void copyKeepingMode(Result& result) {
  result.say("%d", ZRCopyFile(kFile, kOther));
}
void copyWideningMode(Result& result) {
  result.say("%d", CopyFile(kFile, kOther));
}
void uniqueName(Result& result) {
  char name[20] = {};
  const int made = GetUniqueFileName("/scratch", "upd", "new", name);
  result.say("%d %zu", made, std::strlen(name));
}
void searchFile(Result& result) {
  const int file = ::open(kFile, O_RDONLY | O_CLOEXEC);
  const auto* pattern = reinterpret_cast<const unsigned char*>("89");
  const long long found = SearchInFile(file, pattern, 2, 0);
  const int reason = errno;
  if (file >= 0) ::close(file);
  errno = reason;
  result.say("%lld", found);
}
void handleService(Result& result) {
  unsigned int error = 9;
  const int handled = HandleService("service", 1, &error);
  result.say("%d %u", handled, error);
}
void localTime(Result& result) {
  tagSYSTEMTIME time = {};
  const int got = GetLocalTime(&time);
  result.say("%d %d", got, time.wYear > 2000);
}
void readFeatures(Result& result) {
  tagZR_FEATURE feature = {{'-', '-'}};
  unsigned int error = 9;
  const int got = GetZRFeaturesSetting(&feature, &error);
  result.say("%d %s%.2s", got, error > 2 ? "errno " : error == 2 ? "2 " : "0 ", feature.bytes);
}

}  // namespace

void Result::say(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text_, sizeof text_, format, arguments);
  va_end(arguments);
}

const std::vector<Operation>& systemOperations() {
  static const std::vector<Operation> operations = {
      {"CZRLogger::WriteToLog into a new file", logLine},
      {"CZRLogger::WriteToLog", logLine, smallFile},
      {"CZRLogger::WriteToLog with a buffer size", logLongLine, smallFile},
      {"CZRLogger::WriteToFile", logUnfiltered, smallFile},
      {"WriteToLog into a new file", logPlainly},
      {"WriteToLog", logPlainly, smallFile},
      {"GetPrivateProfileString", readText, profile},
      {"GetPrivateProfileInt", readNumber, profile},
      {"WritePrivateProfileString", writeEntry, profile},
      {"WriteToFile", writeLine, smallFile},
      {"SaveInetOptions into a new file", saveOptions},
      {"SaveInetOptions", saveOptions, options},
      {"ReadInetOptions", readOptions, options},
      {"ZRGetInetConfig", getConfig, inetLibrary},
      {"ZRSendDataAndGetResponse", fetch, inetLibrary},
      {"SendDataAndGetResponse", fetchSimply, inetLibrary},
      {"ZRIsInternetConnectionOn", askForFile, inetLibrary},
      {"CheckInternetConnection", checkConnection, directoryAndInet},
      {"GetEthernetInterfacesDetails", listInterfaces},
      {"GetFormattedMACAddress", listAddresses},
      {"GetValueFromInfoEml", lookUp, directory},
      {"ZRLoadLibrary", loadModule, inetLibrary},
      {"ZRLoadLibrary of nothing there", loadModule},
      {"ZRLoadLibrary of null", loadNothing},
      {"GetZrPath", installPath},
      {"GetAppPath", appPath},
      {"GetModulePath", modulePath},
      {"IsValidPath", validPath, smallFile},
      {"ZRCopyFile to a new target", copyKeepingMode, smallFile},
      {"ZRCopyFile", copyKeepingMode, twoFiles},
      {"CopyFile", copyWideningMode, twoFiles},
      {"GetUniqueFileName", uniqueName},
      {"SearchInFile", searchFile, smallFile},
      {"HandleService", handleService, service},
      {"GetLocalTime", localTime},
      {"GetZRFeaturesSetting", readFeatures, features},
  };
  return operations;
}
