#ifndef ZRCOMMON_EXAMPLES_INET_INET_H
#define ZRCOMMON_EXAMPLES_INET_INET_H

#include <cstddef>

/// @file
/// The five entry points that libzrcommon calls in libinet.so.

struct tagZRINETCONFIG;

extern "C" {

/// Tells where the header of the answer in @p data ends and its body begins.
///
/// @param dataSize    bytes at @p data; what the answer does not fill is zero
/// @param header      gets the header's bytes, as many as fit; not terminated
/// @param headerSize  in: capacity of @p header in bytes; out: bytes written
/// @return offset of the body; -1 if the header does not end in @p data
int GetHeader(const char* data, unsigned int dataSize, char* header, std::size_t* headerSize);

/// Opens an address and waits for its answer to begin.
///
/// @param handle  zero; gets the connection, which InetCloseFile() releases
/// @return 1 opened; 0 if the address is bad, the peer refuses or stalls, or the status is 400 or
///         above; there is then nothing to close
int InetOpenFile(const char* url, tagZRINETCONFIG* config, void** handle);

/// Reads on: header and body as they came over the wire.
///
/// @return bytes written to @p buffer, fewer than @p size only at the end; 0 at the end; -1 when
///         the transfer broke off
int InetReadFile(void** handle, char* buffer, unsigned int size);

/// Closes the connection. A zero handle is ignored. @return 1
int InetCloseFile(void** handle);

/// Asks for a resource without fetching it.
///
/// @return 1 it is there; 0 the server says that it is not; -1 there was no answer
int IsInternetFilePresent(const char* url, tagZRINETCONFIG* config);

}  // extern "C"

#endif  // ZRCOMMON_EXAMPLES_INET_INET_H
