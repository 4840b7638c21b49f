// Texts for the lines of a header.
#pragma once

#include <tov310/mail_message.h>
#include <tov310/types.h>

#include <string_view>

namespace tov {

// A null text is an empty one.
inline char const* TextOrEmpty(char const* text) {
    return text != nullptr ? text : "";
}

// The text with a blank for each CR, LF and zero byte, so that it cannot end its line.
CString HeaderText(std::string_view text);

bool IsUtf8Text(std::string_view text);

// The charset to name for a text: utf-8 where the text is, else the declared one. In some charsets ASCII
// means something else.
CString CharsetFor(std::string_view declared, std::string_view text);

// The rest are forms for readers of today. Lines are folded where they would get long.

// "Name: text" and the line end, for text that is free. `name` is without the colon.
CString UnstructuredLine(std::string_view name, std::string_view text);

// "Name: address, address" and the line end.
CString AddressLine(std::string_view name, TovMailHelper::MAIL_ADDRESS const* addresses, std::size_t count);

// "; name=text" as a parameter of a header line (RFC 2231).
CString Parameter(std::string_view name, std::string_view text);

// What stands in front of parameters, and may hold some: plain ASCII in which every quote is closed.
CString FieldText(std::string_view text);

// Lines of a header, folded; none is longer than a server takes, whatever a host has put into them. Ends in
// CR LF.
CString FoldedLines(std::string_view header);

// The present time: "Sat, 21 Nov 2026 15:45:22 +0000".
CString StrictMailDate();

}  // namespace tov
