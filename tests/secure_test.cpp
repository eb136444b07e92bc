#include <zrcommon/codecs.h>

#include <vector>

#include "support/child.h"
#include "support/files.h"
#include "support/placed.h"

namespace {

constexpr char kKey[] = "8W371KJ05926143DCF57";

const struct {
  std::string plain, mixed, encoded, secure;
} kAnswers[] = {
#include "answers/secure_answers.inc"
};

enum Direction : unsigned char { kToPlain = 0, kToSecure = 1 };

struct Transformed {
  bool succeeded;
  std::string command;
};

bool operator==(const Transformed& a, const Transformed& b) {
  return a.succeeded == b.succeeded && a.command == b.command;
}

std::ostream& operator<<(std::ostream& out, const Transformed& it) {
  return out << it.succeeded << ' ' << it.command;
}

Transformed transform(const std::string& command, unsigned char direction, const char* key = kKey) {
  Placed<char> buffer(command + std::string(4 * command.size() + 1, '\0'));
  const bool succeeded = CPHPOperations(key).TransformPhpCommand(buffer.get(), 1, direction);
  return {succeeded, buffer.text()};
}

}  // namespace

TEST(SecureString, BothWays) {
  CPHPOperations operations(kKey);
  for (const auto& answer : kAnswers) {
    Placed<char> text(answer.plain + std::string(answer.secure.size() - answer.plain.size(), '\0'));
    EXPECT_TRUE(operations.ConvertToSecureString(text.get(), 1));
    EXPECT_EQ(answer.secure, text.text());
    EXPECT_TRUE(operations.ConvertToPlainString(text.get(), 1));
    EXPECT_EQ(answer.plain, text.text());
  }
}

TEST(SecureString, PlainFillsItsDestination) {
  CPHPOperations operations(kKey);
  Guarded to(8);
  EXPECT_TRUE(operations.ConvertToPlainString("VjZeUg$$", to.data(), 7));
  EXPECT_EQ(std::string("name\0\0\0#", 8), to.bytes());
  EXPECT_TRUE(operations.ConvertToPlainString("TjZfQlQ$", to.data(), 2));
  EXPECT_EQ(std::string("value\0\0#", 8), to.bytes());
}

TEST(SecureString, FailuresChangeNothing) {
  CPHPOperations operations(kKey);
  CPHPOperations keyless("");
  for (const std::string& text : {std::string(), std::string(1024, 'A')}) {
    Placed<char> buffer(text);
    EXPECT_FALSE(operations.ConvertToSecureString(buffer.get(), 1));
    EXPECT_FALSE(operations.ConvertToPlainString(buffer.get(), 1));
    EXPECT_EQ(text, buffer.text());
  }
  for (const char* text : {"no secure-string", "AAAA"}) {
    Placed<char> buffer(text);
    EXPECT_FALSE(operations.ConvertToPlainString(buffer.get(), 1));
    EXPECT_FALSE(keyless.ConvertToSecureString(buffer.get(), 1));
    EXPECT_FALSE(operations.ConvertToSecureString(buffer.get(), 0));
    EXPECT_FALSE(operations.ConvertToPlainString("WQ$$", buffer.get(), 0));
    EXPECT_FALSE(operations.ConvertToPlainString(nullptr, buffer.get(), 1));
    EXPECT_EQ(text, buffer.text());
  }
  EXPECT_FALSE(operations.ConvertToSecureString(nullptr, 1) ||
               operations.ConvertToPlainString(nullptr, 1) ||
               operations.ConvertToPlainString("WQ$$", nullptr, 1));
}

TEST(SecureString, Pairs) {
  CPHPOperations operations(kKey);
  const struct {
    std::string name, value;
    bool result;
    std::string written;
  } rows[] = {
      {"name", "value", true, "VjZeUg$$=TjZfQlQ$"},
      {"name", "", false, "VjZeUg$$="},
      {"name", std::string(1024, 'v'), false, "VjZeUg$$="},
      {"", "value", false, ""},
      {std::string(1024, 'n'), "value", false, std::string(1024, 'n')},
  };
  for (const auto& row : rows) {
    Placed<char> to(std::string(std::max(row.written.size(), row.name.size()), '#'));
    EXPECT_EQ(row.result, operations.ConvertToSecureKeyValuePair(row.name.c_str(),
                                                                 row.value.c_str(), to.get(), 1));
    EXPECT_EQ(row.written, to.text());
  }
  char untouched[] = "#";
  EXPECT_FALSE(operations.ConvertToSecureKeyValuePair(nullptr, "v", untouched, 1) ||
               operations.ConvertToSecureKeyValuePair("n", nullptr, untouched, 1) ||
               operations.ConvertToSecureKeyValuePair("n", "v", nullptr, 1) ||
               operations.ConvertToSecureKeyValuePair("n", "v", untouched, 0));
  EXPECT_STREQ("#", untouched);
}

