// The operations that work on the caller's memory alone.
#include <linux/rtnetlink.h>
#include <zrcommon/codecs.h>
#include <zrcommon/logging.h>
#include <zrcommon/network.h>
#include <zrcommon/profile.h>
#include <zrcommon/strings.h>
#include <zrcommon/system.h>

#include <cstring>

#include "support/operations.h"

namespace {

using Unit = unsigned short;

const Unit kWide[] = {'a', 'B', 0x141, 0};
const Unit kPart[] = {'B', 0};

// Buffers that the call may change.
struct Text {
  explicit Text(const char* text) { std::strcpy(bytes, text); }
  char bytes[64] = {};
};
struct WideText {
  Unit units[16] = {'w', 'I', 'd', 'e', 0};
};

void printLink(Result& result) {
  struct {
    nlmsghdr header = {};
    ifinfomsg link = {};
    rtattr attribute = {};
    char name[4] = "eth";
  } message;
  message.header.nlmsg_len = sizeof message;
  message.attribute = {sizeof(rtattr) + sizeof message.name, IFLA_IFNAME};
  std::vector<tagZR_ETHERNET_INTERFACES_INFO> interfaces;
  rtnl_print_link(&message.header, interfaces);
  result.say("%s", interfaces.at(0).name);
}

void convertTime(Result& result) {
  const tagSYSTEMTIME time = {2026, 11, 0, 22, 23, 59, 58, 999};
  struct tm broken = {};
  tagSYSTEMTIME back = {};
  TmToSystemTime(SystemTimeToTm(&time, &broken), &back);
  result.say("%d %d", back.wYear, back.wMilliseconds);
}

void convertString(Result& result) {
  Text text("secret");
  CPHPOperations operations("key");
  operations.ConvertToSecureString(text.bytes, sizeof text.bytes);
  operations.ConvertToPlainString(text.bytes, sizeof text.bytes);
  result.say("%s", text.bytes);
}

void convertPair(Result& result) {
  Text text("");
  CPHPOperations("key").ConvertToSecureKeyValuePair("name", "value", text.bytes, sizeof text.bytes);
  result.say("%s", text.bytes);
}

void convertCommand(Result& result) {
  char command[200] = "http://a/?name=value&x=y";
  CPHPOperations operations("key");
  const bool there = operations.ConvertToSecurePhpCommand(command, sizeof command);
  const bool back = operations.ConvertToPlainPhpCommand(command, sizeof command);
  result.say("%d %d %d %s", there, back, operations.TransformPhpCommand(command, 0, 1), command);
}

void removeCharacter(Result& result) {
  std::string text = "a long text that lies on the heap";
  RemoveCharFromString(&text, ' ');
  result.say("%s", text.c_str());
}

Text swapped(void (*scramble)(unsigned char*, int)) {
  Text text("abc");
  scramble(reinterpret_cast<unsigned char*>(text.bytes), 3);
  return text;
}

void searchBytes(Result& result) {
  const auto* buffer = reinterpret_cast<const unsigned char*>("find it here");
  result.say("%d", SearchFor(buffer, 12, buffer + 5, 2));
}

}  // namespace

