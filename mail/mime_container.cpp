// A mail and its parts as one text.
#include <tov310/mime.h>

#include "mail/mail_text.h"
#include "mail/mime_defaults.h"
#include "mail/transfer_encoding.h"
#include "vesk/memory.h"

#include <algorithm>
#include <charconv>
#include <set>
#include <string_view>
#include <typeinfo>
#include <utility>

namespace tov {
namespace {

using Parts = std::vector<std::unique_ptr<CTovMailMessageMimePart>>;
using BinaryPart = CTovMailMessageMimePartBinary;

// The part where it is exactly a file of ours, for which a host has written no body of its own.
BinaryPart const* AsPlainFile(CTovMailMessageMimePart const& part) {
    return typeid(part) == typeid(BinaryPart) ? static_cast<BinaryPart const*>(&part) : nullptr;
}

// Files are encoded in place behind what is there already.
void AppendPartBody(CString& text, CTovMailMessageMimePart const& part) {
    if (BinaryPart const* const file = AsPlainFile(part)) {
        AppendBase64File(text, file->Path().c_str(), part.StrictEncoding() != 0);
    } else {
        text += part.Body();
    }
}

// Only characters that RFC 2046 allows, and few enough that something can be added.
CString AllowedBoundary(std::string_view text) {
    constexpr std::string_view marks = "'()+_,-./:=? ";
    constexpr std::size_t most = 50;
    CString allowed;
    for (char const c : text) {
        bool const isLetter = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
        if ((isLetter || marks.find(c) != marks.npos) && allowed.size() < most) allowed += c;
    }
    allowed.resize(allowed.find_last_not_of(' ') + 1);
    return allowed.empty() ? "_NextPart" : allowed;
}

// A boundary that stands in none of the texts: the given one, or one with a number that does not follow it in
// any of them.
CString FreeBoundary(CString boundary, std::vector<CString> const& texts) {
    bool isFree = true;
    std::set<unsigned long> numbers;
    for (CString const& text : texts) {
        for (std::size_t at = text.find(boundary); at != text.npos; at = text.find(boundary, at + 1)) {
            isFree = false;
            unsigned long number = 0;
            char const* const behind = text.data() + at + boundary.size();
            char const* const end = text.data() + text.size();
            if (behind != end && *behind == '_' && std::from_chars(behind + 1, end, number).ec == std::errc())
                numbers.insert(number);
        }
    }
    if (isFree) return boundary;
    unsigned long number = 1;
    while (numbers.contains(number))
        ++number;
    // The mark behind it keeps 1 apart from 12.
    return boundary.append("_").append(std::to_string(number)).append("_");
}

}  // namespace

CTovMailMessageMimeContainer::CTovMailMessageMimeContainer() : m_boundary(BoundaryDefault()) {}
CTovMailMessageMimeContainer::~CTovMailMessageMimeContainer() = default;

CString CTovMailMessageMimeContainer::StrictBoundary() const {
    // Base64 has neither "-" nor "_", so that the long texts need not be looked at.
    std::vector<CString> texts{m_preMime};
    for (auto const& part : m_parts) {
        texts.push_back(part->Header());
        if (AsPlainFile(*part) == nullptr) texts.push_back(part->Body());
    }
    // The two hyphens are part of what is looked for.
    return FreeBoundary("--" + AllowedBoundary(m_boundary), texts).substr(2);
}

CString CTovMailMessageMimeContainer::Header() const {
    CString header = CTovMailMessage::Header();
    if (m_parts.empty() && !m_strict) return header;
    header += "MIME-Version: 1.0\r\n";
    if (m_parts.empty()) {
        CString const body = WithLineEnds(CTovMailMessage::Body());
        header += "Content-type: text/plain; charset=\"";
        header += IsUtf8Text(body) ? "utf-8" : HeaderText(CTovMailMessageMimePartText::CharsetDefault());
        header += "\"\r\nContent-transfer-encoding: ";
        header += IsSevenBitLines(body) ? "7bit\r\n" : "quoted-printable\r\n";
        return header;
    }
    if (m_parts.size() == 1) return header += m_parts.front()->Header();
    header += "Content-Type: multipart/mixed;\r\n\tboundary=";
    if (m_strict) return header.append("\"").append(StrictBoundary()).append("\"\r\n");
    return header.append(HeaderText(m_boundary)).append("\r\n");
}

CString CTovMailMessageMimeContainer::Body() const {
    CString body;
    if (m_parts.empty()) {
        body = CTovMailMessage::Body();
        if (!m_strict) return body;
        CString const lines = WithLineEnds(body);
        if (IsSevenBitLines(lines)) return lines;
        body.clear();
        AppendQuotedPrintable(body, lines);
        return body;
    }
    if (m_parts.size() == 1) {
        AppendPartBody(body, *m_parts.front());
        return body;
    }
    CString const delimiter = "\r\n--" + (m_strict ? StrictBoundary() : HeaderText(m_boundary));
    std::size_t length = m_preMime.size() + m_postMime.size() + delimiter.size() + 64;
    for (auto const& part : m_parts) {
        constexpr std::size_t header = 1024;
        BinaryPart const* const file = AsPlainFile(*part);
        length += delimiter.size() + header + (file != nullptr ? Base64FileLength(file->Path().c_str()) : 0);
    }
    body.reserve(length);
    VeskExpectWrites(body.data(), body.capacity());
    body += m_preMime;
    for (auto const& part : m_parts) {
        body.append(delimiter).append("\r\n").append(part->Header()).append("\r\n");
        AppendPartBody(body, *part);
    }
    body.append(delimiter).append("--\r\n").append(m_postMime);
    return body;  // by name, for there is no second one
}

int CTovMailMessageMimeContainer::AddMimePart(CTovMailMessageMimePart* part) {
    if (part == nullptr || std::ranges::find(m_parts, part, &Parts::value_type::get) != m_parts.end())
        return 0;
    m_parts.emplace_back(part);
    part->StrictEncoding(m_strict);
    return 1;
}

CString const& CTovMailMessageMimeContainer::Boundary() const {
    return m_boundary;
}
void CTovMailMessageMimeContainer::Boundary(char const* boundary) {
    m_boundary = TextOrEmpty(boundary);
}
CString const& CTovMailMessageMimeContainer::PreMime() const {
    return m_preMime;
}
void CTovMailMessageMimeContainer::PreMime(char const* text) {
    m_preMime = TextOrEmpty(text);
}
CString const& CTovMailMessageMimeContainer::PostMime() const {
    return m_postMime;
}
void CTovMailMessageMimeContainer::PostMime(char const* text) {
    m_postMime = TextOrEmpty(text);
}

CString const& CTovMailMessageMimeContainer::BoundaryDefault() {
    return MimeDefaults::Instance().boundary;
}
void CTovMailMessageMimeContainer::BoundaryDefault(char const* boundary) {
    MimeDefaults::Instance().boundary = TextOrEmpty(boundary);
}

int CTovMailMessageMimeContainer::StrictEncoding() const {
    return m_strict;
}
void CTovMailMessageMimeContainer::StrictEncoding(int strict) {
    m_strict = strict != 0;
    for (auto const& part : m_parts)
        part->StrictEncoding(m_strict);
}

}  // namespace tov
