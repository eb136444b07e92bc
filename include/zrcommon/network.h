#ifndef ZRCOMMON_NETWORK_H
#define ZRCOMMON_NETWORK_H

#include <cstddef>
#include <string>
#include <type_traits>
#include <vector>

#include <zrcommon/export.h>

/// @file
/// The network: internet settings, fetching a web resource, the connectivity check, the server
/// address directory, and the machine's interfaces and hardware addresses.
///
/// The internet library, libinet.so, handles protocols and proxies. It is loaded from
/// /usr/lib/Valdrix/Valdrix/ for each call and released before the call returns. Nothing is kept
/// between calls, nothing is retried, and all functions are re-entrant.

/// The internet settings as the options file holds them: an opaque block that is stored, loaded and
/// passed to the internet library byte for byte.
struct tagInetSettings {
  unsigned char bytes[788];  ///< the record as the file holds it
};

/// The internet settings as the internet library takes them: the first 786 bytes of
/// tagInetSettings.
struct tagZRINETCONFIG {
  unsigned char bytes[786];  ///< as passed to the entry points of libinet.so
};

/// One network interface.
struct tagZR_ETHERNET_INTERFACES_INFO {
  /// Terminated text; empty if the kernel sent no name.
  char name[1024];
  /// The hardware address, terminated text such as "00-1a-2b-3c-4d-5e"; empty if there is none.
  char macAddress[1024];
  /// 1 if the link is running (IFF_RUNNING), else 0.
  unsigned char running;
};

/// Hardware addresses of the machine.
struct tagZR_MACADDR_INFO {
  /// Addresses filled, 0 to 3.
  unsigned short count;
  /// Terminated texts such as "00-1a-2b-3c-4d-5e"; the first entries are filled.
  char addresses[3][1024];
};

/// A route netlink message as the kernel sends it (linux/netlink.h).
struct nlmsghdr;

static_assert(sizeof(tagInetSettings) == 788, "the options file is this record");
static_assert(sizeof(tagZRINETCONFIG) == 786, "the internet library reads this record");
static_assert(sizeof(tagZR_ETHERNET_INTERFACES_INFO) == 2049 &&
                  offsetof(tagZR_ETHERNET_INTERFACES_INFO, macAddress) == 1024 &&
                  offsetof(tagZR_ETHERNET_INTERFACES_INFO, running) == 2048,
              "components read this record");
static_assert(sizeof(tagZR_MACADDR_INFO) == 3074 && offsetof(tagZR_MACADDR_INFO, addresses) == 2,
              "components read this record");
static_assert(std::is_trivially_copyable<tagInetSettings>::value &&
                  std::is_trivially_copyable<tagZRINETCONFIG>::value,
              "stored and passed as bytes");
static_assert(std::is_trivially_copyable<tagZR_ETHERNET_INTERFACES_INFO>::value &&
                  std::is_trivially_copyable<tagZR_MACADDR_INFO>::value,
              "copied as bytes");

extern "C" {

/// Writes the 788 bytes of @p settings to the start of the file @p path, in one write.
///
/// A missing file is created. An existing file is overwritten in place and never shortened: bytes
/// after the record stay. Afterwards the file has mode 0666, whatever its previous mode. Nothing is
/// locked: callers must not save to the same file at the same time, or read it meanwhile.
///
/// @param path      at most 255 characters
/// @param settings  not changed
/// @return 1 saved; 0 an argument is null; 2 the file could neither be opened nor created, or its
///         path is too long; 3 fewer than 788 bytes could be written, and the file was deleted
ZRCOMMON_API unsigned int SaveInetOptions(const char* path, tagInetSettings* settings);

/// Reads the first 788 bytes of the file @p path into @p settings.
///
/// Afterwards a file that could be opened has mode 0666, whatever its previous mode.
///
/// @param path      at most 255 characters
/// @param settings  written only if the result is 1
/// @return 1 read; 0 an argument is null; 2 there is no such file, or its path is too long; 3 the
///         file cannot be opened for reading; 4 one read did not return 788 bytes
ZRCOMMON_API unsigned int ReadInetOptions(const char* path, tagInetSettings* settings);

/// Fills all 786 bytes of @p config from /usr/lib/Valdrix/Valdrix/zrinet.opt. If the file is
/// missing, unreadable or short, the bytes are zeros and the result is still 1.
///
/// @param config  filled whole
/// @param error   must not be null, but is never written
/// @return 1; 0 if an argument is null, with @p config untouched
ZRCOMMON_API unsigned int ZRGetInetConfig(tagZRINETCONFIG* config, unsigned int* error);

/// Fetches the body of the resource at @p url into @p response, as text.
///
/// Loads libinet.so, opens the address with the settings of ZRGetInetConfig(), reads the response
/// in chunks of at most 15,000 bytes, drops the header, closes the connection and unloads the
/// library. Makes one attempt; the internet library sets the time limits. Uses about 32 KiB of
/// stack and allocates nothing itself.
///
/// @param url           full address, as libinet.so takes it
/// @param response      after the first read all @p responseSize bytes are zeroed, then the body is
///                      appended chunk by chunk; always terminated. A zero byte in a chunk cuts off
///                      the rest of that chunk. Untouched if the first read fails.
/// @param responseSize  bytes at @p response; the body and its terminator must fit
/// @param received      on success, the length of the body on the wire in bytes, which is more than
///                      strlen(response) if the body holds zero bytes; otherwise untouched
/// @param error         set to 0 after the check of the arguments, and never to anything else
/// @return 1 on success. 0 if an argument is null or the size is 0 (nothing is touched); if
///         libinet.so is missing, cannot be loaded (this is logged, see ZRLoadLibrary) or lacks
///         one of its five entry points; if the address could not be opened or read; if the body
///         does not fit, is empty or begins with a zero byte. @p response then holds what had been
///         appended so far.
ZRCOMMON_API unsigned int ZRSendDataAndGetResponse(const char* url, char* response,
                                                   unsigned int responseSize,
                                                   unsigned int* received, unsigned int* error);

/// Tells whether the internet is reachable. Asks for two files with ZRIsInternetConnectionOn():
/// first "msg32.htm" and, only if that is absent, "msg32.bin".
///
/// Entry 12, "Connection Check", of the server address directory holds the address of the directory
/// of these files. "/" is appended unless it ends in "/"; an empty address becomes "/".
///
/// If the internet library is missing or memory is short, the file counts as not reached.
///
/// @param error  0 the first file was reached, or nothing was asked because there is no such entry
///               or its address with the "/" is longer than 255 characters; 140 only the second
///               file was reached; 105 neither was
/// @return 1 the first file was reached; 0 otherwise, also with code 140. 0 if @p error is null;
///         nothing is asked then.
ZRCOMMON_API unsigned int CheckInternetConnection(unsigned int* error);

/// Gets the hardware addresses of the first three links, in the kernel's order, that have one and
/// are not named "lo" (upper and lower case count as equal). Links that are down count, and so do
/// addresses of zeros.
///
/// Lists the links with GetEthernetInterfacesDetails(); its warnings apply here as well.
///
/// @param info   must not be null. The count is always set. Of each filled address the text and its
///               terminator are written; everything else stays as it was.
/// @param error  as GetEthernetInterfacesDetails() sets it
/// @return 1 listed, even if no link counts; 0 with count 0 if the listing failed or @p error is
///         null
ZRCOMMON_API unsigned int GetFormattedMACAddress(tagZR_MACADDR_INFO* info, unsigned int* error);

}  // extern "C"

