// A text of any bytes in the strict form: lines that every server takes, which give the bytes back, and a
// boundary that stands in no part.
#include <tov310/mime.h>

#include "mail/transfer_encoding.h"

#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

void Expect(bool good) {
    if (!good) std::abort();
}

std::string Decoded(std::string const& text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '=') {
            bytes += text[i];
        } else if (text[i + 1] != '\r') {
            bytes += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            i += 2;
        }
    }
    return bytes;
}

template <class Protect>
void CheckDots(std::string text, Protect protect) {
    protect(text);
    for (std::size_t i = text.find('.'); i != text.npos; i = text.find('.', i + 1)) {
        bool const begins = i == 0 || text[i - 1] == '\r' || text[i - 1] == '\n';
        bool const ends = i + 1 == text.size() || text[i + 1] == '\r' || text[i + 1] == '\n';
        Expect(!begins || !ends);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string const bytes(reinterpret_cast<char const*>(data), size);
    tov::CString code;
    tov::AppendQuotedPrintable(code, bytes);
    Expect(tov::IsSevenBitLines(code) && Decoded(code) == bytes);
    for (std::size_t end = code.find("\r\n"), begin = 0; end != code.npos;
         begin = end + 2, end = code.find("\r\n", begin))
        Expect(end - begin <= 76 && (end == begin || (code[end - 1] != ' ' && code[end - 1] != '\t')));

    CheckDots(bytes, tov::DoubleLoneDots);
    for (bool const isHeader : {false, true})
        CheckDots(bytes, [isHeader](tov::CString& text) { tov::StuffStrictly(text, isHeader); });
    tov::CString lines = tov::WithLineEnds(bytes);
    tov::CString const before = lines;
    tov::StuffStrictly(lines, false);
    Expect(lines.find("\r\n.\r\n") == lines.npos && lines.size() >= before.size());

    // A part that knows what the boundary was before it was changed.
    tov::CTovMailMessageMimeContainer mail;
    mail.StrictEncoding(1);
    mail.Boundary(bytes.substr(0, 4).c_str());
    for (char const* const encoding : {"7bit", "base64"}) {
        auto* const part = new tov::CTovMailMessageMimePartText(bytes);
        part->ContentTransferEncoding(encoding);
        mail.AddMimePart(part);
    }
    std::string const header = mail.Header();
    std::size_t const begin = header.rfind('"', header.size() - 4) + 1;
    std::string const boundary = "--" + header.substr(begin, header.size() - 3 - begin);
    std::string const body = mail.Body();
    int count = 0;
    for (std::size_t at = body.find(boundary); at != body.npos;
         at = body.find(boundary, at + boundary.size()))
        ++count;
    Expect(count == 3);
    return 0;
}
