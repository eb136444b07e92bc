#ifndef ZRCOMMON_TESTS_SUPPORT_CASE_ROW_H
#define ZRCOMMON_TESTS_SUPPORT_CASE_ROW_H

#include <gtest/gtest.h>

#include <list>
#include <string>
#include <type_traits>

#include "support/guarded.h"

/// One row of a case file, read from left to right: a call, its result, and the text that the call
/// leaves. The first lines of tests/cases/strings.txt say how to read a row.
class CaseRow {
 public:
  /// @param after    units between the end of each text and the unreadable page
  /// @param refused  the number of the argument that is null or 0 instead, counted from 0
  CaseRow(const std::string& row, std::size_t after, std::size_t refused)
      : row_(row), after_(after), refused_(refused) {}

  /// The name before the '('.
  std::string function() {
    at_ = row_.find('(') + 1;
    return row_.substr(0, at_ - 1);
  }

  template <typename Parameter>
  Parameter argument() {
    take(",");
    Parameter value = {};
    if constexpr (std::is_pointer_v<Parameter>)
      value = text<std::remove_pointer_t<Parameter>>();
    else
      value = static_cast<Parameter>(number());
    return refused_-- == 0 ? Parameter{} : value;
  }

  /// The result as a number: for a pointer the place in the first text, -1 for null.
  template <typename Result>
  long long number(Result result) {
    if constexpr (std::is_pointer_v<Result>)
      return result ? result - reinterpret_cast<Result>(texts_.front().data()) : -1;
    else
      return sizeof result == 1 ? result & 0xFF : result;
  }

  long long expectedResult() {
    take(")");
    take("=");
    if (take("null")) return -1;
    if (take("false")) return 0;
    if (take("true")) return 1;
    take("at");
    return number();
  }

  /// Compares the texts with those of the row, or with what they were.
  void checkTexts(bool areUnchanged) {
    if (!areUnchanged && output_ && take(",")) *output_ = bytes(outputUnitBytes_);
    auto expected = expected_.begin();
    for (const Guarded& text : texts_) {
      EXPECT_EQ(*expected, text.bytes().substr(0, expected->size()));
      ++expected;
    }
  }

 private:
  bool take(const std::string& token) {
    at_ = std::min(row_.find_first_not_of(' ', at_), row_.size());
    const bool isNext = row_.compare(at_, token.size(), token) == 0;
    if (isNext) at_ += token.size();
    return isNext;
  }

  // One character, or \0, \x with two hexadecimal digits, \u with four.
  int unit() {
    const auto character = static_cast<unsigned char>(row_.at(at_++));
    if (character != '\\') return character;
    const char escape = row_.at(at_++);
    const std::size_t digits = escape == 'x' ? 2 : escape == 'u' ? 4 : 0;
    at_ += digits;
    return std::stoi("0" + row_.substr(at_ - digits, digits), nullptr, 16);
  }

  int number() {
    const bool isCharacter = take("'");
    std::size_t size = 1;
    const int value = isCharacter ? unit() : std::stoi(row_.substr(at_), &size, 0);
    at_ += size;
    return value;
  }

  // "abc"*2 "de" is terminated, ["abc"] is not.
  std::string bytes(std::size_t unitBytes) {
    const bool isTerminated = !take("[");
    std::string all;
    while (take("\"")) {
      std::string piece;
      while (row_.at(at_) != '"') {
        const int each = unit();
        piece += static_cast<char>(each);
        if (unitBytes == 2) piece += static_cast<char>(each >> 8);
      }
      ++at_;
      for (int times = take("*") ? number() : 1; times > 0; --times) all += piece;
    }
    if (isTerminated) return all.append(unitBytes, '\0');
    take("]");
    return all;
  }

  template <typename Unit>
  Unit* text() {
    if (take("null")) return nullptr;
    constexpr std::size_t kUnitBytes = std::is_same_v<const Unit, const unsigned short> ? 2 : 1;
    expected_.push_back(bytes(kUnitBytes));
    if (!std::is_const_v<Unit>) {
      output_ = &expected_.back();
      outputUnitBytes_ = kUnitBytes;
    }
    return texts_.emplace_back(expected_.back(), after_ * kUnitBytes).template data<Unit>();
  }

  std::string row_;
  std::size_t after_;
  std::size_t refused_;
  std::size_t at_ = 0;
  std::list<Guarded> texts_;
  std::list<std::string> expected_;
  std::string* output_ = nullptr;
  std::size_t outputUnitBytes_ = 0;
};

#endif  // ZRCOMMON_TESTS_SUPPORT_CASE_ROW_H
