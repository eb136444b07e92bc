#include <gtest/gtest.h>
#include <zrcommon/network.h>

#include "support/child.h"
#include "support/files.h"
#include "support/guarded.h"

namespace {

const std::string kFile = "/usr/lib/Valdrix/Valdrix/infoeml.dat";
const std::string kTool = ZR_BUILD_DIR "/zrtool";
const std::string kFull(260, 'n');

std::string plainRecord(unsigned int number, std::string name, std::string value) {
  std::string record;
  for (unsigned int shift = 0; shift < 32; shift += 8)
    record.push_back(static_cast<char>(number >> shift & 0xFFU));
  name.resize(260);
  value.resize(260);
  return record + name + value;
}

std::string record(unsigned int number, const std::string& name, const std::string& value) {
  std::string bytes = plainRecord(number, name, value);
  for (char& each : bytes) {
    const auto byte = static_cast<unsigned char>(each);
    each = static_cast<char>(byte % 16 * 16 + byte / 16);
  }
  return bytes;
}

// The result, then what a buffer of '#' holds; buffer and name end at unreadable pages.
std::string lookUp(unsigned int entry, const std::string& name, unsigned int size) {
  GuardedText guardedName(name);
  Guarded value(size);
  const unsigned int result = GetValueFromInfoEml(entry, guardedName.data(), value.data(), size);
  return std::to_string(result) + " " + value.bytes();
}

std::string found(std::string value, unsigned int size = 20) {
  value.resize(size);
  return "1 " + value;
}

const std::string kNotFound = "0 " + std::string(20, '#');

}  // namespace

TEST(Directory, FindsTheFirstRecordWithNumberAndName) {
  const std::string one = record(12, "connection check", "http://a/");
  const std::string noise = record(11, "Connection Check", "x") + record(12, "Connection", "y") +
                            record(12U << 24U, "Connection Check", "z");
  const struct {
    int line;
    std::string file;
    unsigned int entry;
    std::string name;
    std::string expected;
  } rows[] = {
      {__LINE__, noise + one + record(12, "connection check", "later"), 12, "CONNECTION CHECK",
       found("http://a/")},
      {__LINE__, one, 13, "Connection Check", kNotFound},
      {__LINE__, one, 12, "Connection Checks", kNotFound},
      {__LINE__, record(0xFFFFFFFEU, "", ""), 0xFFFFFFFEU, "", found("")},
      {__LINE__, record(0, "zero", "v"), 0, "zero", kNotFound},
      {__LINE__, plainRecord(12, "connection check", "v"), 12, "connection check", kNotFound},
      // Names that fill their field end with it.
      {__LINE__, record(7, kFull, "full"), 7, kFull, found("full")},
      {__LINE__, record(7, kFull, "nnn"), 7, kFull + "nnn", kNotFound},
      {__LINE__, record(7, kFull, ""), 7, kFull.substr(1), kNotFound},
      // A partial record ends the search.
      {__LINE__, one + one.substr(0, 76), 12, "connection check", found("http://a/")},
      {__LINE__, noise + one.substr(0, 523), 12, "connection check", kNotFound},
      {__LINE__, "", 12, "connection check", kNotFound},
  };
  for (const auto& row : rows) {
    putFile(kFile, row.file);
    EXPECT_EQ(row.expected, lookUp(row.entry, row.name, 20)) << "row of line " << row.line;
  }
  ASSERT_EQ(0, std::remove(kFile.c_str()));
  EXPECT_EQ(kNotFound, lookUp(12, "connection check", 20));
}

TEST(Directory, CopiesTheValue) {
  for (const std::size_t length : {0U, 1U, 255U, 256U, 259U, 260U}) {
    const std::string value(length, 'v');
    putFile(kFile, record(1, "n", value) + record(2, "next", "w"));
    for (const unsigned int size : {1U, 255U, 256U, 257U, 260U, 261U, 5000U})
      EXPECT_EQ(found(value, size), lookUp(1, "N", size)) << length << " in " << size;
  }
  char text[] = "#";
  EXPECT_EQ(0U, GetValueFromInfoEml(1, nullptr, text, 1));
  EXPECT_EQ(0U, GetValueFromInfoEml(1, "n", nullptr, 1));
  EXPECT_EQ(0U, GetValueFromInfoEml(1, "n", text, 0));
  EXPECT_STREQ("#", text);
}

TEST(Directory, ToolPacksListsAndGets) {
  const std::string text = "12\tConnection Check\thttp://a/\n4294967295\t\t\n3\t" +
                           kFull.substr(1) + "\twith\ttabs" + std::string(249, '.') + "\n";
  EXPECT_EQ(0, run({kTool, "directory", "pack", kFile}, text).status);
  EXPECT_EQ(record(12, "Connection Check", "http://a/"), getFile(kFile).substr(0, 524));
  EXPECT_EQ(text, run({kTool, "directory", "list"}).out);
  EXPECT_EQ("http://a/\n", run({kTool, "directory", "get", "12", "connection check"}).out);
  EXPECT_EQ(1, run({kTool, "directory", "get", "13", "connection check"}).status);
  putFile(kFile, record(1, "n", kFull) + record(2, "tab\tbed", "v") + "rest");
  const Outcome damaged = run({kTool, "directory", "list", kFile});
  EXPECT_EQ("1\tn\t" + kFull + "\n", damaged.out);
  EXPECT_EQ("[\n  {\"number\": 1, \"name\": \"n\", \"value\": \"" + kFull +
                "\"},\n  {\"number\": 2, \"name\": \"tab\\u0009bed\", \"value\": \"v\"}\n]\n",
            run({kTool, "directory", "list", "--json"}).out);
  EXPECT_EQ("zrtool: /scratch cannot be read\n", run({kTool, "directory", "list", "/scratch"}).err);
  EXPECT_NE(std::string::npos, damaged.err.find("record 2 holds a tab")) << damaged.err;
  EXPECT_NE(std::string::npos, damaged.err.find("4 bytes at the end")) << damaged.err;
}

TEST(Directory, ToolRefusesWhatDoesNotFit) {
  const struct {
    const char* reason;
    std::string text;
  } rows[] = {
      {"line 2: the name has 260 bytes", "1\ta\tb\n2\t" + kFull + "\tv\n"},
      {"line 1: the value has 260 bytes", "2\tn\t" + kFull + "\n"},
      {"line 1: the number", "4294967296\tn\tv\n"},
      {"line 1: the number", "012\tn\tv\n"},
      {"line 2: not number, name and value", "1\tn\tv\n\n"},
      {"line 1: a zero byte", std::string("1\tn\tv\0\n", 7)},
      {"line 1: a carriage return", "1\tn\tv\r\n"},
  };
  putFile(kFile, "as it was");
  for (const auto& row : rows) {
    const Outcome outcome = run({kTool, "directory", "pack", kFile}, row.text);
    EXPECT_NE(std::string::npos, outcome.err.find(row.reason)) << outcome.err;
    EXPECT_EQ("as it was", getFile(kFile));
  }
}
