// The directory, the options and the feature file, with anything in them.
#include <strings.h>
#include <sys/stat.h>
#include <zrcommon/network.h>
#include <zrcommon/system.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "base/product_files.h"
#include "fuzz/support.h"
#include "network/directory_record.h"

using namespace zrcommon;

namespace {

const std::string kHome = "/usr/lib/Valdrix/Valdrix/";
const std::string kOptions = kHome + "zrinet.opt";

std::string swapped(std::string bytes) {
  for (char& byte : bytes) byte = static_cast<char>((byte & 0xF) << 4 | (byte >> 4 & 0xF));
  return bytes;
}

std::string field(const std::string& text) {
  std::string bytes = text.substr(0, kDirectoryTextBytes);
  bytes.resize(kDirectoryTextBytes);
  return bytes;
}

// A record for every three lines: number, name, value.
std::string packed(Input& input) {
  std::string records;
  for (std::string line = input.line(); !line.empty(); line = input.line()) {
    const auto number = static_cast<std::uint32_t>(std::strtoul(line.c_str(), nullptr, 10));
    records.append(reinterpret_cast<const char*>(&number), sizeof number);
    records += field(input.line());
    records += field(input.line());
  }
  return records + input.rest();
}

bool isRecord(const DirectoryRecord& record, unsigned int entry, const std::string& name) {
  const std::string own(record.name, ::strnlen(record.name, sizeof record.name));
  return record.number == entry && ::strcasecmp(own.c_str(), name.c_str()) == 0;
}

void checkDirectory(Input& input, bool isPacked) {
  const auto entry = static_cast<unsigned int>(input.number());
  const std::string name = visible(input.line());
  const unsigned int room = input.numberUpTo(600);
  const std::string records = isPacked ? packed(input) : input.rest();
  putFile(kHome + kDirectoryFileName, swapped(records));
  std::vector<char> value(room + 1, '#');
  std::string expected(room, '#');
  DirectoryRecord record;
  bool isThere = false;
  for (std::size_t at = 0; !isThere && at + sizeof record <= records.size(); at += sizeof record) {
    std::memcpy(&record, records.data() + at, sizeof record);
    isThere = entry > 0 && room > 0 && isRecord(record, entry, name);
  }
  if (isThere) {
    expected.assign(record.value, ::strnlen(record.value, sizeof record.value));
    expected.resize(room);
  }
  expect(GetValueFromInfoEml(entry, name.c_str(), value.data(), room) == isThere,
         "the record is found if it is there");
  expect(std::string(value.data(), room) == expected, "the value is copied, with zeros behind it");
}

template <typename Record>
std::string bytesOf(const Record& record) {
  return {reinterpret_cast<const char*>(&record), sizeof record};
}

void checkSharing() {
  struct stat status = {};
  expect(::stat(kOptions.c_str(), &status) == 0 && (status.st_mode & 07777U) == 0666,
         "everybody may change the options");
}

void checkOptions(const std::string& content) {
  putFile(kOptions, content);
  tagInetSettings settings = {};
  const bool isWhole = content.size() >= sizeof settings;
  expect(ReadInetOptions(kOptions.c_str(), &settings) == (isWhole ? 1 : 4),
         "whole options are read");
  std::string expected = isWhole ? content.substr(0, sizeof settings) : std::string();
  expected.resize(sizeof settings);
  expect(bytesOf(settings) == expected, "the options are those of the file");
  checkSharing();
  tagZRINETCONFIG config;
  unsigned int error = 0;
  expect(ZRGetInetConfig(&config, &error) == 1, "there is always a configuration");
  expect(bytesOf(config) == expected.substr(0, sizeof config),
         "it is the beginning of the options");
  std::reverse(std::begin(settings.bytes), std::end(settings.bytes));
  expect(SaveInetOptions(kOptions.c_str(), &settings) == 1, "options are saved");
  expect(getFile(kOptions) == bytesOf(settings) + (isWhole ? content.substr(sizeof settings) : ""),
         "what lies behind the options stays");
  checkSharing();
}

void checkFeatures(const std::string& content) {
  putFile(kHome + "zrfeature.dat", content);
  tagZR_FEATURE feature;
  std::memset(&feature, '#', sizeof feature);
  const std::string had = bytesOf(feature);
  unsigned int error = 1;
  const bool isWhole = content.size() >= sizeof feature;
  expect(GetZRFeaturesSetting(&feature, &error) == isWhole, "a whole record is read");
  expect(bytesOf(feature) ==
             (content + had.substr(std::min(content.size(), had.size()))).substr(0, sizeof feature),
         "it is that of the file, as far as that goes");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  const std::string what = input.line();
  if (what == "options")
    checkOptions(input.rest());
  else if (what == "features")
    checkFeatures(input.rest());
  else
    checkDirectory(input, what == "directory");
  return 0;
}
