#ifndef ZRCOMMON_TOOLS_OUTPUT_H
#define ZRCOMMON_TOOLS_OUTPUT_H

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "tools/refusal.h"

using Json = nlohmann::ordered_json;

/// Everything that zrtool prints. A command gives each result in both forms; the command line
/// decides which one is printed. With JSON, standard output is one document: the result, or the
/// error if there is no result. A string that is not valid UTF-8 becomes {"bytes": "HEXADECIMAL"}.
class Output {
 public:
  /// The whole result. The line end is added to the text.
  void result(Json json, const std::string& text);

  /// The JSON of a result whose text goes to print().
  void result(Json json) { result_ = std::move(json); }

  /// One entry of a result that is a list.
  void entry(Json json, const std::string& line);

  /// Makes the result a list, which may stay empty.
  void startList();

  /// Text as it is, without a line end; nothing with JSON. On a terminal, control characters other
  /// than the line feed and the tab are shown as "\x1b".
  void print(std::string_view text);

  /// "zrtool: MESSAGE" on standard error, on one line, at once.
  static void message(const std::string& text);

  /// Prints what is left. Throws Refusal if standard output does not take it.
  void finish();

  /// Prints what is left and the error.
  void fail(const Refusal& refusal);

  bool isJson = false;

 private:
  void flush();

  std::optional<Json> result_;
  std::string text_;
};

/// The text with control characters, and bytes that are not valid UTF-8, written as "\x1b".
std::string printable(std::string_view text, std::string_view allowed = "");

/// Gives closed standard streams a descriptor that can be neither read nor written, so that a file
/// that is opened later cannot take their numbers.
void occupyStandardStreams();

#endif  // ZRCOMMON_TOOLS_OUTPUT_H
