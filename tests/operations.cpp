#include "operations.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <zrcommon/logging.h>
#include <zrcommon/network.h>
#include <zrcommon/profile.h>
#include <zrcommon/system.h>

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
void features() {
  putFile(kInstallation + "zrfeature.dat", "0123456789a");
}
void service() {
  putFile(kServices + "service", "#!/bin/sh\necho run >/scratch/f\n", 0755);
}

}  // namespace

std::string Result::words() const {
  const std::string code = error == 9 ? "" : " code " + std::to_string(error);
  return std::to_string(value) + code + (text[0] == '-' ? "" : std::string(" ") + text);
}

namespace {

Operation row(const char* name, void (*prepare)(), const char* outcome, void (*call)(Result&),
              const std::map<std::string, std::string>& failures) {
  return {name, prepare, outcome, call, failures};
}

}  // namespace

const std::vector<Operation>& operations() {
  static const std::vector<Operation> table = {
      row("CZRLogger::WriteToLog", smallFile, "0 f '0123456789APP 77\r\n' 0600",
          [](Result&) { CZRLogger(kFile, "", "APP").WriteToLog(1, 100, "%d", 77); },
          {{"no memory", "0"},
           {"open-rw 1 fails", "0"},
           {"lseek 1 fails", "0 f 'APP 77\r\n89' 0600"},
           {"write 1 fails", "0 f '0123456789 77\r\n' 0600"},
           {"write 1 is short", "0 f '0123456789A 77\r\n' 0600"},
           {"write 2 fails", "0 f '0123456789APP77\r\n' 0600"},
           {"write 3 fails", "0 f '0123456789APP ' 0600"},
           {"write 3 is short", "0 f '0123456789APP 7' 0600"},
           {"write 4 fails", "0 f '0123456789APP 77' 0600"},
           {"write 4 is short", "0 f '0123456789APP 77\r' 0600"}}),
      row("WriteToLog", smallFile, "0 f '0123456789text\n' 0666",
          [](Result&) { WriteToLog(kFile, "text"); },
          {{"access 1 fails", "0 f 'text\n56789' 0666"},
           {"open-w 1 fails", "0"},
           {"write 1 fails", "0 f '0123456789\n' 0666"},
           {"write 1 is short", "0 f '0123456789t\n' 0666"},
           {"write 2 fails", "0 f '0123456789text' 0666"},
           {"chmod 1 fails", "0 f '0123456789text\n' 0600"}}),
      row("GetPrivateProfileString", profile, "0 code 0 12",
          [](Result& r) {
            r.value = GetPrivateProfileString("s", "key", "none", r.text, 19, kFile, &r.error);
          },
          {{"open-r 1 fails", "-1 code 102 none"}, {"read 1 fails", "-1 code 204 none"}}),
      row("WritePrivateProfileString", profile, "0 code 0 f '[s]\nkey=345\n[t]\n' 0644",
          [](Result& r) {
            r.value = WritePrivateProfileString("s", "key", "345", kFile, &r.error);
          },
          {{"open-r 1 fails", "-1 code 102"},
           {"open-w 1 fails", "-1 code 102"},
           {"read 1 fails", "0 code 0 f '[s]\nkey=345\n' 0644"},
           {"write 1 fails", "0 code 0 f '' 0644"},
           {"rename 1 fails", "0 code 0 f.tmp '[s]\nkey=345\n[t]\n' 0644 no f"}}),
      row("SaveInetOptions", options, "1 f 1000 bytes 0666",
          [](Result& r) {
            tagInetSettings settings = {};
            r.value = SaveInetOptions(kFile, &settings);
          },
          {{"open-rw 1 fails", "1 f 788 bytes 0666"},
           {"write 1 fails", "3 no f"},
           {"write 1 is short", "3 no f"},
           {"chmod 1 fails", "1"}}),
      row("ReadInetOptions", options, "1 f 1000 bytes 0666",
          [](Result& r) {
            tagInetSettings settings = {};
            r.value = ReadInetOptions(kFile, &settings);
          },
          {{"access 1 fails", "2"},
           {"open-r 1 fails", "3"},
           {"read 1 fails", "4 f 1000 bytes 0666"},
           {"read 1 is short", "4 f 1000 bytes 0666"},
           {"chmod 1 fails", "1"}}),
      row("ZRSendDataAndGetResponse", inetLibrary, "1 code 0 body zrinet.opt 788 bytes 0666",
          [](Result& r) {
            unsigned int length = 0;
            r.value = ZRSendDataAndGetResponse("http://a", r.text, 19, &length, &r.error);
          },
          {{"no memory", "0 code 0 zrcommon.log 1 lines 0666"},
           {"access 1 fails", "1 code 0 body"},
           {"open-r 1 fails", "1 code 0 body"},
           {"chmod 1 fails", "1 code 0 body"}}),
      row("GetEthernetInterfacesDetails", nothing, "1 code 0 lo",
          [](Result& r) {
            std::vector<tagZR_ETHERNET_INTERFACES_INFO> links;
            r.value = GetEthernetInterfacesDetails(links, &r.error);
            std::strcpy(r.text, links.empty() ? "-" : links[0].name);
          },
          {{"socket 1 fails", "0 code 101"}, {"bind 1 fails", "0 code 101"}}),
      row("ZRLoadLibrary of nothing there", nothing, "0 zrcommon.log 1 lines 0666",
          [](Result& r) { r.value = ZRLoadLibrary("/none") != nullptr; },
          {{"open-w 1 fails", "0"},
           {"write 2 fails", "0 zrcommon.log 0 lines 0666"},
           {"chmod 1 fails", "0 zrcommon.log 1 lines 0600"}}),
      row("GetZrPath", nothing, "1 /usr/lib/Valdrix/Valdrix/",
          [](Result& r) { r.value = GetZrPath(r.text); }, {{"access 1 fails", "0"}}),
      row("ZRCopyFile", twoFiles, "1 g '0123456789' 0640",
          [](Result& r) { r.value = ZRCopyFile(kFile, kOther); },
          {{"open-r 1 fails", "0"},
           {"open-rw 1 fails", "0"},
           {"read 1 fails", "1 g '' 0640"},
           {"write 1 fails", "0 g '' 0640"},
           {"write 1 is short", "0 g '0' 0640"}}),
      row("CopyFile", twoFiles, "1 g '0123456789' 0777",
          [](Result& r) { r.value = CopyFile(kFile, kOther); },
          {{"open-r 1 fails", "0"},
           {"open-rw 1 fails", "0"},
           {"read 1 fails", "1 g '' 0777"},
           {"write 1 fails", "0 no g"},
           {"write 1 is short", "0 no g"},
           {"chmod 1 fails", "1 g '0123456789' 0640"}}),
      row("SearchInFile", smallFile, "8",
          [](Result& r) {
            const auto file = static_cast<int>(::syscall(SYS_open, kFile, O_RDONLY));
            r.value = SearchInFile(file, reinterpret_cast<const unsigned char*>("89"), 2, 0);
            ::syscall(SYS_close, file);
          },
          {{"lseek 1 fails", "-1"}, {"read 1 fails", "-1"}, {"read 1 is short", "-1"}}),
      row("HandleService", service, "1 code 0 f 'run\n' 0644",
          [](Result& r) { r.value = HandleService("service", 1, &r.error); },
          {{"access 2 fails", "0 code 120"}}),
      row("GetZRFeaturesSetting", features, "1 code 0",
          [](Result& r) {
            tagZR_FEATURE feature = {};
            r.value = GetZRFeaturesSetting(&feature, &r.error);
            if (r.error > 2) r.error = 3;  // any errno
          },
          {{"open-r 1 fails", "0 code 2"},
           {"read 1 fails", "0 code 3"},
           {"read 1 is short", "0 code 0"}})};
  return table;
}
