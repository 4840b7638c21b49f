// A text of any bytes in the strict form: lines that every server takes, which give the bytes back, and a
// boundary that stands in no part.
#include <tov310/mime.h>

#include "fuzz/expect.h"
#include "mail/transfer_encoding.h"

#include <algorithm>
#include <cstdint>
#include <string>

namespace {

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

bool IsEnd(char c) {
    return c == '\r' || c == '\n';
}

// What a server makes of it, which takes a dot away in front of every line that begins with one.
void CheckUsual(std::string const& text) {
    std::string sent = text;
    tov::DoubleLoneDots(sent);
    std::string back;
    for (std::size_t i = 0; i < sent.size(); ++i) {
        bool const begins = i == 0 || IsEnd(sent[i - 1]);
        if (begins && sent[i] == '.') {
            bool const isDoubled =
                sent.compare(i, 2, "..") == 0 && (i + 2 == sent.size() || IsEnd(sent[i + 2]));
            Expect(i + 1 != sent.size() && !IsEnd(sent[i + 1]));
            // Two dots alone are one that was doubled, or stood there.
            if (isDoubled && text.compare(back.size(), 2, "..") != 0) ++i;
        }
        back += sent[i];
    }
    Expect(back == text);
}

// Lines that every server takes, of which unstuffing and unfolding make the text again.
void CheckStrict(std::string const& text, bool isHeader) {
    std::string sent = text;
    tov::StuffStrictly(sent, isHeader);
    tov::CString lines, back;
    tov::AppendWithLineEnds(lines, text);
    std::size_t at = 0;
    bool isCut = false;
    for (std::size_t begin = 0, end = 0; begin <= sent.size(); begin = end + 2) {
        end = std::min(sent.find("\r\n", begin), sent.size());
        std::string line = sent.substr(begin, end - begin);
        Expect(line.find_first_of("\r\n") == line.npos && line != ".");
        if (line.starts_with('.')) {
            Expect(line[1] == '.');
            line.erase(0, 1);
        }
        Expect(line.size() <= 998);
        if (isCut && isHeader) {
            Expect(line.starts_with(' '));
            line.erase(0, 1);
        }
        Expect(lines.compare(at, line.size(), line) == 0);
        at += line.size();
        isCut = lines.compare(at, 2, "\r\n") != 0;
        if (!isCut) at += 2;
    }
    Expect(at == lines.size());
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

    CheckUsual(bytes);
    for (bool const isHeader : {false, true})
        CheckStrict(bytes, isHeader);

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
