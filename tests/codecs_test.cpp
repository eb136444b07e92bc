#include <zrcommon/codecs.h>

#include "support/test.h"

namespace {

constexpr char kKey[] = "8W371KJ05926143DCF57";
const S kSymbols = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_!";

// What Decode makes of a buffer of which `capacity` bytes are the caller's, bit by bit.
S modelDecode(const S& text, std::size_t capacity) {
  S result = text + '\0';
  result.resize(std::max(result.size(), capacity));
  std::fill_n(result.begin(), capacity, '\0');
  for (std::size_t at = 0, to = 0; at < text.size(); at += 4, to += 3) {
    const S group = (text.substr(at, 4) + "AAA").substr(0, 4);
    unsigned bits = 0;
    for (const char symbol : group)
      bits = bits << 6 | unsigned(std::min<std::size_t>(kSymbols.find(symbol), 63));
    for (std::size_t i = 0; i < 3 && to + i < result.size(); ++i)
      if (i == 0 || group[i + 1] != '$') result[to + i] = static_cast<char>(bits >> (16 - 8 * i));
  }
  return result;
}

// The result and the command that is left, in one text.
S transform(const S& command, unsigned char direction, const char* key = kKey) {
  GuardedText buffer(command + S(4 * command.size() + 1, '\0'));
  const bool result = CPHPOperations(key).TransformPhpCommand(buffer.get(), 1, direction);
  return std::to_string(result) + " " + buffer.text();
}

}  // namespace

TEST(Rotations, SingleBytes) {
  for (int byte = 0; byte < 256; ++byte)
    for (int count = -17; count < 18; ++count) {
      const auto b = static_cast<unsigned char>(byte);
      const int left = (count + 24) % 8;
      const auto rotated = static_cast<unsigned char>(byte << left | byte >> (8 - left));
      EXPECT_EQ(rotated, BRol(b, count)) << count;
      EXPECT_EQ(rotated, BRor(b, -count)) << count;
      EXPECT_EQ(static_cast<char>(count < 0 ? b : rotated), ByteRotateLeft(b, count)) << count;
      EXPECT_EQ(static_cast<char>(count > 0 ? b : rotated), ByteRotateRight(b, -count)) << count;
    }
}

TEST(Rotations, Blocks) {
  for (int length = 0; length < 300; ++length) {
    S bytes, rotated, halves;
    for (int i = 0; i < length; ++i) {
      bytes.push_back(static_cast<char>(i * 7));
      rotated.push_back(ByteRotateLeft(static_cast<unsigned char>(i * 7), 3));
      halves.push_back(ByteRotateLeft(static_cast<unsigned char>(i * 7), 4));
    }
    Guarded block(bytes.size());
    auto* const data = block.data<unsigned char>();
    std::copy(bytes.begin(), bytes.end(), data);
    EXPECT_EQ(length > 0, EncryptBlock(data, unsigned(length)));
    EXPECT_EQ(rotated, block.bytes());
    EXPECT_EQ(length > 0, DecryptBlock(data, unsigned(length)));
    EXPECT_EQ(bytes, block.bytes());
    Encrypt(data, length);
    EXPECT_EQ(halves, block.bytes());
    Decrypt(data, length);
    Encrypt(data, -1);
    EXPECT_EQ(bytes, block.bytes());
  }
  Encrypt(nullptr, 1);
  EXPECT_FALSE(EncryptBlock(nullptr, 1) || DecryptBlock(nullptr, 1));
}