const std::vector<Operation>& pureOperations() {
  static const std::vector<Operation> operations = {
      {"GetLastError", [](Result& r) { r.say("%d", GetLastError() < 4096); }},
      {"CZRLogger::CZRLogger", [](Result&) { CZRLogger logger("C"); }},
      {"CZRLogger::SetLogVariables",
       [](Result&) { CZRLogger("/f", "A", "C").SetLogVariables(nullptr, "B", nullptr); }},
      {"rtnl_print_link", printLink},
      {"Trim", [](Result& r) { r.say("%s", Trim(Text(" a b ").bytes)); }},
      {"GetSectionName", [](Result& r) { r.say("%s", GetSectionName(Text("[ a ]").bytes)); }},
      {"CompareKey", [](Result& r) { r.say("%d", CompareKey(Text("Key = 1").bytes, "kEY")); }},

      {"my_strlen", [](Result& r) { r.say("%u", my_strlen("abc")); }},
      {"My_StrLwr", [](Result& r) { r.say("%s", My_StrLwr(Text("aB1").bytes)); }},
      {"My_StrUpr", [](Result& r) { r.say("%s", My_StrUpr(Text("aB1").bytes)); }},
      {"my_strupr", [](Result& r) { r.say("%s", my_strupr(Text("aB1").bytes)); }},
      {"strUpr", [](Result& r) { r.say("%d", strUpr(Text("aB1").bytes, 3)); }},
      {"my_stricmp", [](Result& r) { r.say("%d", my_stricmp("abc", "ABD")); }},
      {"my_strnicmp", [](Result& r) { r.say("%d", my_strnicmp("abc", "ABD", 2)); }},
      {"my_strstr", [](Result& r) { r.say("%s", my_strstr("find it here", "it")); }},
      {"my_strrev", [](Result& r) { r.say("%s", my_strrev(Text("abc").bytes)); }},
      {"TrimRight", [](Result& r) { r.say("%s", TrimRight(Text(" a ").bytes)); }},
      {"TrimLeft", [](Result& r) { r.say("%s", TrimLeft(Text(" a ").bytes)); }},
      {"RemoveCharFromString", removeCharacter},
      {"ConvertToWideChar",
       [](Result& r) { r.say("%d", ConvertToWideChar("a", WideText().units, 16)); }},
      {"ConvertToMultiByte",
       [](Result& r) { r.say("%d", ConvertToMultiByte(kWide, Text("").bytes, 64)); }},

      {"my_wcslen", [](Result& r) { r.say("%u", my_wcslen(kWide)); }},
      {"my_wcscpy", [](Result& r) { r.say("%x", my_wcscpy(WideText().units, kWide)[2]); }},
      {"my_wcscat", [](Result& r) { r.say("%x", my_wcscat(WideText().units, kWide)[6]); }},
      {"my_wcsncpy", [](Result& r) { r.say("%x", my_wcsncpy(WideText().units, kWide, 2)[1]); }},
      {"my_wcsncat", [](Result& r) { r.say("%x", my_wcsncat(WideText().units, kWide, 2)[4]); }},
      {"my_wcscmp", [](Result& r) { r.say("%d", my_wcscmp(kWide, kPart)); }},
      {"my_wcsncmp", [](Result& r) { r.say("%d", my_wcsncmp(kWide, kPart, 1)); }},
      {"my_wcsicmp", [](Result& r) { r.say("%d", my_wcsicmp(kWide, kPart)); }},
      {"my_wcsnicmp", [](Result& r) { r.say("%d", my_wcsnicmp(kWide, kPart, 1)); }},
      {"my_wcscscmp", [](Result& r) { r.say("%d", my_wcscscmp(kWide, "a")); }},
      {"my_wcschr", [](Result& r) { r.say("%td", my_wcschr(kWide, 'B') - kWide); }},
      {"my_wcsrchr", [](Result& r) { r.say("%td", my_wcsrchr(kWide, 'B') - kWide); }},
      {"my_wcsstr", [](Result& r) { r.say("%td", my_wcsstr(kWide, kPart) - kWide); }},
      {"my_wcsrev", [](Result& r) { r.say("%c", my_wcsrev(WideText().units)[0]); }},
      {"my_wcslwr", [](Result& r) { r.say("%c", my_wcslwr(WideText().units)[1]); }},
      {"my_wcsupr", [](Result& r) { r.say("%c", my_wcsupr(WideText().units)[0]); }},
      {"my_wcsset", [](Result& r) { r.say("%c", my_wcsset(WideText().units, 'x')[3]); }},
      {"my_wcsnset", [](Result& r) { r.say("%c", my_wcsnset(WideText().units, 'x', 2)[1]); }},
      {"my_wmemchr", [](Result& r) { r.say("%td", my_wmemchr(kWide, 'B', 4) - kWide); }},
      {"my_wmemcmp", [](Result& r) { r.say("%d", my_wmemcmp(kWide, kPart, 2)); }},
      {"my_wmemcpy", [](Result& r) { r.say("%x", my_wmemcpy(WideText().units, kWide, 3)[2]); }},
      {"my_wmemmove", [](Result& r) { r.say("%x", my_wmemmove(WideText().units, kWide, 3)[2]); }},
      {"my_wmemset", [](Result& r) { r.say("%c", my_wmemset(WideText().units, 'x', 3)[2]); }},
      {"CopySZToWSZ", [](Result& r) { r.say("%x", CopySZToWSZ(WideText().units, "\xE9")[0]); }},
      {"CatSZToWSZ", [](Result& r) { r.say("%x", CatSZToWSZ(WideText().units, "\xE9")[4]); }},
      {"CopyWSZToSZ", [](Result& r) { r.say("%s", CopyWSZToSZ(Text("").bytes, kWide)); }},
      {"CatWSZToSZ", [](Result& r) { r.say("%s", CatWSZToSZ(Text("n").bytes, kWide)); }},

      {"EncryptBlock", [](Result& r) { r.say("%d", EncryptBlock(Text("ab").bytes, 2)); }},
      {"DecryptBlock", [](Result& r) { r.say("%d", DecryptBlock(Text("ab").bytes, 2)); }},
      {"ByteRotateLeft", [](Result& r) { r.say("%d", ByteRotateLeft(0x81, 1)); }},
      {"ByteRotateRight", [](Result& r) { r.say("%d", ByteRotateRight(0x81, 1)); }},
      {"BRol", [](Result& r) { r.say("%d", BRol(0x81, -1)); }},
      {"BRor", [](Result& r) { r.say("%d", BRor(0x81, -1)); }},
      {"Encrypt", [](Result& r) { r.say("%s", swapped(Encrypt).bytes); }},
      {"Decrypt", [](Result& r) { r.say("%s", swapped(Decrypt).bytes); }},
      {"CBase64Url::Encode",
       [](Result& r) { r.say("%d", CBase64Url().Encode(Text("ab").bytes, 64)); }},
      {"CBase64Url::Decode",
       [](Result& r) { r.say("%d", CBase64Url().Decode(Text("YWI$").bytes, 64)); }},
      {"CBase64Url::GetBase64Symbol",
       [](Result& r) { r.say("%c", CBase64Url().GetBase64Symbol(63)); }},
      {"CBase64Url::GetASCIISymbol",
       [](Result& r) { r.say("%d", CBase64Url().GetASCIISymbol('b')); }},
      {"CBase64Url::IsBase64", [](Result& r) { r.say("%d", CBase64Url().IsBase64("a b")); }},
      {"CUTF8::Encode", [](Result& r) { r.say("%d", CUTF8().Encode(kWide, Text("").bytes, 64)); }},
      {"CUTF8::Decode", [](Result& r) { r.say("%d", CUTF8().Decode("a", WideText().units, 16)); }},
      {"CCrypt::CCrypt", [](Result&) { CCrypt crypt("key"); }},
      {"CCrypt::Encrypt", [](Result& r) { r.say("%d", CCrypt("key").Encrypt(Text("abc").bytes)); }},
      {"CCrypt::Decrypt", [](Result& r) { r.say("%d", CCrypt("key").Decrypt(Text("abc").bytes)); }},
      {"CPHPOperations::CPHPOperations", [](Result&) { CPHPOperations object("key"); }},
      {"CPHPOperations::ConvertToSecureString", convertString},
      {"CPHPOperations::ConvertToPlainString", convertString},
      {"CPHPOperations::ConvertToSecureKeyValuePair", convertPair},
      {"CPHPOperations::TransformPhpCommand", convertCommand},
      {"CPHPOperations::ConvertToSecurePhpCommand", convertCommand},
      {"CPHPOperations::ConvertToPlainPhpCommand", convertCommand},

      {"ZRGetProcAddress", [](Result& r) { r.say("%d", !ZRGetProcAddress(nullptr, "x")); }},
      {"ZRFreeLibrary", [](Result&) { ZRFreeLibrary(nullptr); }},
      {"SearchFor", searchBytes},
      {"SystemTimeToTm", convertTime},
      {"TmToSystemTime", convertTime},
      {"GetPid", [](Result& r) { r.say("%d", GetPid(nullptr, nullptr)); }},
  };
  return operations;
}
