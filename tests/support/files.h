#ifndef ZRCOMMON_TESTS_SUPPORT_FILES_H
#define ZRCOMMON_TESTS_SUPPORT_FILES_H

#include <map>
#include <string>

/// Places of the sandbox that every test finds empty, each with its slash.
inline const std::string kScratch = "/scratch/";
inline const std::string kInstallation = "/usr/lib/Valdrix/Valdrix/";
inline const std::string kServices = "/etc/init.d/";
inline const std::string kFirstServices = "/etc/init.d/rc.d/";
inline const std::string kModuleLog = "/zrcommon.log";

void clearPlaces();

/// Creates or replaces a file. Fails the test if it cannot.
void putFile(const std::string& path, const std::string& content, unsigned int mode = 0644);

/// The whole file; empty if there is none.
std::string getFile(const std::string& path);

/// Permission bits, such as 0644; 0 if there is no file.
unsigned int modeOf(const std::string& path);

/// What the places hold, by name: content and mode. Of a long content it is the size, and of the
/// module log, whose texts differ by machine, the number of lines.
using Files = std::map<std::string, std::string>;
Files filesInPlaces();

/// " name content mode" for each file that is new or changed, " no name" for each that is gone.
std::string changesSince(Files before);

#endif  // ZRCOMMON_TESTS_SUPPORT_FILES_H
