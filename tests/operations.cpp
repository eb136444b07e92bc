#include "operations.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <zrcommon/logging.h>
#include <zrcommon/network.h>
#include <zrcommon/profile.h>
#include <zrcommon/system.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "support/files.h"

namespace {

constexpr char kFile[] = "/scratch/f";
constexpr char kOther[] = "/scratch/g";

void nothing() {}
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
  putFile(kFile, std::string(1000, 'o'), 0600);
}
void inetLibrary() {
  std::filesystem::copy_file(ZR_BUILD_DIR "/tests/libquiet_inet.so", kInstallation + "libinet.so");
  putFile(kInstallation + "zrinet.opt", std::string(788, 'o'), 0600);
}
// The entry that the connectivity check reads, as it is stored: each byte with its halves swapped.
void directory() {
  std::string record(524, '\0');
  record[0] = '\xC0';
  record.replace(4, 16,
                 "4\xF6\xE6\xE6V6G\x96\xF6\xE6\x02"
                 "4\x86V6\xB6");
  record.replace(264, 2, "\x16\xF2");
  putFile(kInstallation + "infoeml.dat", record);
}
void directoryAndLibrary() {
  directory();
  inetLibrary();
}
void features() {
  putFile(kInstallation + "zrfeature.dat", "0123456789a");
}
void service() {
  putFile(kServices + "service", "#!/bin/sh\necho run >/scratch/f\n", 0755);
}

}  // namespace

void Result::say(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text_, sizeof text_, format, arguments);
  va_end(arguments);
}

