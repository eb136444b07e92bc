#ifndef ZRCOMMON_TESTS_SUPPORT_SANDBOX_H
#define ZRCOMMON_TESTS_SUPPORT_SANDBOX_H

/// Moves this process, which must still be single-threaded, into user, mount and network namespaces
/// of its own, with a root in which the places the library writes to (/usr/lib/Valdrix, /, the init
/// script directories), /dev and /scratch are private and everything else is the machine's, which
/// stays visible whole under /host. Loopback is up. Ends the process with a message where the
/// machine refuses; does nothing in a process that is inside already.
void enterSandbox();

/// A scratch directory of the sandbox, empty when the process starts.
inline constexpr char kScratch[] = "/scratch";

#endif  // ZRCOMMON_TESTS_SUPPORT_SANDBOX_H
