#ifndef ZRCOMMON_TESTS_SUPPORT_GUARDED_CALL_H
#define ZRCOMMON_TESTS_SUPPORT_GUARDED_CALL_H

#include <csignal>
#include <functional>
#include <iostream>
#include <list>

#include "support/test.h"

/// A number, or a text with its terminator.
struct Argument {
  Argument(long value) : number(value) {}
  template <typename Char>
  Argument(const std::basic_string<Char>& text)
      : bytes(reinterpret_cast<const char*>(text.c_str()), (text.size() + 1) * sizeof(Char)),
        unitBytes(sizeof(Char)) {}
  template <typename Char, std::size_t Size>
  Argument(const Char (&text)[Size]) : Argument(std::basic_string<Char>(text, Size - 1)) {}

  long number = 0;
  S bytes;
  std::size_t unitBytes = 1;
};

/// A text without its terminator.
inline Argument raw(Argument text) {
  text.bytes.resize(text.bytes.size() - text.unitBytes);
  return text;
}

template <typename Char, std::size_t Size>
std::basic_string<Char> times(int count, const Char (&text)[Size]) {
  std::basic_string<Char> all;
  while (count-- > 0) all.append(text, Size - 1);
  return all;
}

constexpr int kNull = -1;

/// A row: a call of a function, made with every text at several distances from an unreadable page.
/// Then it is refused: with each text null and, if it returns a bool, with a capacity of 0.
template <typename Result, typename... Parameter>
class GuardedCall {
 public:
  GuardedCall(std::function<Result(Parameter...)> function, std::vector<Argument> arguments)
      : function_(function), arguments_(arguments) {}

  /// @param result  for a pointer the place in the first text
  /// @param output  the beginning of what is left in the text that the function may change; without
  ///                it no text may change, as in refused calls
  void gives(long result, const Argument& output = 0, int line = __builtin_LINE()) const {
    static int lineOfCall;
    lineOfCall = line;
    std::signal(SIGSEGV, [](int) { std::cerr << "crash in line " << lineOfCall, ::_exit(1); });
    for (const std::size_t distance : {0, 1, 2, 7, 8, 15, 16, 31, 40, 63, 4096}) {
      SCOPED_TRACE(testing::Message()
                   << "line " << line << ", " << distance << " units before the unreadable page");
      run(distance, kNone, result, output.bytes);
      for (std::size_t refused = 0; refused < kNone; ++refused)
        if (kIsNeeded[refused]) run(distance, refused, kRefusal, "");
    }
    std::signal(SIGSEGV, SIG_DFL);
  }

 private:
  static constexpr std::size_t kNone = sizeof...(Parameter);
  static constexpr bool kIsNeeded[] = {
      std::is_pointer_v<Parameter> ||
      (std::is_same_v<Result, bool> && std::is_same_v<Parameter, unsigned int>)...};
  static constexpr bool kIsOutput[] = {std::is_pointer_v<Parameter> &&
                                       !std::is_const_v<std::remove_pointer_t<Parameter>>...};
  // Comparisons call the first argument greater.
  static constexpr long kRefusal = std::is_pointer_v<Result> ? kNull : std::is_same_v<Result, int>;

  void run(std::size_t distance, std::size_t refused, long expected, const S& output) const {
    std::list<Guarded> texts;
    std::size_t at = 0;
    // Gives the next argument, whose type is that of the parameter.
    const auto next = [&](auto value) {
      using Type = decltype(value);
      const Argument& argument = arguments_.at(at);
      Guarded& text = texts.emplace_back(argument.bytes, distance * argument.unitBytes);
      if constexpr (std::is_pointer_v<Type>)
        value = text.data<std::remove_pointer_t<Type>>();
      else
        value = static_cast<Type>(argument.number);
      return at++ == refused ? Type{} : value;
    };
    const std::tuple<Parameter...> values{next(Parameter{})...};
    const Result result = std::apply(function_, values);
    if constexpr (std::is_pointer_v<Result>)
      EXPECT_EQ(expected, result ? result - reinterpret_cast<Result>(texts.front().data()) : kNull);
    else
      EXPECT_EQ(expected, sizeof result == 1 ? result & 0xFF : result);
    at = 0;
    for (const Guarded& text : texts) {
      const bool changes = kIsOutput[at] && !output.empty();
      const S& wanted = changes ? output : arguments_[at].bytes;
      EXPECT_EQ(wanted, text.bytes().substr(0, wanted.size()));
      ++at;
    }
  }

  std::function<Result(Parameter...)> function_;
  std::vector<Argument> arguments_;
};

template <typename Result, typename... Parameter, typename... Each>
GuardedCall<Result, Parameter...> call(Result (*function)(Parameter...), const Each&... each) {
  return {function, {each...}};
}

#endif  // ZRCOMMON_TESTS_SUPPORT_GUARDED_CALL_H
