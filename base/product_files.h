#ifndef ZRCOMMON_BASE_PRODUCT_FILES_H
#define ZRCOMMON_BASE_PRODUCT_FILES_H

#include "base/install_path.h"

namespace zrcommon {

/// The product's files in the installation directory, for the library and its tool. The size of
/// each record is that of its type.

inline constexpr char kInetLibraryName[] = "libinet.so";
inline constexpr char kInetOptionsFileName[] = "zrinet.opt";  // tagInetSettings
inline constexpr char kDirectoryFileName[] = "infoeml.dat";   // DirectoryRecord, repeated
inline constexpr char kFeatureFileName[] = "zrfeature.dat";   // tagZR_FEATURE

inline constexpr InstallPath<sizeof kInetLibraryName> kInetLibraryPath(kInetLibraryName);
inline constexpr InstallPath<sizeof kInetOptionsFileName> kInetOptionsPath(kInetOptionsFileName);
inline constexpr InstallPath<sizeof kDirectoryFileName> kDirectoryPath(kDirectoryFileName);
inline constexpr InstallPath<sizeof kFeatureFileName> kFeaturePath(kFeatureFileName);

/// The log of failed module loads, and the default of CZRLogger. It is in the root directory.
inline constexpr char kCommonLog[] = "/zrcommon.log";

}  // namespace zrcommon

#endif  // ZRCOMMON_BASE_PRODUCT_FILES_H