/// Calls ZRSendDataAndGetResponse() and drops its length and error results.
///
/// @param url           as for ZRSendDataAndGetResponse()
/// @param response      as for ZRSendDataAndGetResponse()
/// @param responseSize  as for ZRSendDataAndGetResponse()
/// @return 1 on success, 0 on failure; also 0 if @p response is null or @p responseSize is 0
ZRCOMMON_API unsigned int SendDataAndGetResponse(std::string url, char* response,
                                                 unsigned int responseSize);

/// Asks the internet library whether the resource at @p url is present, with the settings of
/// ZRGetInetConfig(). Requires only the entry point IsInternetFilePresent.
///
/// @param url  full address, as libinet.so takes it
/// @return 1 if the internet library answers exactly 1; 0 for any other answer, or if libinet.so is
///         missing, cannot be loaded (this is logged, see ZRLoadLibrary) or lacks the entry point
ZRCOMMON_API unsigned int ZRIsInternetConnectionOn(std::string url);

/// Looks up a text in the server address directory, /usr/lib/Valdrix/Valdrix/infoeml.dat.
///
/// The file is a sequence of 524-byte records: number (32 bits, little-endian), name and value (260
/// bytes each, zero-terminated unless they fill the field). Each byte is stored with its two halves
/// swapped. The first record with this number and name is taken; a partial record at the end is
/// ignored. Each record is read with one system call.
///
/// @param entry      0 is never found
/// @param name       compared as by strcasecmp()
/// @param value      gets the value, padded with zeros to @p valueSize bytes. It is not terminated
///                   if the value has @p valueSize characters or more: 261 bytes are always enough.
///                   Untouched if nothing was found.
/// @param valueSize  in bytes
/// @return 1 found; 0 not found, no such file, or an argument is null or 0
ZRCOMMON_API unsigned int GetValueFromInfoEml(unsigned int entry, const char* name, char* value,
                                              unsigned int valueSize);

/// Appends one record for each link of the machine to @p interfaces, in the kernel's order,
/// including loopback, tunnels and links that are down.
///
/// Asks the kernel through a netlink route socket whose port is the process id. The call fails with
/// code 101 while the process holds another netlink socket with that port: one of another thread
/// that lists links, or one that the kernel bound automatically, which gets the process id if that
/// is free ("ss -f netlink -p" shows the holder). The call can wait forever: only the kernel's done
/// message ends it, there is no time limit, and it receives again after a failed receive.
///
/// @param interfaces  records that it already holds stay; a record for which there is no memory is
///                    skipped
/// @param error       0, or 101 if no socket could be opened and bound to the port
/// @return 1 listed; 0 with code 101, or if @p error is null, with the network untouched
ZRCOMMON_API unsigned int GetEthernetInterfacesDetails(
    std::vector<tagZR_ETHERNET_INTERFACES_INFO>& interfaces, unsigned int* error);

/// Appends a record for the link that an RTM_NEWLINK message describes.
///
/// Reads at most nlmsg_len bytes, whatever the lengths inside are; the walk through the attributes
/// ends at the first damaged one. A hardware address is always six bytes from the start of its
/// attribute, whatever its length; if the message ends before, the missing bytes are zeros. A name
/// is truncated to 1023 bytes.
///
/// @param message     its type is not checked; if null, nothing is appended
/// @param interfaces  nothing is appended if there is no memory
/// @return always 1
ZRCOMMON_API int rtnl_print_link(nlmsghdr* message,
                                 std::vector<tagZR_ETHERNET_INTERFACES_INFO>& interfaces);

#endif  // ZRCOMMON_NETWORK_H
