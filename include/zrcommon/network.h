#ifndef ZRCOMMON_NETWORK_H
#define ZRCOMMON_NETWORK_H

#include <string>

#include <zrcommon/export.h>

/// @file
/// The network: internet settings and the fetch of a web resource.
///
/// Protocol and proxies are the business of the internet library, libinet.so, which is loaded from
/// /usr/lib/Valdrix/Valdrix/ for each call and released before it returns. Nothing is kept between
/// calls, nothing is retried, and all functions are re-entrant.

/// The internet settings as the options file keeps them: an opaque block that is stored, loaded
/// and handed to the internet library byte for byte.
struct tagInetSettings {
  unsigned char bytes[788];
};

/// The settings as the internet library takes them: the first 786 bytes of tagInetSettings.
struct tagZRINETCONFIG {
  unsigned char bytes[786];
};

static_assert(sizeof(tagInetSettings) == 788, "the options file is this record");
static_assert(sizeof(tagZRINETCONFIG) == 786, "the internet library reads this record");

extern "C" {

/// Writes the 788 bytes of @p settings to the start of the file @p path, in one write.
///
/// A missing file is created. An existing one is overwritten in place and never shortened, so what
/// lies beyond the record stays. Afterwards the file has mode 0666, whatever it had before.
///
/// @param path  at most 255 characters
/// @return 1 saved; 0 an argument is null; 2 the file could neither be opened nor created, or its
///         path is too long; 3 fewer than 788 bytes could be written, and the file was deleted
ZRCOMMON_API unsigned int SaveInetOptions(const char* path, tagInetSettings* settings);

/// Reads the first 788 bytes of the file @p path into @p settings.
///
/// Every file that could be opened is left with mode 0666, whatever it had before.
///
/// @param path      at most 255 characters
/// @param settings  written only when the result is 1
/// @return 1 read; 0 an argument is null; 2 no such file, or its path is too long; 3 the file
///         cannot be opened for reading; 4 it did not give 788 bytes in one read
ZRCOMMON_API unsigned int ReadInetOptions(const char* path, tagInetSettings* settings);

/// Fills @p config, all 786 bytes, from /usr/lib/Valdrix/Valdrix/zrinet.opt. A missing, unreadable
/// or short file gives zeros, and the result is 1 all the same.
///
/// @param error  must not be null, but is never written
/// @return 1; 0 if an argument is null, with @p config untouched
ZRCOMMON_API unsigned int ZRGetInetConfig(tagZRINETCONFIG* config, unsigned int* error);

/// Fetches the body of the resource at @p url into @p response, as text.
///
/// Loads libinet.so, opens the address with the settings of ZRGetInetConfig(), reads the answer in
/// pieces of at most 15,000 bytes, drops the header, closes and unloads. One attempt; time limits
/// are the internet library's. Uses about 32 KiB of stack and no heap of its own.
///
/// @param response      all @p responseSize bytes are zeroed once the first piece has been read,
///                      then the body is appended piece by piece; always terminated. A zero byte
///                      in a piece cuts off the rest of that piece. Untouched if nothing was read.
/// @param responseSize  bytes at @p response; the body and its terminator must fit
/// @param received      on success the body's length in bytes as it came over the wire, which is
///                      more than strlen(response) if the body held zero bytes; else untouched
/// @param error         set to 0 once the arguments are found good, and to nothing else
/// @return 1 on success. 0 if an argument is null or the size is 0 (nothing is touched); if
///         libinet.so is missing, cannot be loaded (this is logged, see ZRLoadLibrary) or lacks
///         one of its five entry points; if the address could not be opened or read; if the body
///         does not fit, is empty or begins with a zero byte. @p response then holds what had been
///         appended so far.
ZRCOMMON_API unsigned int ZRSendDataAndGetResponse(const char* url, char* response,
                                                   unsigned int responseSize,
                                                   unsigned int* received, unsigned int* error);

}  // extern "C"

/// ZRSendDataAndGetResponse() without its length and error results.
///
/// @return 1 on success, 0 on failure; also 0 if @p response is null or @p responseSize is 0
ZRCOMMON_API unsigned int SendDataAndGetResponse(std::string url, char* response,
                                                 unsigned int responseSize);

#endif  // ZRCOMMON_NETWORK_H
