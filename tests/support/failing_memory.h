#ifndef ZRCOMMON_TESTS_SUPPORT_FAILING_MEMORY_H
#define ZRCOMMON_TESTS_SUPPORT_FAILING_MEMORY_H

/// How many allocations of the whole program succeed before one fails, after which this is negative
/// and none does. Linking failing_memory.cpp into a program replaces its allocation functions.
extern int allocationsUntilFailure;

#endif  // ZRCOMMON_TESTS_SUPPORT_FAILING_MEMORY_H
