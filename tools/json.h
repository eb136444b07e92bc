#ifndef ZRCOMMON_TOOLS_JSON_H
#define ZRCOMMON_TOOLS_JSON_H

#include <cstddef>
#include <string>
#include <type_traits>
#include <vector>

/// A JSON string in its quotes. Bytes outside of ASCII are escaped one by one, so that each
/// character of the string stands for a byte: names and values need not be UTF-8, JSON has to be.
std::string jsonText(const std::string& text);

/// A JSON object on one line, its members in the order in which they are added.
class JsonObject {
 public:
  template <typename Value>
  JsonObject& add(const char* name, const Value& value) {
    members_ += (members_.empty() ? "" : ", ") + jsonText(name) + ": ";
    if constexpr (std::is_same_v<Value, bool>)
      members_ += value ? "true" : "false";
    else if constexpr (std::is_same_v<Value, std::nullptr_t>)
      members_ += "null";
    else if constexpr (std::is_arithmetic_v<Value>)
      members_ += std::to_string(value);
    else
      members_ += jsonText(value);
    return *this;
  }

  std::string text() const { return '{' + members_ + '}'; }

 private:
  std::string members_;
};

/// Prints to standard output.
void printJson(const JsonObject& object);
void printJson(const std::vector<JsonObject>& objects);

#endif  // ZRCOMMON_TOOLS_JSON_H
