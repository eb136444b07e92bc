#include "tools/output.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

namespace {

constexpr std::size_t kFlushAt = 65536;

void writeAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = ::write(descriptor, text.data(), text.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw systemRefusal("writing to standard output");
    text.remove_prefix(static_cast<std::size_t>(count));
  }
}

bool isUtf8(std::string_view text) {
  try {
    (void)Json(text).dump();
    return true;
  } catch (const Json::exception&) {
    return false;
  }
}

bool isControl(unsigned char byte) {
  return byte < 0x20 || byte == 0x7F;
}

// U+0080 to U+009F, which terminals obey as well.
bool isLongControl(std::string_view text) {
  return text.size() >= 2 && text[0] == '\xC2' && static_cast<unsigned char>(text[1]) < 0xA0;
}

std::string hexadecimal(std::string_view bytes, const char* before) {
  std::string text;
  for (const char each : bytes) {
    char digits[3];
    (void)std::snprintf(digits, sizeof digits, "%02x", unsigned{static_cast<unsigned char>(each)});
    text.append(before).append(digits);
  }
  return text;
}

void replaceBytes(Json& json) {
  if (json.is_structured())
    for (Json& each : json) replaceBytes(each);
  else if (json.is_string() && !isUtf8(json.get_ref<const std::string&>()))
    json = {{"bytes", hexadecimal(json.get_ref<const std::string&>(), "")}};
}

// A list has one line for each entry.
std::string document(Json json) {
  replaceBytes(json);
  if (!json.is_array()) return json.dump() + '\n';
  std::string text;
  for (const Json& each : json) text += (text.empty() ? "[\n  " : ",\n  ") + each.dump();
  return text.empty() ? "[]\n" : text + "\n]\n";
}

Json errorOf(const Refusal& refusal) {
  Json error = {{"code", nullptr}};
  if (refusal.code()) error["code"] = *refusal.code();
  if (refusal.systemError()) error["system"] = errorName(refusal.systemError());
  error["message"] = printable(refusal.what());
  return {{"error", error}};
}

}  // namespace

std::string printable(std::string_view text, std::string_view allowed) {
  const bool isValid = isUtf8(text);
  std::string shown;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto byte = static_cast<unsigned char>(text[at]);
    const std::size_t length = isLongControl(text.substr(at)) ? 2 : 1;
    const bool isBad = byte >= 0x80 ? !isValid || length == 2 : isControl(byte);
    if (isBad && allowed.find(text[at]) == allowed.npos)
      shown += hexadecimal(text.substr(at, length), "\\x");
    else
      shown += text.substr(at, length);
    at += length - 1;
  }
  return shown;
}

void Output::result(Json json, const std::string& text) {
  result(std::move(json));
  print(text + '\n');
}

void Output::entry(Json json, const std::string& line) {
  startList();
  if (isJson) result_->push_back(std::move(json));
  print(line + '\n');
}

void Output::startList() {
  if (!result_) result_ = Json::array();
}

void Output::print(std::string_view text) {
  if (isJson) return;
  static const bool isTerminal = ::isatty(STDOUT_FILENO) == 1;
  text_ += isTerminal ? printable(text, "\n\t") : std::string(text);
  if (text_.size() >= kFlushAt) flush();
}

void Output::message(const std::string& text) {
  try {
    writeAll(STDERR_FILENO, "zrtool: " + printable(text) + '\n');
  } catch (const Refusal&) {
    // There is nowhere else to say it.
  }
}

void Output::flush() {
  std::string text;
  text.swap(text_);
  writeAll(STDOUT_FILENO, text);
}

void Output::finish() {
  if (isJson) text_ = document(result_.value_or(Json::object()));
  flush();
}

void Output::fail(const Refusal& refusal) {
  if (isJson && !result_) result_ = errorOf(refusal);
  try {
    finish();
  } catch (const Refusal& another) {
    message(another.what());
  }
  message(refusal.what());
}

void occupyStandardStreams() {
  for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor)
    if (::fcntl(descriptor, F_GETFD) < 0) (void)::open("/", O_PATH);
}
