#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <functional>

#include "base/install_path.h"
#include "tools/commands.h"

using namespace zrcommon;

namespace {

class Report {
 public:
  explicit Report(Output& out) : out_(out) {}

  void good(const std::string& line) { add("ok", "ok       ", line); }
  void note(const std::string& line) { add("note", "note     ", line); }
  void bad(const std::string& line) {
    add("problem", "PROBLEM  ", line);
    ++problems_;
  }
  int problems() const { return problems_; }

 private:
  void add(const char* status, const char* mark, const std::string& line) {
    out_.entry({{"status", status}, {"message", line}}, mark + line);
  }

  Output& out_;
  int problems_ = 0;
};

std::string installed(const std::string& name) {
  return kInstallDirectory + name;
}

std::string systemReason() {
  return std::strerror(errno);
}

// The library that this process uses, which LD_LIBRARY_PATH or a copy left behind may have decided.
void checkLibrary(Report& report) {
  Dl_info info = {};
  const void* const anyOperation = ::dlsym(RTLD_DEFAULT, "ZRLoadLibrary");
  if (!anyOperation || !::dladdr(anyOperation, &info))
    return report.bad("library: the loader does not tell where it is");
  std::error_code problem;
  const std::string path = std::filesystem::canonical(info.dli_fname, problem);
  const std::string line = "library " + (problem ? info.dli_fname : path);
  const std::string expected = "libzrcommon.so." ZRCOMMON_VERSION;
  if (std::filesystem::path(path).filename() == expected) return report.good(line);
  report.note(line + ": not the " + expected + " that this zrtool belongs to");
}

// Any mode but 0666 keeps the components of some users from writing, until one of its owner does.
void checkLog(Report& report) {
  constexpr char kLog[] = "/zrcommon.log";
  std::error_code noLink;
  const std::string target = std::filesystem::read_symlink(kLog, noLink);
  const std::string line = "log " + (std::string(kLog) + (noLink ? ": " : " -> " + target + ": "));
  struct stat status = {};
  if (::stat(kLog, &status) != 0)
    return errno == ENOENT ? report.note(line +
                                         "none; no module failed to load since it was last "
                                         "moved away, or only users who may not write to / "
                                         "had one fail")
                           : report.bad(line + systemReason());
  if (!S_ISREG(status.st_mode)) return report.bad(line + "not a regular file");
  char mode[8];
  std::snprintf(mode, sizeof mode, "%04o", status.st_mode & 07777U);
  const std::string facts =
      line + std::to_string(status.st_size) + " bytes, mode " + std::string(mode);
  if ((status.st_mode & 0666U) == 0666U) return report.good(facts);
  report.note(facts + ": components of other users cannot write to it");
}

void checkDirectory(Report& report) {
  struct stat status = {};
  if (::stat(kInstallDirectory, &status) != 0)
    report.bad(std::string("installation directory ") + kInstallDirectory + ": " + systemReason());
  else if (!S_ISDIR(status.st_mode))
    report.bad(std::string("installation directory ") + kInstallDirectory + ": not a directory");
  else
    report.good(std::string("installation directory ") + kInstallDirectory);
}

void checkEntryPoints(Report& report, void* module) {
  for (const char* name :
       {"GetHeader", "InetOpenFile", "InetReadFile", "InetCloseFile", "IsInternetFilePresent"}) {
    if (::dlsym(module, name))
      report.good(std::string("libinet.so entry point ") + name);
    else
      report.bad(std::string("libinet.so entry point ") + name +
                 ": missing, so nothing is fetched");
  }
}

// With the loader's own call: ZRLoadLibrary would write a failure to the product's log.
void checkInternetLibrary(Report& report) {
  const std::string path = installed("libinet.so");
  void* const module = ::dlopen(path.c_str(), RTLD_NOW);
  if (!module) return report.bad("internet library: " + std::string(::dlerror()));
  report.good("internet library " + path + " loads");
  checkEntryPoints(report, module);
  ::dlclose(module);
}

struct ProductFile {
  const char* name;
  const char* purpose;
  const char* whenMissing;
  const char* rightSize;
  std::function<bool(off_t)> hasRightSize;
};

void checkFile(Report& report, const ProductFile& file) {
  const std::string path = installed(file.name);
  const std::string line = std::string(file.purpose) + " " + path;
  struct stat status = {};
  if (::stat(path.c_str(), &status) != 0)
    return errno == ENOENT ? report.note(line + ": missing; " + file.whenMissing)
                           : report.bad(line + ": " + systemReason());
  if (!S_ISREG(status.st_mode)) return report.bad(line + ": not a regular file");
  if (::access(path.c_str(), R_OK) != 0) return report.bad(line + ": " + systemReason());
  if (!file.hasRightSize(status.st_size))
    return report.bad(line + ": " + std::to_string(status.st_size) + " bytes instead of " +
                      file.rightSize);
  report.good(line);
}

// What a writer of profiles that was ended half-way leaves behind.
void checkLeftOvers(Report& report) {
  std::error_code ignored;
  for (const auto& entry : std::filesystem::directory_iterator(kInstallDirectory, ignored)) {
    const std::filesystem::path& copy = entry.path();
    if (copy.extension() != ".tmp") continue;
    const std::string profile = copy.parent_path() / copy.stem();
    const std::string advice = "; see zrtool profile recover " + profile;
    if (::access(profile.c_str(), F_OK) == 0)
      report.note("temporary file " + copy.string() + ": left over" + advice);
    else
      report.bad("temporary file " + copy.string() + ": what it was to replace is gone" + advice);
  }
}

void examine(Output& out) {
  const ProductFile files[] = {
      {"zrinet.opt", "internet settings", "all settings count as zero", "at least 788",
       [](off_t size) { return size >= 788; }},
      {"infoeml.dat", "server directory", "no server address is known", "a multiple of 524",
       [](off_t size) { return size > 0 && size % 524 == 0; }},
      {"zrfeature.dat", "feature record", "no feature is set", "at least 11",
       [](off_t size) { return size >= 11; }},
  };
  Report report(out);
  checkLibrary(report);
  checkDirectory(report);
  checkInternetLibrary(report);
  for (const ProductFile& file : files) checkFile(report, file);
  checkLeftOvers(report);
  checkLog(report);
  if (report.problems())
    throw Refusal("checks that found a problem: " + std::to_string(report.problems()));
}

}  // namespace

void addDoctorCommand(CLI::App& app, Output& out) {
  app.add_subcommand("doctor", "Check the installation, one line for each check")->callback([&out] {
    examine(out);
  });
}
