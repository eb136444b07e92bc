#ifndef ZRCOMMON_TESTS_SUPPORT_SANDBOX_H
#define ZRCOMMON_TESTS_SUPPORT_SANDBOX_H

/// Starts this program anew in the test sandbox (the script beside this file), unless it is there.
void enterSandbox();

#endif  // ZRCOMMON_TESTS_SUPPORT_SANDBOX_H
