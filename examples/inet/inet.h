#ifndef ZRCOMMON_EXAMPLES_INET_INET_H
#define ZRCOMMON_EXAMPLES_INET_INET_H

#include <cstddef>

/// @file
/// The five entry points that libzrcommon calls in libinet.so.

struct tagZRINETCONFIG;

extern "C" {

/// Finds the end of the response header in @p data, where the body begins.
///
/// @param dataSize    bytes at @p data; bytes after the response are zeros
/// @param header      gets as many bytes of the header as fit; not terminated
/// @param headerSize  in: capacity of @p header in bytes; out: bytes written
/// @return offset of the body; -1 if the header does not end in @p data
int GetHeader(const char* data, unsigned int dataSize, char* header, std::size_t* headerSize);

/// Opens an address and waits until its response begins.
///
/// @param handle  zero before the call; gets the connection, which InetCloseFile() releases
/// @return 1 opened; 0 if the address is bad, the peer refuses or stalls, or the status is 400 or
///         above: then there is no connection to close
int InetOpenFile(const char* url, tagZRINETCONFIG* config, void** handle);

/// Reads the next bytes of the response: the header and the body as received.
///
/// @return bytes written to @p buffer, fewer than @p size only at the end; 0 at the end; -1 if the
///         transfer was interrupted
int InetReadFile(void** handle, char* buffer, unsigned int size);

/// Closes the connection. A zero handle is ignored. @return 1
int InetCloseFile(void** handle);

/// Asks for a resource without fetching it.
///
/// @return 1 it is present; 0 the server answered that it is not; -1 the server did not answer
int IsInternetFilePresent(const char* url, tagZRINETCONFIG* config);

}  // extern "C"

#endif  // ZRCOMMON_EXAMPLES_INET_INET_H