TEST(Codecs, KnownAnswers) {
  CBase64Url base64;
  CPHPOperations operations(kKey);
  for (const auto& [plain, encoded, secure] :
       Rows<S, S, S>{{"a", "YQ$$", "WQ$$"},
                     {"=v", "PXY$", "BSE$"},
                     {"name", "bmFtZQ$$", "VjZeUg$$"},
                     {kKey, "OFczNzFLSjA1OTI2MTQzRENGNTc$", "OFczNzFLSjA1OTI2MTQzRENGNTc$"},
                     {"8w371kj0", "OHczNzFrajA$", "OCAzNzEgIDA$"},
                     {"\xfb\xff\xbf\xfe", "_!_!!g$$", "w6iMyQ$$"}}) {
    GuardedText text(plain + S(encoded.size() - plain.size(), '\0'));
    EXPECT_TRUE(base64.Encode(text.get(), 1));
    EXPECT_EQ(encoded, text.text());
    EXPECT_TRUE(base64.Decode(text.get(), unsigned(text.size())));
    EXPECT_EQ(plain, text.text());
    EXPECT_TRUE(operations.ConvertToSecureString(text.get(), 1));
    EXPECT_EQ(secure, text.text());
    EXPECT_TRUE(operations.ConvertToPlainString(text.get(), 1));
    EXPECT_EQ(plain, text.text());
  }
}

TEST(Crypt, AgreesWithTheModelForEveryKeyLength) {
  Dice dice;
  for (std::size_t keyLength = 1; keyLength < 70; ++keyLength)
    for (std::size_t length : {1, 2, 63, 64, 65, 127, 128, 129, 200, 1000}) {
      const S key = dice.text(keyLength, "ab\xFF"s), used = key.substr(0, 63);
      const S plain = dice.text(length, "abc\xFF"s);
      S expected = plain;
      for (std::size_t i = 0; i < length; ++i)
        if (plain[i] != used[i % used.size()]) expected[i] ^= used[i % used.size()];
      GuardedText text(plain);
      EXPECT_TRUE(CCrypt(key.c_str()).Encrypt(text.get()));
      EXPECT_EQ(expected, text.text()) << "key " << key;
      EXPECT_TRUE(CCrypt(key.c_str()).Decrypt(text.get()));
      EXPECT_EQ(plain, text.text()) << "key " << key;
    }
}

TEST(Crypt, WithoutKeyOrText) {
  char text[] = "text", empty[] = "";
  EXPECT_FALSE(CCrypt("").Encrypt(text) || CCrypt("k").Encrypt(nullptr) ||
               CCrypt("k").Encrypt(empty));
  EXPECT_STREQ("text", text);
  EXPECT_THROW(CCrypt(nullptr), int);
  EXPECT_THROW(CPHPOperations(nullptr), int);
}

TEST(Base64, SymbolsAndStrangers) {
  CBase64Url base64;
  for (int value = 0; value < 256; ++value) {
    const auto at = static_cast<unsigned char>(std::min(value, 63));
    EXPECT_EQ(kSymbols[at], base64.GetBase64Symbol(static_cast<unsigned char>(value))) << value;
    EXPECT_EQ(at, base64.GetASCIISymbol(kSymbols[at]));
    const char byte = static_cast<char>(value ? value : '$');
    const bool isGood = (kSymbols + '$').find(byte) != S::npos;
    EXPECT_TRUE(isGood || base64.GetASCIISymbol(byte) == 63) << value;
    for (std::size_t place = 0; place < 7; ++place) {
      S text = "QUJDREV";
      text[place] = byte;
      GuardedText buffer(text);
      EXPECT_FALSE(base64.Decode(buffer.get(), 0));
      EXPECT_EQ(isGood, base64.IsBase64(buffer.get())) << value;
      EXPECT_EQ(isGood, base64.Decode(buffer.get(), 8)) << value;
      EXPECT_EQ(isGood, buffer.text() != text) << value;
    }
  }
  EXPECT_FALSE(base64.IsBase64(nullptr) || base64.Encode(nullptr, 1) || base64.Decode(nullptr, 1));
  char empty[] = "";
  EXPECT_FALSE(base64.Encode(empty, 1) || base64.Decode(empty, 1) || !base64.IsBase64(empty));
}

