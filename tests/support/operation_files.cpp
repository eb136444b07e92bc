#include <algorithm>
#include <cstdio>
#include <filesystem>

#include "support/files.h"
#include "support/operations.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* kPlaces[] = {"/scratch", "/usr/lib/Valdrix/Valdrix", "/etc/init.d"};

// What a file holds, if that is short; else how much. The loader's messages differ by machine, so
// of a log the lines are counted.
std::string contentOf(const fs::path& path) {
  std::string content = getFile(path);
  const auto lines = std::count(content.begin(), content.end(), '\n');
  if (path.extension() == ".log") return std::to_string(lines) + " lines";
  if (content.size() > 20) return std::to_string(content.size()) + " bytes";
  std::replace(content.begin(), content.end(), '\r', '^');
  std::replace(content.begin(), content.end(), '\n', '|');
  return "'" + content + "'";
}

std::string describe(const fs::path& path) {
  char mode[8];
  std::snprintf(mode, sizeof mode, "%04o", modeOf(path));
  return path.filename().string() + " " + contentOf(path) + " " + mode;
}

std::vector<std::string> filesOfOperations() {
  std::vector<std::string> files;
  for (const char* place : kPlaces)
    for (const auto& entry : fs::directory_iterator(place))
      if (entry.is_regular_file()) files.push_back(describe(entry.path()));
  if (isThere("/zrcommon.log")) files.push_back(describe("/zrcommon.log"));
  std::sort(files.begin(), files.end());
  return files;
}

// What one sorted list lacks of another, each entry behind the mark.
std::string missing(const std::vector<std::string>& from, const std::vector<std::string>& list,
                    const char* mark) {
  std::string text;
  for (const std::string& each : list)
    if (!std::binary_search(from.begin(), from.end(), each)) text += mark + ("(" + each + ")");
  return text;
}

}  // namespace

Changes::Changes() : before_(filesOfOperations()) {}

std::string Changes::text() const {
  const std::vector<std::string> after = filesOfOperations();
  return missing(after, before_, " -") + missing(before_, after, " +");
}

void prepare(const Operation& operation) {
  for (const char* place : kPlaces)
    for (const auto& entry : fs::directory_iterator(place))
      if (entry.is_regular_file()) fs::remove(entry.path());
  fs::remove("/zrcommon.log");
  operation.prepare();
}

std::string outcomeOf(const Operation& operation) {
  prepare(operation);
  const Changes changes;
  Result result;
  operation.call(result);
  return result.text() + changes.text();
}
