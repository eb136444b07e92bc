#include <zrcommon/network.h>

#include "support/test.h"

namespace {

const S kFile = kInstallation + "infoeml.dat";
const S kFull(260, 'n');

S plainRecord(unsigned int number, S name, S value) {
  S record(reinterpret_cast<const char*>(&number), sizeof number);
  name.resize(260);
  value.resize(260);
  return record + name + value;
}

S record(unsigned int number, const S& name, const S& value) {
  S bytes = plainRecord(number, name, value);
  for (char& each : bytes) {
    const auto byte = static_cast<unsigned char>(each);
    each = static_cast<char>(byte % 16 * 16 + byte / 16);
  }
  return bytes;
}

// The result, then what a buffer of '#' holds; buffer and name end at unreadable pages.
S lookUp(unsigned int entry, const S& name, unsigned int size) {
  GuardedText guardedName(name);
  Guarded value(size);
  const unsigned int result = GetValueFromInfoEml(entry, guardedName.get(), value.data(), size);
  return std::to_string(result) + " " + value.bytes();
}

S found(S value, unsigned int size = 20) {
  value.resize(size);
  return "1 " + value;
}

}  // namespace

TEST(Directory, FindsTheFirstRecordWithNumberAndName) {
  const S none = "0 " + S(20, '#'), check = "Connection Check";
  const S one = record(12, "connection check", "http://a/");
  const S noise =
      record(11, check, "x") + record(12, "Connection", "y") + record(12U << 24U, check, "z");
  const Rows<S, unsigned int, S, S> rows = {
      {noise + one + record(12, check, "later"), 12, "CONNECTION CHECK", found("http://a/")},
      {one, 13, check, none},
      {one, 12, check + "s", none},
      {record(0xFFFFFFFEU, "", ""), 0xFFFFFFFEU, "", found("")},
      {record(0, "zero", "v"), 0, "zero", none},
      {plainRecord(12, check, "v"), 12, check, none},
      // Names that fill their field end with it.
      {record(7, kFull, "full"), 7, kFull, found("full")},
      {record(7, kFull, "nnn"), 7, kFull + "nnn", none},
      {record(7, kFull, ""), 7, kFull.substr(1), none},
      // A partial record ends the search.
      {one + one.substr(0, 76), 12, check, found("http://a/")},
      {noise + one.substr(0, 523), 12, check, none}};
  for (const auto& [file, entry, name, expected] : rows) {
    putFile(kFile, file);
    EXPECT_EQ(expected, lookUp(entry, name, 20)) << entry << " " << name;
  }
  ASSERT_EQ(0, std::remove(kFile.c_str()));
  EXPECT_EQ(none, lookUp(12, check, 20));
}

TEST(Directory, CopiesTheValue) {
  for (const std::size_t length : {0U, 1U, 255U, 256U, 259U, 260U}) {
    const S value(length, 'v');
    putFile(kFile, record(1, "n", value) + record(2, "next", "w"));
    for (const unsigned int size : {1U, 255U, 256U, 257U, 260U, 261U, 5000U})
      EXPECT_EQ(found(value, size), lookUp(1, "N", size)) << length << " in " << size;
  }
  char text[] = "#";
  EXPECT_EQ(0U, GetValueFromInfoEml(1, nullptr, text, 1) + GetValueFromInfoEml(1, "n", nullptr, 1) +
                    GetValueFromInfoEml(1, "n", text, 0));
  EXPECT_STREQ("#", text);
}

TEST(Directory, ToolPacksListsAndGets) {
  const S text = "12\tConnection Check\thttp://a/\n4294967295\t\t\n3\t" + kFull.substr(1) +
                 "\twith\ttabs" + S(249, '.') + "\n";
  EXPECT_EQ(0, runTool({"directory", "pack", kFile}, text).status);
  EXPECT_EQ(record(12, "Connection Check", "http://a/"), getFile(kFile).substr(0, 524));
  EXPECT_EQ(text, runTool({"directory", "list"}).out);
  EXPECT_EQ("http://a/\n", runTool({"directory", "get", "12", "connection check"}).out);
  putFile(kFile, record(1, "n", kFull) + record(2, "tab\tbed", "v") + "rest");
  const Outcome damaged = runTool({"directory", "list", kFile});
  EXPECT_EQ("1\tn\t" + kFull + "\n", damaged.out);
  EXPECT_EQ("[\n  {\"number\": 1, \"name\": \"n\", \"value\": \"" + kFull +
                "\"},\n  {\"number\": 2, \"name\": \"tab\\u0009bed\", \"value\": \"v\"}\n]\n",
            runTool({"directory", "list", "--json"}).out);
  EXPECT_EQ("zrtool: /scratch cannot be read\n", runTool({"directory", "list", "/scratch"}).err);
  for (const char* part : {"record 2 holds a tab", "4 bytes at the end"})
    EXPECT_NE(S::npos, damaged.err.find(part)) << damaged.err;
}

TEST(Directory, ToolRefusesWhatDoesNotFit) {
  putFile(kFile, "as it was");
  for (const auto& [reason, text] :
       Rows<const char*, S>{{"line 2: the name has 260 bytes", "1\ta\tb\n2\t" + kFull + "\tv\n"},
                            {"line 1: the value has 260 bytes", "2\tn\t" + kFull + "\n"},
                            {"line 1: the number", "4294967296\tn\tv\n"},
                            {"line 1: the number", "012\tn\tv\n"},
                            {"line 2: not number, name and value", "1\tn\tv\n\n"},
                            {"line 1: a zero byte", {"1\tn\tv\0\n", 7}},
                            {"line 1: a carriage return", "1\tn\tv\r\n"}}) {
    const Outcome outcome = runTool({"directory", "pack", kFile}, text);
    EXPECT_NE(S::npos, outcome.err.find(reason)) << outcome.err;
    EXPECT_EQ("as it was", getFile(kFile));
  }
}