TEST(Base64, Limits) {
  for (std::size_t length : {1023, 1024}) {
    const S bytes(length, 'M');
    GuardedText text(bytes + S(1364 - length, '\0')), encoded(bytes);
    EXPECT_EQ(length < 1024, CBase64Url().Encode(text.get(), 1));
    EXPECT_EQ(length < 1024 ? 1364 : length, text.text().size());
    EXPECT_EQ(length < 1024, CBase64Url().Decode(encoded.get(), 1));
    EXPECT_EQ(length < 1024, encoded.bytes() != bytes + '\0');
  }
}

TEST(Base64, DecodesWhatNobodyEncoded) {
  Dice dice;
  for (int round = 0; round < 5000; ++round) {
    const S text = dice.text(1 + dice.below(round % 9 ? 12 : 1023), "AZaz09_!$"s);
    const std::size_t capacity = 1 + dice.below(text.size() + 8);
    GuardedText buffer(text, capacity > text.size() + 1 ? capacity - text.size() - 1 : 0);
    ASSERT_TRUE(CBase64Url().Decode(buffer.get(), unsigned(capacity)));
    ASSERT_EQ(modelDecode(text, capacity), buffer.bytes()) << text << ' ' << capacity;
  }
}

TEST(SecureString, Failures) {
  CPHPOperations operations(kKey), keyless("");
  for (const S& text : {""s, S(1024, 'A'), "no secure-string"s, "AAAA"s}) {
    GuardedText buffer(text);
    char* const to = buffer.get();
    const bool tooShortOrLong = text.empty() || text.size() == 1024;
    EXPECT_FALSE(operations.ConvertToPlainString(to, 1) || keyless.ConvertToSecureString(to, 1) ||
                 (tooShortOrLong && operations.ConvertToSecureString(to, 1)) ||
                 operations.ConvertToSecureString(to, 0) ||
                 operations.ConvertToPlainString("WQ$$", to, 0) ||
                 operations.ConvertToPlainString(nullptr, to, 1) ||
                 operations.ConvertToSecureKeyValuePair(nullptr, "v", to, 1) ||
                 operations.ConvertToSecureKeyValuePair("n", nullptr, to, 1) ||
                 operations.ConvertToSecureKeyValuePair("n", "v", to, 0));
    EXPECT_EQ(text, buffer.text());
  }
  EXPECT_FALSE(operations.ConvertToSecureString(nullptr, 1) ||
               operations.ConvertToPlainString(nullptr, 1) ||
               operations.ConvertToPlainString("WQ$$", nullptr, 1) ||
               operations.ConvertToSecureKeyValuePair("n", "v", nullptr, 1));
}

TEST(SecureString, PlainFillsItsDestination) {
  Guarded to(8);
  EXPECT_TRUE(CPHPOperations(kKey).ConvertToPlainString("VjZeUg$$", to.data(), 7));
  EXPECT_EQ("name\0\0\0#"s, to.bytes());
  EXPECT_TRUE(CPHPOperations(kKey).ConvertToPlainString("TjZfQlQ$", to.data(), 2));
  EXPECT_EQ("value\0\0#"s, to.bytes());
}

TEST(SecureString, Pairs) {
  const S tooLong(1024, 'n');
  for (const auto& [name, value, result, written] :
       Rows<S, S, bool, S>{{"name", "value", true, "VjZeUg$$=TjZfQlQ$"},
                           {"name", "", false, "VjZeUg$$="},
                           {"name", tooLong, false, "VjZeUg$$="},
                           {"", "value", false, ""},
                           {tooLong, "value", false, tooLong}}) {
    GuardedText to(S(std::max(written.size(), name.size()), '#'));
    EXPECT_EQ(result, CPHPOperations(kKey).ConvertToSecureKeyValuePair(name.c_str(), value.c_str(),
                                                                       to.get(), 1));
    EXPECT_EQ(written, to.text());
  }
}

