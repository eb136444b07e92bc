// Any bytes as a profile: what is read and written must be what the plain procedure reads and
// writes, and a change must give its value back and leave every other entry its own.
#include <strings.h>

#include <vector>

#include "fuzz/support.h"
#include "plain_profile.h"

namespace {

constexpr char kPath[] = "/scratch/profile";
constexpr char kExpectedPath[] = "/scratch/expected";
constexpr std::size_t kMostNames = 24;

struct Name {
  std::string section;
  std::string key;
};

// As the functions take their arguments: cut, tested for being empty, then trimmed.
std::string trimmed(const std::string& text) {
  std::string copy = text.substr(0, 256);
  return Trim(copy.data());
}

bool isSame(const std::string& one, const std::string& other) {
  return ::strcasecmp(trimmed(one).c_str(), trimmed(other).c_str()) == 0;
}

PlainProfile plainly(const Name& name) {
  return PlainProfile(kPath, trimmed(name.section), trimmed(name.key));
}

std::string readPlainly(const Name& name) {
  if (name.section.empty()) return "205 ";
  if (name.key.empty()) return "203 ";
  return plainly(name).read();
}

std::string read(const Name& name) {
  char out[1025] = {};
  unsigned int error = 0;
  GetPrivateProfileString(name.section.c_str(), name.key.c_str(), "", out, sizeof out, kPath,
                          &error);
  return std::to_string(error) + " " + out;
}

void checkRoom(const Name& name, unsigned int size) {
  const std::string text = readPlainly(name);
  std::string expected = (text.substr(0, 2) == "0 " ? text.substr(2) : "default").substr(0, size);
  expected.resize(size);
  if (size > 0) expected.back() = '#';
  std::vector<char> out(size, '#');
  unsigned int error = 0;
  // A buffer of no bytes is still no null pointer.
  GetPrivateProfileString(name.section.c_str(), name.key.c_str(), "default",
                          size ? out.data() : reinterpret_cast<char*>(&error), size, kPath, &error);
  expect(std::string(out.begin(), out.end()) == expected, "the output is filled as agreed");
}

void checkNumber(const Name& name) {
  const std::string text = readPlainly(name);
  const bool isThere = text.size() > 2 && text[1] == ' ';
  unsigned int error = 0;
  const int number =
      GetPrivateProfileInt(name.section.c_str(), name.key.c_str(), 77, kPath, &error);
  expect(number == (isThere ? std::atoi(text.c_str() + 2) : 77), "the number is the text's");
}

// The names that the file itself holds, each section's keys under it.
std::vector<Name> namesIn(const std::string& path) {
  std::vector<Name> names;
  std::string section;
  std::FILE* const file = std::fopen(path.c_str(), "r");
  char line[1025];
  while (names.size() < kMostNames && std::fgets(line, 1024, file)) {
    const std::string text = Trim(line);
    if (!text.empty() && text[0] == '[') {
      section = text.substr(1, text.find(']') - 1) + " ";
    } else if (!trimmed(text.substr(0, text.find('='))).empty()) {
      names.push_back({section, text.substr(0, text.find('='))});
    }
  }
  std::fclose(file);
  return names;
}

// Some names can be written, but never found again: those of no entry and no header.
bool canBeFound(const Name& name) {
  const std::string key = trimmed(name.key);
  return !key.empty() && std::string("[#;").find(key[0]) == std::string::npos &&
         key.find('=') == std::string::npos && name.section.find(']') == std::string::npos;
}

void checkWriting(const Name& name, const std::string& value, const std::string& file) {
  const std::vector<Name> names = namesIn(kPath);
  std::vector<std::string> before;
  for (const Name& each : names) before.push_back(read(each));
  long changeEnd = 0;
  {
    PlainProfile profile = plainly(name);
    changeEnd = profile.write(trimmed(value), kExpectedPath);
  }
  unsigned int error = 0;
  expect(WritePrivateProfileString(name.section.c_str(), name.key.c_str(), value.c_str(), kPath,
                                   &error) == 0 &&
             error == 0,
         "the entry is written");
  expect(getFile(kPath) == getFile(kExpectedPath), "the file is what the plain procedure writes");
  if (!canBeFound(name)) return;
  expect(read(name) == "0 " + trimmed(value), "the value comes back");
  if (file.find('\0', static_cast<std::size_t>(changeEnd)) != std::string::npos) return;
  for (std::size_t i = 0; i < names.size(); ++i) {
    const bool isOther = !isSame(names[i].section, name.section) || !isSame(names[i].key, name.key);
    if (isOther && before[i].substr(0, 2) == "0 ")
      expect(read(names[i]) == before[i], "other entries keep their values");
  }
}

// Comments in front, so that what was made up lies where one block of the file ends.
std::string withLead(unsigned int bytes, const std::string& file) {
  std::string lead;
  while (lead.size() + 64 < bytes) lead += "#" + std::string(62, '.') + "\n";
  return bytes == 0 ? file : lead + std::string(bytes - lead.size() - 1, '.') + "\n" + file;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  const unsigned int lead = input.numberUpTo(40000);
  const unsigned int room = input.numberUpTo(1100);
  const Name name = {visible(input.line()), visible(input.line())};
  const std::string value = visible(input.line());
  const std::string file = withLead(lead, input.rest());
  putFile(kPath, file);
  expect(read(name) == readPlainly(name), "what is read is what the plain procedure reads");
  checkRoom(name, room);
  checkNumber(name);
  if (!name.section.empty() && !name.key.empty() && !value.empty()) checkWriting(name, value, file);
  return 0;
}
