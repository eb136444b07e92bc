#ifndef ZRCOMMON_NETWORK_H
#define ZRCOMMON_NETWORK_H

#include <cstddef>
#include <string>
#include <type_traits>
#include <vector>

#include <zrcommon/export.h>

/// @file
/// The network: internet settings, the fetch of a web resource, the connectivity check, the server
/// address directory, and the machine's interfaces and hardware addresses.
///
/// Protocol and proxies are the business of the internet library, libinet.so, which is loaded from
/// /usr/lib/Valdrix/Valdrix/ for each call and released before it returns. Nothing is kept between
/// calls, nothing is retried, and all functions are re-entrant.

/// The internet settings as the options file keeps them: an opaque block that is stored, loaded
/// and handed to the internet library byte for byte.
struct tagInetSettings {
  unsigned char bytes[788];  ///< the record as the file holds it
};

/// The settings as the internet library takes them: the first 786 bytes of tagInetSettings.
struct tagZRINETCONFIG {
  unsigned char bytes[786];  ///< what the entry points of libinet.so are given
};

/// One network interface.
struct tagZR_ETHERNET_INTERFACES_INFO {
  /// Terminated text; empty if the kernel named none.
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
  /// Terminated texts such as "00-1a-2b-3c-4d-5e", from the first entry on.
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
/// A missing file is created. An existing one is overwritten in place and never shortened, so what
/// lies beyond the record stays. Afterwards the file has mode 0666, whatever it had before.
/// Nothing is locked: callers keep those who save apart from one another and from readers.
///
/// @param path      at most 255 characters
/// @param settings  only read
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
/// @param config  filled whole
/// @param error   must not be null, but is never written
/// @return 1; 0 if an argument is null, with @p config untouched
ZRCOMMON_API unsigned int ZRGetInetConfig(tagZRINETCONFIG* config, unsigned int* error);

/// Fetches the body of the resource at @p url into @p response, as text.
///
/// Loads libinet.so, opens the address with the settings of ZRGetInetConfig(), reads the answer in
/// pieces of at most 15,000 bytes, drops the header, closes and unloads. One attempt; time limits
/// are the internet library's. Uses about 32 KiB of stack and no heap of its own.
///
/// @param url           full address, as libinet.so takes it
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

/// Tells whether the internet is reachable, by asking for two files in the directory whose address
/// is entry 12, "Connection Check", of the server address directory: first "msg32.htm", then, only
/// if that is not there, "msg32.bin". A "/" is added to the address if it does not end in one.
///
/// Each question is a ZRIsInternetConnectionOn() of its own, which loads and releases the internet
/// library; a missing library counts as nothing reached, and so does a lack of memory.
///
/// @param error  0 if the first file was reached, or if there is no usable address: no entry, an
///               empty one, or one that with its "/" is longer than 255 characters (nothing is
///               asked then); 140 only the second file was reached; 105 neither was
/// @return 1 the first file was reached; else 0, with code 140 too. 0 if @p error is null, and
///         nothing is asked.
ZRCOMMON_API unsigned int CheckInternetConnection(unsigned int* error);

/// Gives the hardware addresses of the first three links, in the kernel's order, that have one and
/// are not named "lo" (in either case). Links that are down and addresses of all zeros count.
///
/// Lists the links with GetEthernetInterfacesDetails(); its warnings hold here.
///
/// @param info   must not be null. The count is always set; of each address filled, the text and
///               its terminator are written, and all else stays as it was.
/// @param error  as GetEthernetInterfacesDetails() sets it
/// @return 1 listed, even if no link counts; 0 with count 0 if the listing failed or @p error is
///         null
ZRCOMMON_API unsigned int GetFormattedMACAddress(tagZR_MACADDR_INFO* info, unsigned int* error);

}  // extern "C"

/// ZRSendDataAndGetResponse() without its length and error results.
///
/// @param url           as there
/// @param response      as there
/// @param responseSize  as there
/// @return 1 on success, 0 on failure; also 0 if @p response is null or @p responseSize is 0
ZRCOMMON_API unsigned int SendDataAndGetResponse(std::string url, char* response,
                                                 unsigned int responseSize);

/// Asks the internet library whether the resource at @p url is there, with the settings of
/// ZRGetInetConfig(). Of the library's entry points only IsInternetFilePresent need exist.
///
/// @param url  full address, as libinet.so takes it
/// @return 1 if the internet library answers exactly 1. 0 for any other answer, and if libinet.so
///         is missing, cannot be loaded (this is logged, see ZRLoadLibrary) or lacks the entry
///         point
ZRCOMMON_API unsigned int ZRIsInternetConnectionOn(std::string url);

/// Looks up a text in the server address directory, /usr/lib/Valdrix/Valdrix/infoeml.dat.
///
/// The file is a sequence of 524-byte records: number (32 bits, little-endian), name and value (260
/// bytes each, zero-terminated unless they fill the field), every byte stored with its two halves
/// swapped. The first record with this number and name wins; a partial record at the end does not
/// count. Records are read one by one, with one system call each.
///
/// @param entry      0: never found
/// @param name       compared as strcasecmp does
/// @param value      gets the value with zeros behind it, @p valueSize bytes in all. It is not
///                   terminated if the value has @p valueSize characters or more, so pass a buffer
///                   larger than any value you expect (values have at most 260 characters).
///                   Untouched if nothing was found.
/// @param valueSize  in bytes
/// @return 1 found; 0 not found, no such file, or a null pointer or zero number among the arguments
ZRCOMMON_API unsigned int GetValueFromInfoEml(unsigned int entry, const char* name, char* value,
                                              unsigned int valueSize);

/// Appends one record for each link of the machine to @p interfaces, in the kernel's order:
/// loopback, tunnels and links that are down included.
///
/// Asks the kernel over a netlink route socket whose port is the process id. So it fails with code
/// 101 while anything in the process holds a netlink socket with that port: another thread that
/// lists links, or a netlink socket that was bound automatically, which takes the process id if it
/// is free ("zrtool doctor" tells who holds it). And it may wait for ever: only the kernel's done
/// message ends it, there is no time limit, and failed receives are repeated.
///
/// @param interfaces  what it holds already stays; a record for which there is no memory is left
///                    out
/// @param error       0, or 101: no socket could be opened or bound to the port
/// @return 1 listed; 0 with code 101, or if @p error is null, with the network untouched
ZRCOMMON_API unsigned int GetEthernetInterfacesDetails(
    std::vector<tagZR_ETHERNET_INTERFACES_INFO>& interfaces, unsigned int* error);

/// Appends a record for the link that an RTM_NEWLINK message describes.
///
/// Reads at most nlmsg_len bytes, whatever the lengths inside say; the walk through the attributes
/// ends at the first that is damaged, and what the message does not hold is zero in the record. A
/// hardware address is always the six bytes from where it starts. A name is cut at 1023 bytes.
///
/// @param message     of any type, which is not looked at; null: nothing is appended
/// @param interfaces  nothing is appended if there is no memory
/// @return always 1
ZRCOMMON_API int rtnl_print_link(nlmsghdr* message,
                                 std::vector<tagZR_ETHERNET_INTERFACES_INFO>& interfaces);

#endif  // ZRCOMMON_NETWORK_H