TEST(SecureCommand, Forms) {
  for (const auto& [plain, secure, back] :
       Rows<S, S, S>{// there and back
                     {"p?name=value", "1 p?VjZeUg$$=TjZfQlQ$", "1 p?name=value"},
                     {"a=1", "1 WQ$$=CQ$$", "1 a=1"},
                     {"p?a=b?a=1", "1 p?a=b?WQ$$=CQ$$", "1 p?a=b?a=1"},
                     {"?k==v", "1 ?Uw$$=BSE$", "1 ?k==v"},
                     // with something lost
                     {"p?&a=1&&k=1&", "1 p?WQ$$=CQ$$&Uw$$=CQ$$", "1 p?a=1&k=1"},
                     {"p?a&k=", "1 p?WQ$$=&Uw$$=", "1 p?a=&k="},
                     {"p?==a=1", "1 p?WQ$$=CQ$$", "1 p?a=1"},
                     // nothing to convert
                     {"", "0 ", "0 "},
                     {"page?", "0 page?", "0 page?"},
                     {"p?&&", "0 p?", "0 p?"},
                     {"p?a=1&==", "0 p?WQ$$=CQ$$&", "1 p?a=1"}}) {
    EXPECT_EQ(secure, transform(plain, 1));
    EXPECT_EQ(back, transform(secure.substr(2), 0));
    EXPECT_EQ(back, transform(secure.substr(2), 2));
  }
}

TEST(SecureCommand, FailuresKeepWhatWasRebuilt) {
  for (const auto& [secure, left] : Rows<const char*, const char*>{{"p?na-me=x", "0 p?"},
                                                                   {"p?WQ$$=CQ$$&n-=x", "0 p?a=1&"},
                                                                   {"p?WQ$$=no.secret", "0 p?a="},
                                                                   {"p?WQ$$=AAAA", "0 p?a="}})
    EXPECT_EQ(left, transform(secure, 0));
  EXPECT_EQ("0 p?", transform("p?a=1", 1, ""));
  char command[] = "a=1";
  EXPECT_FALSE(CPHPOperations(kKey).ConvertToSecurePhpCommand(command, 0) ||
               CPHPOperations(kKey).ConvertToPlainPhpCommand(nullptr, 1));
  EXPECT_STREQ("a=1", command);
}

TEST(SecureCommand, Limits) {
  const auto pair = [](std::size_t name, std::size_t value) {
    return S(name, 'n') + "=" + S(value, 'v');
  };
  for (std::size_t length : {764, 765, 766, 1023, 1024}) {
    EXPECT_EQ(length <= 765 ? '1' : '0', transform(pair(length, 1), 1)[0]) << length;
    const S secure = transform(pair(1, length), 1);
    EXPECT_EQ(length <= 1023 ? '1' : '0', secure[0]) << length;
    EXPECT_EQ(length <= 765, transform(secure.substr(2), 0) == "1 " + pair(1, length)) << length;
  }
  S longest = S(9000, 'p') + "?" + pair(500, 499);
  for (int i = 0; i < 4; ++i) longest += "&" + pair(500, 499);
  longest.resize(9001 + 5119, '&');
  EXPECT_EQ('1', transform(longest, 1)[0]);
  EXPECT_EQ("0 " + longest + "&", transform(longest + "&", 1));
}

TEST(SecureTool, Commands) {
  const ScratchDirectory scratch;
  putFile(scratch / "key", kKey + "\r\nsecond line\n"s);
  putFile(scratch / "empty", "\n");
  for (const auto& [key, words, status, out] : Rows<S, std::vector<S>, int, S>{
           {kKey, {"plain", "p?VjZeUg$$=TjZfQlQ$"}, 0, "p?name=value\n"},
           {"x", {"secure", "a=1", "--key-file", scratch / "key"}, 0, "WQ$$=CQ$$\n"},
           {"", {"plain", "a=1"}, 1, ""},
           {kKey, {"secure", "a=1", "--key-file", scratch / "empty"}, 1, ""},
           {kKey, {"secure", "a=1", "--key-file", scratch / "none"}, 1, ""}}) {
    ::setenv("ZRTOOL_KEY", key.c_str(), 1);
    const Outcome outcome = runTool(words);
    EXPECT_EQ(status, outcome.status) << words.back() << outcome.err;
    EXPECT_EQ(out, outcome.out) << words.back();
  }
}
