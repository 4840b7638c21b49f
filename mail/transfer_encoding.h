// How the bytes of a part become lines of a mail.
#pragma once

#include <tov310/types.h>

#include <string_view>

namespace tov {

enum class TransferEncoding { kAsItStands, kQuotedPrintable, kBase64 };

// Which bytes end a line.
enum class LineEnds { kCrLf, kAny };

// Makes room for so many bytes behind the text, and for not many more: a text that grows by itself doubles.
// False where there is no memory for them.
bool MakeRoom(CString& text, std::size_t more) noexcept;

// Whether the text can be sent as it stands: bytes from 1 to 127 in lines of at most 998.
bool IsSevenBitLines(std::string_view text, LineEnds ends = LineEnds::kCrLf);

// The declared way (a word of RFC 2045 in any case) where the text can go that way, else quoted-printable.
TransferEncoding EncodingFor(std::string_view declared, std::string_view text);

// Quoted-printable (RFC 2045, 6.7) that gives every byte back: CR LF are line ends, a lone one is a byte. A
// text that does not end in a line end ends in a soft one, so that a line end behind it does not belong to
// it. With kAny each CR, LF and CR LF is a line end.
void AppendQuotedPrintable(CString& out, std::string_view text, LineEnds ends = LineEnds::kCrLf);

// The text in that way, and at most how many bytes that takes.
void AppendEncoded(CString& out, std::string_view text, TransferEncoding encoding);
std::size_t EncodedLength(std::string_view text, TransferEncoding encoding);

// Ordinary Base64 in lines of 76 characters, the last one with its line end, too.
void AppendBase64(CString& out, std::string_view bytes);

// The same on one line.
CString EncodedBase64(std::string_view bytes);

// The length of a file in Base64, with a little to spare, without the padding of memory; 0 where it cannot be
// told.
std::size_t Base64FileLength(char const* path);

// Appends a file in Base64, as above or with the tail of TovEncodeBase64; nothing when it cannot be read
// whole, in one state, or there is no memory for it. Takes no memory beside the text that is made.
void AppendBase64File(CString& out, char const* path, bool strict);

// Every CR LF, CR and LF as CR LF.
void AppendWithLineEnds(CString& out, std::string_view text);

// A line that is a lone dot gets a second one. CR and LF end a line, together and alone: whoever reads the
// text may take either for the end of a line.
void DoubleLoneDots(CString& text);

// As the server is to get it: CR LF as line ends, lines of at most 998 bytes, a dot in front of every line
// that begins with one. A longer line of a header is folded, so that it remains one. Nothing is copied where
// nothing is to be done.
void StuffStrictly(CString& text, bool isHeader);

}  // namespace tov
