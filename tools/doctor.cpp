#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zrcommon/network.h>
#include <zrcommon/system.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "base/file.h"
#include "base/product_files.h"
#include "network/directory_record.h"
#include "tools/commands.h"
#include "tools/internet_library.h"
#include "tools/report.h"

using namespace zrcommon;

namespace {

constexpr char kInstallTheProduct[] = "install the product, which creates it";

std::string modeText(mode_t mode) {
  char text[8];
  (void)std::snprintf(text, sizeof text, "%04o", mode & 07777U);
  return text;
}

std::string systemReason(int error) {
  return std::string(std::strerror(error)) + " (" + errorName(error) + ')';
}

// The library that this process uses. LD_LIBRARY_PATH or an old copy may have decided which one.
void checkLibrary(Report& report) {
  Dl_info info = {};
  const void* const anyOperation = ::dlsym(RTLD_DEFAULT, "ZRLoadLibrary");
  if (!anyOperation || !::dladdr(anyOperation, &info))
    return report.bad({"library", ""}, "the loader does not tell where it is",
                      "install the package libzrcommon1 again");
  std::error_code problem;
  const std::string path = std::filesystem::canonical(info.dli_fname, problem);
  const std::string expected = "libzrcommon.so." ZRCOMMON_VERSION;
  if (std::filesystem::path(path).filename() == expected)
    return report.good({"library", path}, "version " ZRCOMMON_VERSION);
  report.note({"library", problem ? info.dli_fname : path},
              "not the " + expected + " that this zrtool belongs to",
              "unset LD_LIBRARY_PATH, and install libzrcommon1 and zrtool in the same version");
}

enum class Writer { kRootOnly, kEveryone };

// Says what is wrong with owner and mode. Only root may be able to change what is run or believed.
bool hasBadOwner(Report& report, const Check& check, const struct stat& status, Writer writer) {
  const mode_t tooWide = writer == Writer::kRootOnly ? 0022U : 0111U;
  const bool isOwnerGood = writer == Writer::kEveryone || status.st_uid == 0;
  if (isOwnerGood && (status.st_mode & tooWide) == 0) return false;
  const std::string facts =
      "owner " + std::to_string(status.st_uid) + ", mode " + modeText(status.st_mode);
  if (writer == Writer::kEveryone)
    report.bad(check, facts + ": it must not be executable", "chmod 0666 " + check.path);
  else
    report.bad(check, facts + ": only root may be able to write to it",
               "chown root " + check.path + " && chmod go-w " + check.path);
  return true;
}

// Who can write to these can replace what lies in them.
void checkDirectories(Report& report) {
  for (const std::string path :
       {"/", "/usr/lib/Valdrix", "/usr/lib/Valdrix/Valdrix", "/etc/init.d"}) {
    const bool isInstallation = path.rfind("/usr", 0) == 0;
    const Check check = {isInstallation ? "installation-directory" : "directory", path};
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0) {
      if (isInstallation) report.bad(check, systemReason(errno), kInstallTheProduct);
    } else if (!S_ISDIR(status.st_mode)) {
      report.bad(check, "not a directory", "move it away and " + std::string(kInstallTheProduct));
    } else if (!hasBadOwner(report, check, status, Writer::kRootOnly)) {
      report.good(check, "only root can write in it");
    }
  }
}

void checkInternetLibrary(Report& report) {
  const Check check = {"internet-library", kInetLibraryPath.get()};
  struct stat status = {};
  if (::stat(check.path.c_str(), &status) == 0)
    (void)hasBadOwner(report, check, status, Writer::kRootOnly);
  const std::string problem = internetLibraryProblem();
  if (problem.empty()) return report.good(check, "loads and has its five entry points");
  report.bad(check, problem, "install the product, or a stand-in module for tests");
}

struct ProductFile {
  Check check;
  const char* whenMissing;
  Writer writer;
  off_t recordSize;
  bool isSequence;
};

bool hasRightSize(const ProductFile& file, off_t size) {
  return file.isSequence ? size > 0 && size % file.recordSize == 0 : size >= file.recordSize;
}

void checkFile(Report& report, const ProductFile& file) {
  const std::string& path = file.check.path;
  struct stat status = {};
  if (::stat(path.c_str(), &status) != 0 && errno == ENOENT)
    return report.note(file.check, std::string("missing; ") + file.whenMissing);
  if (::access(path.c_str(), R_OK) != 0)
    return report.bad(file.check, systemReason(errno), "run zrtool doctor as root");
  if (!S_ISREG(status.st_mode))
    return report.bad(file.check, "not a regular file", "remove it and install the product again");
  if (!hasRightSize(file, status.st_size))
    return report.bad(file.check,
                      std::to_string(status.st_size) + " bytes instead of " +
                          (file.isSequence ? "a multiple of " : "at least ") +
                          std::to_string(file.recordSize),
                      "restore it from a backup, or install the product again");
  if (!hasBadOwner(report, file.check, status, file.writer))
    report.good(file.check, "mode " + modeText(status.st_mode));
}

