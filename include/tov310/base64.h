// Base64 in the form in which the library mails files and stores tables. The alphabet is that of RFC 2045.
#pragma once

#include <tov310/export.h>
#include <tov310/types.h>

namespace tov {

// Encodes `length` bytes. A line end "\r\n" follows every `lineLength` characters; 0 means none. Differs from
// RFC 2045 in its tail: where the length is a multiple of 3 one more "A" is emitted, and "=" is added until
// the length of the output, line ends included, is a multiple of 4. Null gives an empty text.
TOV_CORE_API CString TovEncodeBase64(unsigned char const* data, unsigned long length,
                                     unsigned long lineLength);

// Encodes a whole file with lines of 76 characters; empty when the file cannot be read.
TOV_CORE_API CString TovEncodeBase64(CString const& path);

// Decodes a text with a closing zero in place and answers the number of bytes. Takes the form above as well
// as the ordinary one: skips "=" and everything that is not of the alphabet, and drops a lone last character.
TOV_CORE_API unsigned long TovDecodeBase64(unsigned char* text);

// The text with every byte from 0x9A on and every "=" as "=" and two hexadecimal digits, for headers of mails.
TOV_CORE_API CString TovEncodeIso8859(char const* text);

}  // namespace tov
