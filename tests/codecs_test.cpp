#include <zrcommon/codecs.h>

#include <algorithm>
#include <vector>

#include "support/dice.h"
#include "support/placed.h"

namespace {

constexpr char kKey[] = "8W371KJ05926143DCF57";

const struct {
  std::string plain, mixed, encoded, secure;
} kAnswers[] = {
#include "answers/secure_answers.inc"
};

;

// What Decode makes of a buffer of which `capacity` bytes are the caller's, bit by bit.
std::string modelDecode(const std::string& text, std::size_t capacity) {
  const std::string symbols = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_!";
  std::string result = text + '\0';
  result.resize(std::max(result.size(), capacity));
  std::fill_n(result.begin(), capacity, '\0');
  for (std::size_t at = 0, to = 0; at < text.size(); at += 4, to += 3) {
    const std::string group = (text.substr(at, 4) + "AAA").substr(0, 4);
    unsigned bits = 0;
    for (const char symbol : group)
      bits = bits << 6 | unsigned(std::min<std::size_t>(symbols.find(symbol), 63));
    for (std::size_t i = 0; i < 3 && to + i < result.size(); ++i)
      if (i == 0 || group[i + 1] != '$') result[to + i] = static_cast<char>(bits >> (16 - 8 * i));
  }
  return result;
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
  EXPECT_EQ(0x03, BRol(0x81, 1));
  EXPECT_EQ(0xC0, BRor(0x81, 1));
}

TEST(Rotations, Blocks) {
  for (std::size_t length = 0; length < 300; ++length) {
    Guarded block(length), swapped(length);
    std::string bytes, rotated, halves;
    for (std::size_t i = 0; i < length; ++i) {
      bytes.push_back(static_cast<char>(i * 7));
      rotated.push_back(ByteRotateLeft(static_cast<unsigned char>(i * 7), 3));
      halves.push_back(ByteRotateLeft(static_cast<unsigned char>(i * 7), 4));
    }
    std::copy(bytes.begin(), bytes.end(), block.data());
    EXPECT_EQ(length > 0, EncryptBlock(block.data(), unsigned(length)));
    EXPECT_EQ(rotated, block.bytes());
    EXPECT_EQ(length > 0, DecryptBlock(block.data(), unsigned(length)));
    EXPECT_EQ(bytes, block.bytes());
    Encrypt(block.data<unsigned char>(), int(length));
    EXPECT_EQ(halves, block.bytes());
    Decrypt(block.data<unsigned char>(), int(length));
    EXPECT_EQ(bytes, block.bytes());
    Encrypt(block.data<unsigned char>(), -1);
    EXPECT_EQ(bytes, block.bytes());
  }
  Encrypt(nullptr, 1);
  EXPECT_FALSE(EncryptBlock(nullptr, 1) || DecryptBlock(nullptr, 1));
}

TEST(Crypt, KnownAnswers) {
  CCrypt crypt(kKey);
  for (const auto& answer : kAnswers) {
    Placed<char> text(answer.plain);
    EXPECT_TRUE(crypt.Encrypt(text.get()));
    EXPECT_EQ(answer.mixed, text.text());
    EXPECT_TRUE(crypt.Decrypt(text.get()));
    EXPECT_EQ(answer.plain, text.text());
  }
  char empty[] = "";
  EXPECT_FALSE(crypt.Encrypt(nullptr) || crypt.Encrypt(empty));
}

TEST(Crypt, AgreesWithTheModelForEveryKeyLength) {
  Dice dice;
  for (std::size_t keyLength = 1; keyLength < 70; ++keyLength)
    for (std::size_t length : {1, 2, 63, 64, 65, 127, 128, 129, 200, 1000}) {
      const std::string key = dice.text<std::string>(keyLength, "ab\xFF"),
                        plain = dice.text<std::string>(length, "abc\xFF");
      const std::string used = key.substr(0, 63);
      std::string expected = plain;
      for (std::size_t i = 0; i < length; ++i)
        if (plain[i] != used[i % used.size()]) expected[i] ^= used[i % used.size()];
      Placed<char> text(plain);
      EXPECT_TRUE(CCrypt(key.c_str()).Encrypt(text.get()));
      EXPECT_EQ(expected, text.text()) << "key " << key;
    }
}

TEST(Crypt, KeysThatAreNone) {
  char text[] = "text";
  EXPECT_FALSE(CCrypt("").Encrypt(text));
  EXPECT_STREQ("text", text);
  const auto thrownBy = [](auto make) {
    try {
      make();
    } catch (int thrown) {
      return thrown;
    }
    return 0;
  };
  EXPECT_EQ(1, thrownBy([] { CCrypt crypt(nullptr); }));
  EXPECT_EQ(1, thrownBy([] { CPHPOperations operations(nullptr); }));
}

TEST(Base64, KnownAnswers) {
  CBase64Url base64;
  for (const auto& answer : kAnswers) {
    Placed<char> text(answer.plain +
                      std::string(answer.encoded.size() - answer.plain.size(), '\0'));
    EXPECT_TRUE(base64.Encode(text.get(), 1));
    EXPECT_EQ(answer.encoded, text.text());
    EXPECT_TRUE(base64.IsBase64(text.get()));
    EXPECT_TRUE(base64.Decode(text.get(), unsigned(text.size())));
    EXPECT_EQ(answer.plain, text.text());
  }
  for (int value = 0; value < 256; ++value) {
    const char symbol = base64.GetBase64Symbol(static_cast<unsigned char>(value));
    EXPECT_EQ(std::min(value, 63), base64.GetASCIISymbol(symbol)) << value;
  }
  for (const char stranger : {'$', '!', '+', '\0', '\xE9'})
    EXPECT_EQ(63, base64.GetASCIISymbol(stranger));
}

TEST(Base64, Limits) {
  CBase64Url base64;
  for (std::size_t length : {1023, 1024}) {
    const std::string bytes(length, 'M');
    Placed<char> text(bytes + std::string(1364 - length, '\0'));
    EXPECT_EQ(length < 1024, base64.Encode(text.get(), 1));
    EXPECT_EQ(length < 1024 ? 1364 : length, text.text().size());
    Placed<char> encoded(bytes);
    EXPECT_EQ(length < 1024, base64.Decode(encoded.get(), 1));
    EXPECT_EQ(length < 1024, encoded.bytes() != bytes + '\0');
  }
}

TEST(Base64, Refusals) {
  CBase64Url base64;
  EXPECT_FALSE(base64.IsBase64(nullptr) || base64.Encode(nullptr, 1) || base64.Decode(nullptr, 1));
  EXPECT_TRUE(base64.IsBase64(""));
  char empty[] = "";
  EXPECT_FALSE(base64.Encode(empty, 1) || base64.Decode(empty, 1));
  for (int byte = 1; byte < 256; ++byte) {
    const bool isGood = std::isalnum(byte) || byte == '_' || byte == '!' || byte == '$';
    for (std::size_t at = 0; at < 7; ++at) {
      std::string text = "QUJDREV";
      text[at] = static_cast<char>(byte);
      Placed<char> buffer(text);
      EXPECT_FALSE(base64.Decode(buffer.get(), 0));
      EXPECT_EQ(isGood, base64.IsBase64(buffer.get())) << byte;
      EXPECT_EQ(isGood, base64.Decode(buffer.get(), 8)) << byte;
      EXPECT_EQ(isGood, buffer.text() != text) << byte;
    }
  }
}

TEST(Base64, DecodesWhatNobodyEncoded) {
  Dice dice;
  for (int round = 0; round < 5000; ++round) {
    const std::string text =
        dice.text<std::string>(1 + dice.below(round % 9 ? 12 : 1023), "AZaz09_!$");
    const std::size_t capacity = 1 + dice.below(text.size() + 8);
    Placed<char> buffer(text, capacity > text.size() + 1 ? capacity - text.size() - 1 : 0);
    ASSERT_TRUE(CBase64Url().Decode(buffer.get(), unsigned(capacity)));
    ASSERT_EQ(modelDecode(text, capacity), buffer.bytes()) << text << ' ' << capacity;
  }
}

TEST(Utf8, Placeholders) {
  CUTF8 utf8;
  char narrow[] = "n";
  Wide wide[] = {'w', 0};
  EXPECT_TRUE(utf8.Encode(wide, narrow, 1) && utf8.Decode(narrow, wide, 1));
  EXPECT_FALSE(utf8.Encode(nullptr, narrow, 1) || utf8.Encode(wide, nullptr, 1) ||
               utf8.Encode(wide, narrow, 0));
  EXPECT_FALSE(utf8.Decode(nullptr, wide, 1) || utf8.Decode(narrow, nullptr, 1) ||
               utf8.Decode(narrow, wide, 0));
  EXPECT_STREQ("n", narrow);
  EXPECT_EQ('w', wide[0]);
}
