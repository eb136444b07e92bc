#include <zrcommon/network.h>

#include <cstring>
#include <limits>
#include <sstream>

#include "base/product_files.h"
#include "network/directory_record.h"
#include "tools/commands.h"
#include "tools/input.h"
#include "tools/new_file.h"

using namespace zrcommon;

namespace {

// A line of the text form: number, name and value with a tab after each of the first two.
class TextLine {
 public:
  TextLine(std::string text, std::size_t number) : text_(std::move(text)), number_(number) {}

  DirectoryRecord parse() const {
    if (text_.find('\0') != std::string::npos) refuse("a zero byte fits into no text");
    if (!text_.empty() && text_.back() == '\r')
      refuse("a carriage return at the end would belong to the value");
    const std::size_t first = text_.find('\t');
    const std::size_t second = first == std::string::npos ? first : text_.find('\t', first + 1);
    if (second == std::string::npos) refuse("not number, name and value with tabs between them");
    DirectoryRecord record = {};
    record.number = parseNumber(text_.substr(0, first));
    setText(record.name, text_.substr(first + 1, second - first - 1), "name");
    setText(record.value, text_.substr(second + 1), "value");
    return record;
  }

 private:
  [[noreturn]] void refuse(const std::string& reason) const {
    throw Refusal("line " + std::to_string(number_) + ": " + reason + "; nothing was written");
  }

  std::uint32_t parseNumber(const std::string& digits) const {
    const bool isPlain = !digits.empty() && digits.size() <= 10 &&
                         digits.find_first_not_of("0123456789") == std::string::npos &&
                         (digits == "0" || digits[0] != '0');
    const unsigned long number = isPlain ? std::stoul(digits) : 0;
    if (!isPlain || number > std::numeric_limits<std::uint32_t>::max())
      refuse("the number \"" + digits + "\" is not a plain decimal one of at most 4294967295");
    return static_cast<std::uint32_t>(number);
  }

  void setText(char (&field)[kDirectoryTextBytes], const std::string& text,
               const char* what) const {
    if (text.size() >= sizeof field)
      refuse(std::string("the ") + what + " has " + std::to_string(text.size()) +
             " bytes; its field takes " + std::to_string(sizeof field - 1));
    text.copy(field, text.size());
  }

  std::string text_;
  std::size_t number_;
};

void pack(const std::string& file) {
  std::istringstream lines(standardInput());
  std::string stored;
  std::size_t lineNumber = 0;
  for (std::string line; std::getline(lines, line);) {
    DirectoryRecord record = TextLine(std::move(line), ++lineNumber).parse();
    swapStored(record);
    stored.append(reinterpret_cast<const char*>(&record), sizeof record);
  }
  if (stored.empty()) throw Refusal("standard input is empty; nothing was written");
  NewFile packed(file);
  packed.write(stored);
  packed.commit();
}

std::string textOf(const char (&field)[kDirectoryTextBytes]) {
  return {field, ::strnlen(field, sizeof field)};
}

// A tab in a name and a line feed in a text would read as other fields.
bool fitsIntoALine(const std::string& name, const std::string& value) {
  return (name + value).find('\n') == std::string::npos && name.find('\t') == std::string::npos;
}

// Returns what keeps the record from being printed as text.
std::string print(const DirectoryRecord& record, std::size_t number, Output& out) {
  const std::string name = textOf(record.name);
  const std::string value = textOf(record.value);
  const bool isPrinted = out.isJson || fitsIntoALine(name, value);
  if (isPrinted)
    out.entry({{"number", record.number}, {"name", name}, {"value", value}},
              std::to_string(record.number) + '\t' + name + '\t' + value);
  return isPrinted
             ? ""
             : "; record " + std::to_string(number) + " holds a tab in its name or a line feed";
}

void list(const std::string& file, Output& out) {
  const std::string stored = InputFile(file).content();
  std::string problems;
  std::size_t at = 0;
  out.startList();
  for (DirectoryRecord record; at + sizeof record <= stored.size(); at += sizeof record) {
    std::memcpy(&record, stored.data() + at, sizeof record);
    swapStored(record);
    problems += print(record, at / sizeof record + 1, out);
  }
  if (at < stored.size())
    problems += "; " + std::to_string(stored.size() - at) + " bytes at the end are no record";
  if (!problems.empty()) throw Refusal("not all of " + file + " was listed" + problems);
}

struct GetArguments {
  unsigned int number = 0;
  std::string name;
};

void get(const GetArguments& arguments, Output& out) {
  char value[kDirectoryTextBytes + 1] = {};
  if (!GetValueFromInfoEml(arguments.number, arguments.name.c_str(), value, sizeof value))
    throw Refusal("there is no entry " + std::to_string(arguments.number) + " named \"" +
                  arguments.name + "\" in " + kDirectoryPath.get() +
                  (arguments.number ? "" : ": number 0 is never found"));
  out.result({{"value", value}}, value);
}

}  // namespace

void addDirectoryCommands(CLI::App& app, Output& out) {
  auto* family = app.add_subcommand("directory", "The server address directory");
  requireAction(family);

  auto* listing =
      family->add_subcommand("list", "Print it as lines: number, tab, name, tab, value");
  auto listed = std::make_shared<std::string>(kDirectoryPath.get());
  listing->add_option("FILE", *listed, "Directory file")->capture_default_str();
  listing->callback([listed, &out] { list(*listed, out); });

  auto* getting =
      family->add_subcommand("get", "Print the value of an entry of the installed file");
  auto arguments = std::make_shared<GetArguments>();
  getting->add_option("NUMBER", arguments->number, "Entry number")
      ->required()
      ->transform(numberFrom(0, 0xFFFFFFFF));
  getting->add_option("NAME", arguments->name, "Entry name, in upper or lower case")->required();
  getting->callback([arguments, &out] { get(*arguments, out); });

  auto* packing = family->add_subcommand(
      "pack", "Write a directory file from lines, as list prints them, on standard input");
  auto packed = std::make_shared<std::string>();
  packing->add_option("FILE", *packed, "Directory file to create or replace")->required();
  packing->callback([packed] { pack(*packed); });
}
