// Every operation that asks the system for something, with failing calls and without memory.
#include <malloc.h>
#include <sys/syscall.h>
#include <zrcommon/logging.h>
#include <zrcommon/network.h>
#include <zrcommon/profile.h>
#include <zrcommon/system.h>

#include "support/calls.h"
#include "support/test.h"

namespace {

// What an operation gave: its result and, if it set them, its error code and its text.
struct Result {
  long long value = 0;
  unsigned int error = 9;
  char text[300] = "-";

  S words() const {
    const S code = error == 9 ? "" : " code " + std::to_string(error);
    return std::to_string(value) + code + (text[0] == '-' ? "" : S(" ") + text);
  }
};

// An operation that asks the system for something, on files of its own.
struct Operation {
  S name;
  void (*prepare)();      // lays out its files
  S outcome;              // what it gave, and the files that it changed
  void (*call)(Result&);  // asks for no memory of its own

  // The outcomes that differ when one of its calls fails ("write 2 fails": the second write) or
  // takes a single byte ("read 1 is short"), or when there is no memory ("no memory").
  std::map<S, S> failures;
};

constexpr char kFile[] = "/scratch/f";
constexpr char kOther[] = "/scratch/g";

void nothing() {}
void smallFile() {
  putFile(kFile, "0123456789", 0600);
}
void twoFiles() {
  smallFile();
  putFile(kOther, "an older target", 0640);
}
void profile() {
  putFile(kFile, "[s]\nkey=12\n[t]\n", 0600);
}
void options() {
  putFile(kFile, S(1000, 'o'), 0600);
}
void inetLibrary() {
  std::filesystem::copy_file(ZR_BUILD_DIR "/tests/libquiet_inet.so", kInstallation + "libinet.so");
  putFile(kInstallation + "zrinet.opt", S(788, 'o'), 0600);
}

Operation row(const char* name, void (*prepare)(), const char* outcome, void (*call)(Result&),
              const std::map<S, S>& failures) {
  return {name, prepare, outcome, call, failures};
}

const Operation kOperations[] = {
    row("CZRLogger::WriteToLog", smallFile, "0 f '0123456789APP 77\r\n' 0600",
        [](Result&) { CZRLogger(kFile, "", "APP").WriteToLog(1, 100, "%d", 77); },
        {{"no memory", "0"},
         {"open-rw 1 fails", "0"},
         {"lseek 1 fails", "0 f 'APP 77\r\n89' 0600"},
         {"write 1 fails", "0 f '0123456789 77\r\n' 0600"},
         {"write 1 is short", "0 f '0123456789A 77\r\n' 0600"},
         {"write 2 fails", "0 f '0123456789APP77\r\n' 0600"},
         {"write 3 fails", "0 f '0123456789APP ' 0600"},
         {"write 3 is short", "0 f '0123456789APP 7' 0600"},
         {"write 4 fails", "0 f '0123456789APP 77' 0600"},
         {"write 4 is short", "0 f '0123456789APP 77\r' 0600"}}),
    row("WriteToLog", smallFile, "0 f '0123456789text\n' 0666",
        [](Result&) { WriteToLog(kFile, "text"); },
        {{"access 1 fails", "0 f 'text\n56789' 0666"},
         {"open-w 1 fails", "0"},
         {"write 1 fails", "0 f '0123456789\n' 0666"},
         {"write 1 is short", "0 f '0123456789t\n' 0666"},
         {"write 2 fails", "0 f '0123456789text' 0666"},
         {"chmod 1 fails", "0 f '0123456789text\n' 0600"}}),
    row("GetPrivateProfileString", profile, "0 code 0 12",
        [](Result& r) {
          r.value = GetPrivateProfileString("s", "key", "none", r.text, 19, kFile, &r.error);
        },
        {{"open-r 1 fails", "-1 code 102 none"}, {"read 1 fails", "-1 code 204 none"}}),
    row("WritePrivateProfileString", profile, "0 code 0 f '[s]\nkey=345\n[t]\n' 0644",
        [](Result& r) { r.value = WritePrivateProfileString("s", "key", "345", kFile, &r.error); },
        {{"open-r 1 fails", "-1 code 102"},
         {"open-w 1 fails", "-1 code 102"},
         {"read 1 fails", "0 code 0 f '[s]\nkey=345\n' 0644"},
         {"write 1 fails", "0 code 0 f '' 0644"},
         {"rename 1 fails", "0 code 0 f.tmp '[s]\nkey=345\n[t]\n' 0644 no f"}}),
    row("SaveInetOptions", options, "1 f 1000 bytes 0666",
        [](Result& r) {
          tagInetSettings settings = {};
          r.value = SaveInetOptions(kFile, &settings);
        },
        {{"open-rw 1 fails", "1 f 788 bytes 0666"},
         {"write 1 fails", "3 no f"},
         {"write 1 is short", "3 no f"},
         {"chmod 1 fails", "1"}}),
    row("ReadInetOptions", options, "1 f 1000 bytes 0666",
        [](Result& r) {
          tagInetSettings settings = {};
          r.value = ReadInetOptions(kFile, &settings);
        },
        {{"access 1 fails", "2"},
         {"open-r 1 fails", "3"},
         {"read 1 fails", "4 f 1000 bytes 0666"},
         {"read 1 is short", "4 f 1000 bytes 0666"},
         {"chmod 1 fails", "1"}}),
    row("ZRSendDataAndGetResponse", inetLibrary, "1 code 0 body zrinet.opt 788 bytes 0666",
        [](Result& r) {
          unsigned int length = 0;
          r.value = ZRSendDataAndGetResponse("http://a", r.text, 19, &length, &r.error);
        },
        {{"no memory", "0 code 0 zrcommon.log 1 lines 0666"},
         {"access 1 fails", "1 code 0 body"},
         {"open-r 1 fails", "1 code 0 body"},
         {"chmod 1 fails", "1 code 0 body"}}),
    row("GetEthernetInterfacesDetails", nothing, "1 code 0 lo",
        [](Result& r) {
          std::vector<tagZR_ETHERNET_INTERFACES_INFO> links;
          r.value = GetEthernetInterfacesDetails(links, &r.error);
          std::strcpy(r.text, links.empty() ? "-" : links[0].name);
        },
        {{"socket 1 fails", "0 code 101"}, {"bind 1 fails", "0 code 101"}}),
    row("ZRLoadLibrary of nothing there", nothing, "0 zrcommon.log 1 lines 0666",
        [](Result& r) { r.value = ZRLoadLibrary("/none") != nullptr; },
        {{"open-w 1 fails", "0"},
         {"write 2 fails", "0 zrcommon.log 0 lines 0666"},
         {"chmod 1 fails", "0 zrcommon.log 1 lines 0600"}}),
    row("ZRCopyFile", twoFiles, "1 g '0123456789' 0640",
        [](Result& r) { r.value = ZRCopyFile(kFile, kOther); },
        {{"open-r 1 fails", "0"},
         {"open-rw 1 fails", "0"},
         {"read 1 fails", "1 g '' 0640"},
         {"write 1 fails", "0 g '' 0640"},
         {"write 1 is short", "0 g '0' 0640"}}),
    row("CopyFile", twoFiles, "1 g '0123456789' 0777",
        [](Result& r) { r.value = CopyFile(kFile, kOther); },
        {{"open-r 1 fails", "0"},
         {"open-rw 1 fails", "0"},
         {"read 1 fails", "1 g '' 0777"},
         {"write 1 fails", "0 no g"},
         {"write 1 is short", "0 no g"},
         {"chmod 1 fails", "1 g '0123456789' 0640"}}),
    row("SearchInFile", smallFile, "8",
        [](Result& r) {
          const auto file = static_cast<int>(::syscall(SYS_open, kFile, O_RDONLY));
          r.value = SearchInFile(file, reinterpret_cast<const unsigned char*>("89"), 2, 0);
          ::syscall(SYS_close, file);
        },
        {{"lseek 1 fails", "-1"}, {"read 1 fails", "-1"}, {"read 1 is short", "-1"}})};

struct Played {
  Calls calls;
  S outcome;
  int error = 0;
};

// The files that are there before the operation.
Files layOut(const Operation& operation) {
  clearPlaces();
  operation.prepare();
  return filesInPlaces();
}

Played play(const Operation& operation, const Fault& fault = {}) {
  const Files before = layOut(operation);
  Result result;
  Played played;
  const auto call = [&] {
    errno = 0;
    operation.call(result);
    played.error = errno;
  };
  played.calls = watch(call, fault);
  played.outcome = result.words() + changesSince(before);
  return played;
}

S documented(const Operation& operation, const S& failure) {
  const auto found = operation.failures.find(failure);
  return found == operation.failures.end() ? operation.outcome : found->second;
}

// Calls after which errno is not theirs: clean-up leaves it alone, and a bind follows a failed
// socket.
bool leavesErrno(const Operation& operation, const S& call) {
  const bool isLastStep = operation.name == "WriteToLog" || operation.name == "CopyFile";
  return call == "close" || call == "socket" || (call == "chmod" && !isLastStep);
}

// Lets the call at a place fail in every way.
void failAt(const Operation& operation, const std::vector<S>& calls, std::size_t at) {
  const S& call = calls[at];
  const auto end = calls.begin() + static_cast<std::ptrdiff_t>(at) + 1;
  const S place = call + " " + std::to_string(std::count(calls.begin(), end, call));
  SCOPED_TRACE(operation.name + ": " + place);
  std::vector<Fault> faults = {{Fault::kFails, at, EINTR}, {Fault::kFails, at, ENOSPC}};
  if (call == "read" || call == "write") faults.push_back({Fault::kIsShort, at});
  if (call == "write") faults.push_back({Fault::kWritesNothing, at});
  for (const Fault& fault : faults) {
    const bool isShort = fault.kind == Fault::kIsShort;
    const Played played = play(operation, fault);
    EXPECT_EQ(documented(operation, place + (isShort ? " is short" : " fails")), played.outcome);
    EXPECT_EQ(0, played.calls.descriptorsLeft);
    if (fault.kind == Fault::kFails && !leavesErrno(operation, call)) {
      EXPECT_EQ(fault.error, played.error);
    }
  }
  // Even where the clean-up fails as well, errno is that of the call that made the operation fail.
  const Played played = play(operation, {Fault::kFails, at, ENOSPC, "close chmod unlink remove"});
  const bool isTold = played.outcome[0] != operation.outcome[0] && call != "socket";
  EXPECT_EQ(isTold ? ENOSPC : played.error, played.error) << "and the clean-up fails";
}

TEST(Robustness, EveryCallFails) {
  for (const Operation& operation : kOperations) {
    const Played usual = play(operation);
    EXPECT_EQ(operation.outcome, usual.outcome) << operation.name;
    const std::vector<S>& calls = usual.calls.names;
    for (std::size_t at = 0; at < calls.size(); ++at)  // without its request a dump never ends
      if (calls[at] != "sendmsg") failAt(operation, calls, at);
  }
}

// False if there is no such allocation.
bool runShort(const Operation& operation, int allocation) {
  const Files before = layOut(operation);
  Result result;
  const auto runOnce = [&] {
    allocationsUntilFailure = allocation;
    operation.call(result);
    return std::exchange(allocationsUntilFailure, -1) < 0;
  };
  const bool wasReached = runOnce();
  const S outcome = result.words() + changesSince(before);
  const bool isUsual = outcome == operation.outcome;
  EXPECT_EQ(isUsual ? outcome : documented(operation, "no memory"), outcome) << operation.name;
  runOnce();
  const std::size_t heap = ::mallinfo2().uordblks;
  for (int i = 0; i < 20; ++i) runOnce();
  EXPECT_GE(heap, ::mallinfo2().uordblks) << operation.name << " leaks";
  return wasReached;
}

TEST(Robustness, EveryAllocationFails) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "a sanitizer has allocation functions of its own";
#endif
  for (const Operation& operation : kOperations)
    for (int allocation = 0; runShort(operation, allocation);) ++allocation;
}

}  // namespace
