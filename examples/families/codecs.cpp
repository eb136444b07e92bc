#include <zrcommon/codecs.h>

#include <cstdio>
#include <cstring>

int main() {
  CPHPOperations operations("8W371KJ05926143DCF57");  // both sides need the same key
  char command[4096] = "http://server/list.php?product=12&version=7.1";
  if (!operations.ConvertToSecurePhpCommand(command, sizeof command)) return 1;
  std::printf("%s\n", command);
  if (!operations.ConvertToPlainPhpCommand(command, sizeof command)) return 1;
  std::printf("%s\n", command);

  CBase64Url base64;
  char text[64] = "any bytes but zero";  // room for the encoded form: 4 * ceil(n / 3) + 1
  if (!base64.Encode(text, sizeof text)) return 1;
  std::printf("%s\n", text);
  if (!base64.Decode(text, sizeof text)) return 1;
  return std::strcmp(text, "any bytes but zero");
}