// "zrtool check" and the components ask the server whose address this entry holds.
void checkEntry(Report& report) {
  const Check check = {"connection-check", kDirectoryPath.get()};
  char address[kDirectoryTextBytes + 1] = {};
  const bool isFound = GetValueFromInfoEml(12, "Connection Check", address, sizeof address) == 1;
  const std::size_t length = std::strlen(address);
  if (isFound && 0 < length && length + (address[length - 1] == '/' ? 0 : 1) < 256)
    return report.good(check, std::string("entry 12 is ") + address);
  const std::string problem = "entry 12, \"Connection Check\", is missing, empty or too long";
  if (!exists(check.path.c_str())) return report.note(check, problem);
  report.bad(check, problem,
             "(zrtool directory list; printf '12\\tConnection Check\\tADDRESS\\n') | "
             "zrtool directory pack " +
                 check.path);
}

// What a writer that was killed leaves.
void checkLeftOvers(Report& report) {
  std::error_code ignored;
  for (const auto& entry : std::filesystem::directory_iterator(kInstallDirectory, ignored)) {
    const std::filesystem::path& copy = entry.path();
    const Check check = {"temporary-file", copy};
    const std::string profile = copy.parent_path() / copy.stem();
    if (copy.filename().string().rfind(".zrtool-", 0) == 0)
      report.note(check, "left by a zrtool that was killed", "rm " + check.path);
    else if (copy.extension() == ".tmp" && exists(profile.c_str()))
      report.note(check, "left by an interrupted change", "zrtool profile recover " + profile);
    else if (copy.extension() == ".tmp")
      report.bad(check, profile + ", which it was to replace, is missing",
                 "zrtool profile recover " + profile);
  }
}

// With any mode but 0666, components of some users cannot write until one of its owner does.
void checkCommonLog(Report& report) {
  const Check check = {"log", kCommonLog};
  struct stat status = {};
  if (::stat(kCommonLog, &status) != 0 && errno == ENOENT)
    return report.note(check, "missing; no module that failed to load could be reported in it");
  if (!S_ISREG(status.st_mode))
    return report.bad(check, "not a regular file", "mv " + check.path + " " + check.path + ".old");
  const std::string facts =
      std::to_string(status.st_size) + " bytes, mode " + modeText(status.st_mode);
  if ((status.st_mode & 0666U) == 0666U) return report.good(check, facts);
  report.note(check, facts + ": components of other users cannot write to it",
              "chmod 0666 " + check.path);
}

// Listing links binds a netlink route socket to the port that is the process id.
void checkProcess(Report& report, const std::string& process) {
  const std::string directory = "/proc/" + process;
  const Check check = {"netlink-port", directory};
  std::ifstream sockets(directory + "/net/netlink");
  for (std::string line; std::getline(sockets, line);) {
    std::istringstream columns(line);
    std::string protocol;
    std::string port;
    columns >> protocol >> protocol >> port;
    if (protocol == "0" && port == process)
      return report.bad(check, "held by a socket, so listing interfaces there fails with code 101",
                        "ss --family netlink --processes | grep rtnl");
  }
  report.good(check, "free for listing interfaces");
}

void examine(const std::vector<std::string>& processes, Output& out) {
  const ProductFile files[] = {
      {{"settings", kInetOptionsPath.get()},
       "all settings count as zero",
       Writer::kEveryone,
       sizeof(tagInetSettings),
       false},
      {{"server-directory", kDirectoryPath.get()},
       "no server address is known",
       Writer::kRootOnly,
       sizeof(DirectoryRecord),
       true},
      {{"features", kFeaturePath.get()},
       "no feature is set",
       Writer::kRootOnly,
       sizeof(tagZR_FEATURE),
       false},
  };
  for (const std::string& process : processes)
    if (!exists(("/proc/" + process).c_str())) throw Refusal("there is no process " + process);
  Report report(out);
  checkLibrary(report);
  checkDirectories(report);
  checkInternetLibrary(report);
  for (const ProductFile& file : files) checkFile(report, file);
  checkEntry(report);
  checkLeftOvers(report);
  checkCommonLog(report);
  for (const std::string& process : processes) checkProcess(report, process);
  if (report.problems())
    throw Refusal("checks that found a problem: " + std::to_string(report.problems()));
}

}  // namespace

void addDoctorCommand(CLI::App& app, Output& out) {
  auto* command =
      app.add_subcommand("doctor", "Check the installation; say for each problem what to try");
  auto processes = std::make_shared<std::vector<std::string>>();
  command->add_option("--process", *processes, "Check too whether this process can list interfaces")
      ->transform(numberFrom(1, 4194304))
      ->type_name("PID");
  command->callback([processes, &out] { examine(*processes, out); });
}