TEST(SecureCommand, Forms) {
  const struct {
    int line;
    std::string plain;
    Transformed secure, back;
  } rows[] = {
      // there and back
      {__LINE__, "p?name=value", {true, "p?VjZeUg$$=TjZfQlQ$"}, {true, "p?name=value"}},
      {__LINE__, "a=1", {true, "WQ$$=CQ$$"}, {true, "a=1"}},
      {__LINE__, "p?a=b?a=1", {true, "p?a=b?WQ$$=CQ$$"}, {true, "p?a=b?a=1"}},
      {__LINE__, "?k==v", {true, "?Uw$$=BSE$"}, {true, "?k==v"}},
      // with something lost
      {__LINE__, "p?&a=1&&k=1&", {true, "p?WQ$$=CQ$$&Uw$$=CQ$$"}, {true, "p?a=1&k=1"}},
      {__LINE__, "p?a&k=", {true, "p?WQ$$=&Uw$$="}, {true, "p?a=&k="}},
      {__LINE__, "p?==a=1", {true, "p?WQ$$=CQ$$"}, {true, "p?a=1"}},
      // nothing to convert
      {__LINE__, "", {false, ""}, {false, ""}},
      {__LINE__, "page?", {false, "page?"}, {false, "page?"}},
      {__LINE__, "p?&&", {false, "p?"}, {false, "p?"}},
      {__LINE__, "p?a=1&==", {false, "p?WQ$$=CQ$$&"}, {true, "p?a=1"}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.secure, transform(row.plain, kToSecure)) << row.line;
    EXPECT_EQ(row.back, transform(row.secure.command, kToPlain)) << row.line;
    EXPECT_EQ(row.back, transform(row.secure.command, 2)) << row.line;
  }
}

TEST(SecureCommand, FailuresKeepWhatWasRebuilt) {
  const struct {
    const char *secure, *left;
  } rows[] = {{"p?na-me=x", "p?"},
              {"p?WQ$$=CQ$$&na-me=x", "p?a=1&"},
              {"p?WQ$$=no.secret", "p?a="},
              {"p?WQ$$=AAAA", "p?a="}};
  for (const auto& row : rows)
    EXPECT_EQ((Transformed{false, row.left}), transform(row.secure, kToPlain));
  EXPECT_EQ((Transformed{false, "p?"}), transform("p?a=1", kToSecure, ""));
  char command[] = "a=1";
  CPHPOperations operations(kKey);
  EXPECT_FALSE(operations.ConvertToSecurePhpCommand(command, 0) ||
               operations.ConvertToPlainPhpCommand(nullptr, 1));
  EXPECT_STREQ("a=1", command);
}

TEST(SecureCommand, Limits) {
  const auto pair = [](std::size_t name, std::size_t value) {
    return std::string(name, 'n') + "=" + std::string(value, 'v');
  };
  for (std::size_t name : {764, 765, 766, 1023, 1024})
    EXPECT_EQ(name <= 765, transform(pair(name, 1), kToSecure).succeeded) << name;
  for (std::size_t value : {765, 766, 1023, 1024}) {
    const Transformed secure = transform(pair(1, value), kToSecure);
    EXPECT_EQ(value <= 1023, secure.succeeded) << value;
    EXPECT_EQ(value <= 765,
              transform(secure.command, kToPlain) == (Transformed{true, pair(1, value)}))
        << value;
  }
  std::string query = pair(500, 499);
  for (int i = 0; i < 4; ++i) query += "&" + pair(500, 499);
  const std::string longest = query + std::string(5119 - query.size(), '&'), page(9000, 'p');
  EXPECT_TRUE(transform(page + "?" + longest, kToSecure).succeeded);
  EXPECT_EQ((Transformed{false, page + "?" + longest + "&"}),
            transform(page + "?" + longest + "&", kToSecure));
}

TEST(SecureTool, Commands) {
  ScratchDirectory scratch;
  putFile(scratch / "key", std::string(kKey) + "\r\nsecond line\n");
  putFile(scratch / "empty", "\n");
  const std::string tool = ZR_BUILD_DIR "/zrtool", variable = std::string("ZRTOOL_KEY=") + kKey;
  const struct {
    int line;
    std::vector<std::string> words;
    int status;
    std::string out;
  } rows[] = {
      {__LINE__, {variable, tool, "secure", "p?name=value"}, 0, "p?VjZeUg$$=TjZfQlQ$\n"},
      {__LINE__, {variable, tool, "plain", "p?VjZeUg$$=TjZfQlQ$"}, 0, "p?name=value\n"},
      {__LINE__,
       {"ZRTOOL_KEY=other", tool, "secure", "a=1", "--key-file", scratch / "key"},
       0,
       "WQ$$=CQ$$\n"},
      {__LINE__, {variable, tool, "plain", "p?na-me=value"}, 1, ""},
      {__LINE__, {"-u", "ZRTOOL_KEY", tool, "secure", "a=1"}, 1, ""},
      {__LINE__, {"ZRTOOL_KEY=", tool, "secure", "a=1"}, 1, ""},
      {__LINE__, {variable, tool, "secure", "a=1", "--key-file", scratch / "empty"}, 1, ""},
      {__LINE__, {variable, tool, "secure", "a=1", "--key-file", scratch / "none"}, 1, ""},
      {__LINE__, {variable, tool, "secure"}, 2, ""},
  };
  for (const auto& row : rows) {
    std::vector<std::string> command = {"/usr/bin/env"};
    command.insert(command.end(), row.words.begin(), row.words.end());
    const Outcome outcome = run(command);
    EXPECT_EQ(row.status, outcome.status) << row.line << ": " << outcome.err;
    EXPECT_EQ(row.out, outcome.out) << row.line;
    EXPECT_EQ(row.status != 0, !outcome.err.empty()) << row.line;
  }
}
