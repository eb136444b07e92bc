#ifndef ZRCOMMON_TOOLS_INTERNET_LIBRARY_H
#define ZRCOMMON_TOOLS_INTERNET_LIBRARY_H

#include <string>

/// What keeps the internet library from being used; empty if nothing does. Nothing is logged.
std::string internetLibraryProblem();

#endif  // ZRCOMMON_TOOLS_INTERNET_LIBRARY_H