const std::vector<Operation>& operations() {
  static const std::vector<Operation> table = {
      {"CZRLogger::WriteToLog",
       smallFile,
       "done f '0123456789APP 77\r\n' 0600",
       {{"no memory", "done"},
        {"open-rw 1 fails", "done"},
        {"lseek 1 fails", "done f 'APP 77\r\n89' 0600"},
        {"write 1 fails", "done f '0123456789 77\r\n' 0600"},
        {"write 1 is short", "done f '0123456789A 77\r\n' 0600"},
        {"write 2 fails", "done f '0123456789APP77\r\n' 0600"},
        {"write 3 fails", "done f '0123456789APP ' 0600"},
        {"write 3 is short", "done f '0123456789APP 7' 0600"},
        {"write 4 fails", "done f '0123456789APP 77' 0600"},
        {"write 4 is short", "done f '0123456789APP 77\r' 0600"}},
       [](Result& result) {
         CZRLogger(kFile, "", "APP").WriteToLog(1, 100, "%d", 77);
         result.say("done");
       }},
      {"WriteToLog",
       smallFile,
       "done f '0123456789text\n' 0666",
       {{"access 1 fails", "done f 'text\n56789' 0666"},
        {"open-w 1 fails", "done"},
        {"write 1 fails", "done f '0123456789\n' 0666"},
        {"write 1 is short", "done f '0123456789t\n' 0666"},
        {"write 2 fails", "done f '0123456789text' 0666"},
        {"chmod 1 fails", "done f '0123456789text\n' 0600"}},
       [](Result& result) {
         WriteToLog(kFile, "text");
         result.say("done");
       }},
      {"GetPrivateProfileString",
       profile,
       "0 0 12",
       {{"open-r 1 fails", "-1 102 none"}, {"read 1 fails", "-1 204 none"}},
       [](Result& result) {
         char value[20] = {};
         unsigned int error = 9;
         const int got = GetPrivateProfileString("s", "key", "none", value, 19, kFile, &error);
         result.say("%d %u %s", got, error, value);
       }},
      {"WritePrivateProfileString",
       profile,
       "0 0 f '[s]\nkey=345\n[t]\n' 0644",
       {{"open-r 1 fails", "-1 102"},
        {"open-w 1 fails", "-1 102"},
        {"read 1 fails", "0 0 f '[s]\nkey=345\n' 0644"},
        {"write 1 fails", "0 0 f '' 0644"},
        {"rename 1 fails", "0 0 f.tmp '[s]\nkey=345\n[t]\n' 0644 no f"}},
       [](Result& result) {
         unsigned int error = 9;
         const int got = WritePrivateProfileString("s", "key", "345", kFile, &error);
         result.say("%d %u", got, error);
       }},
      {"SaveInetOptions",
       options,
       "1 f 1000 bytes 0666",
       {{"open-rw 1 fails", "1 f 788 bytes 0666"},
        {"write 1 fails", "3 no f"},
        {"write 1 is short", "3 no f"},
        {"chmod 1 fails", "1"}},
       [](Result& result) {
         tagInetSettings settings = {};
         result.say("%u", SaveInetOptions(kFile, &settings));
       }},
      {"ReadInetOptions",
       options,
       "1 o f 1000 bytes 0666",
       {{"access 1 fails", "2 -"},
        {"open-r 1 fails", "3 -"},
        {"read 1 fails", "4 - f 1000 bytes 0666"},
        {"read 1 is short", "4 - f 1000 bytes 0666"},
        {"chmod 1 fails", "1 o"}},
       [](Result& result) {
         tagInetSettings settings = {{'-'}};
         const unsigned int got = ReadInetOptions(kFile, &settings);
         result.say("%u %c", got, settings.bytes[0]);
       }},
      {"ZRSendDataAndGetResponse",
       inetLibrary,
       "1 4 0 body zrinet.opt 788 bytes 0666",
       {{"no memory", "0 9 0 - zrcommon.log 1 lines 0666"},
        {"access 1 fails", "1 4 0 body"},
        {"open-r 1 fails", "1 4 0 body"},
        {"chmod 1 fails", "1 4 0 body"}},
       [](Result& result) {
         char body[20] = "-";
         unsigned int length = 9;
         unsigned int error = 9;
         const auto got = ZRSendDataAndGetResponse("http://a", body, sizeof body, &length, &error);
         result.say("%u %u %u %s", got, length, error, body);
       }},
      {"CheckInternetConnection",
       directoryAndLibrary,
       "1 0 zrinet.opt 788 bytes 0666",
       {{"no memory", "0 140 zrcommon.log 1 lines 0666 zrinet.opt 788 bytes 0666"},
        {"open-r 1 fails", "0 0"},
        {"read 1 fails", "0 0"},
        {"read 1 is short", "0 0"},
        {"access 1 fails", "1 0"},
        {"open-r 2 fails", "1 0"},
        {"chmod 1 fails", "1 0"}},
       [](Result& result) {
         unsigned int error = 9;
         const unsigned int got = CheckInternetConnection(&error);
         result.say("%u %u", got, error);
       }},
      {"GetEthernetInterfacesDetails",
       nothing,
       "1 0 lo",
       {{"no memory", "1 0 -"}, {"socket 1 fails", "0 101 -"}, {"bind 1 fails", "0 101 -"}},
       [](Result& result) {
         std::vector<tagZR_ETHERNET_INTERFACES_INFO> links;
         unsigned int error = 9;
         const unsigned int got = GetEthernetInterfacesDetails(links, &error);
         result.say("%u %u %s", got, error, links.empty() ? "-" : links[0].name);
       }},
      {"ZRLoadLibrary",
       inetLibrary,
       "1",
       {{"no memory", "0 zrcommon.log 1 lines 0666"}},
       [](Result& result) {
         void* const module = ZRLoadLibrary("/usr/lib/Valdrix/Valdrix/libinet.so");
         result.say("%d", ZRGetProcAddress(module, "GetHeader") != nullptr);
         ZRFreeLibrary(module);
       }},
      {"ZRLoadLibrary of nothing there",
       nothing,
       "0 zrcommon.log 1 lines 0666",
       {{"open-w 1 fails", "0"},
        {"write 2 fails", "0 zrcommon.log 0 lines 0666"},
        {"chmod 1 fails", "0 zrcommon.log 1 lines 0600"}},
       [](Result& result) { result.say("%d", ZRLoadLibrary("/none") != nullptr); }},
      {"paths",
       smallFile,
       "1 1 1 1",
       {{"access 1 fails", "0 1 1 1"},
        {"readlink 1 fails", "1 0 1 1"},
        {"readlink 2 fails", "1 1 0 1"},
        {"access 2 fails", "1 1 1 0"}},
       [](Result& result) {
         char install[26], application[4096] = {}, module[260];
         const int got[] = {GetZrPath(install), GetAppPath(application, sizeof application),
                            GetModulePath(module), IsValidPath(kFile)};
         result.say("%d %d %d %d", got[0], got[1], got[2], got[3]);
       }},
      {"ZRCopyFile",
       twoFiles,
       "1 g '0123456789' 0640",
       {{"open-r 1 fails", "0"},
        {"open-rw 1 fails", "0"},
        {"read 1 fails", "1 g '' 0640"},
        {"write 1 fails", "0 g '' 0640"},
        {"write 1 is short", "0 g '0' 0640"}},
       [](Result& result) { result.say("%d", ZRCopyFile(kFile, kOther)); }},
      {"CopyFile",
       twoFiles,
       "1 g '0123456789' 0777",
       {{"open-r 1 fails", "0"},
        {"open-rw 1 fails", "0"},
        {"read 1 fails", "1 g '' 0777"},
        {"write 1 fails", "0 no g"},
        {"write 1 is short", "0 no g"},
        {"chmod 1 fails", "1 g '0123456789' 0640"}},
       [](Result& result) { result.say("%d", CopyFile(kFile, kOther)); }},
      {"SearchInFile",
       smallFile,
       "8",
       {{"lseek 1 fails", "-1"}, {"read 1 fails", "-1"}, {"read 1 is short", "-1"}},
       [](Result& result) {
         const auto file = static_cast<int>(::syscall(SYS_open, kFile, O_RDONLY));
         const auto* pattern = reinterpret_cast<const unsigned char*>("89");
         result.say("%lld", SearchInFile(file, pattern, 2, 0));
         ::syscall(SYS_close, file);
       }},
      {"HandleService",
       service,
       "1 0 f 'run\n' 0644",
       {{"access 2 fails", "0 120"}},
       [](Result& result) {
         unsigned int error = 9;
         const int got = HandleService("service", 1, &error);
         result.say("%d %u", got, error);
       }},
      {"GetZRFeaturesSetting",
       features,
       "1 0 01",
       {{"open-r 1 fails", "0 2 --"}, {"read 1 fails", "0 -1 --"}, {"read 1 is short", "0 0 0-"}},
       [](Result& result) {
         tagZR_FEATURE feature = {{'-', '-'}};
         unsigned int error = 9;
         const int got = GetZRFeaturesSetting(&feature, &error);
         result.say("%d %d %.2s", got, error > 2 ? -1 : static_cast<int>(error), feature.bytes);
       }},
  };
  return table;
}
