// A mail and its parts as one text.
#include <tov310/mime.h>

#include "mail/mail_text.h"
#include "mail/mime_defaults.h"
#include "mail/transfer_encoding.h"

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

using TextPart = CTovMailMessageMimePartText;

// The part where it is exactly one of ours, for which a host has written no body of its own.
template <class Kind>
Kind const* AsOwn(CTovMailMessageMimePart const& part) {
    return typeid(part) == typeid(Kind) ? static_cast<Kind const*>(&part) : nullptr;
}

bool IsOwn(CTovMailMessageMimePart const& part) {
    return AsOwn<BinaryPart>(part) != nullptr || AsOwn<TextPart>(part) != nullptr;
}

TransferEncoding EncodingOf(TextPart const& part) {
    return part.StrictEncoding() ? EncodingFor(part.ContentTransferEncoding(), part.Text())
                                 : TransferEncoding::kAsItStands;
}

// At most how many bytes the body of one of ours takes; 0 for others.
std::size_t OwnLength(CTovMailMessageMimePart const& part) {
    if (BinaryPart const* const file = AsOwn<BinaryPart>(part)) return Base64FileLength(file->Path().c_str());
    if (TextPart const* const text = AsOwn<TextPart>(part))
        return EncodedLength(text->Text(), EncodingOf(*text));
    return 0;
}

// The body of one of ours, encoded in place behind what is there already.
void AppendOwnBody(CString& out, CTovMailMessageMimePart const& part) {
    if (BinaryPart const* const file = AsOwn<BinaryPart>(part)) {
        AppendBase64File(out, file->Path().c_str(), part.StrictEncoding() != 0);
    } else if (TextPart const* const text = AsOwn<TextPart>(part)) {
        AppendEncoded(out, text->Text(), EncodingOf(*text));
    }
}

CString HeaderOf(CTovMailMessageMimePart const& part) {
    return part.StrictEncoding() ? FoldedLines(part.Header()) : part.Header();
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
CString FreeBoundary(CString boundary, std::vector<std::string_view> const& texts) {
    bool isFree = true;
    std::set<unsigned long> numbers;
    for (std::string_view const text : texts) {
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

// The texts of the parts; those of our own have no body here.
struct CTovMailMessageMimeContainer::Pieces {
    explicit Pieces(Parts const& parts) {
        for (auto const& part : parts) {
            headers.push_back(HeaderOf(*part));
            bodies.push_back(IsOwn(*part) ? CString() : part->Body());
        }
    }
    std::vector<CString> headers, bodies;
};

CString CTovMailMessageMimeContainer::StrictBoundary(Pieces const& pieces) const {
    // The two hyphens are part of what is looked for.
    CString const wanted = "--" + AllowedBoundary(m_boundary);
    std::vector<std::string_view> texts{m_preMime};
    texts.insert(texts.end(), pieces.headers.begin(), pieces.headers.end());
    texts.insert(texts.end(), pieces.bodies.begin(), pieces.bodies.end());
    std::vector<CString> encoded;
    encoded.reserve(m_parts.size());
    for (auto const& part : m_parts) {
        // Base64 has no "-", so that the long texts need not be looked at. Quoted-printable keeps what has no
        // "=", and makes no more of it.
        TextPart const* const text = AsOwn<TextPart>(*part);
        if (text == nullptr || EncodingOf(*text) == TransferEncoding::kBase64) continue;
        bool const mayArise = wanted.find('=') != CString::npos;
        texts.push_back(mayArise ? encoded.emplace_back(text->Body()) : text->Text());
    }
    // Header and body are written one after the other, perhaps by parts that never say the same twice.
    auto const isFree = [this](std::string_view text) {
        return text.find("--" + m_strictBoundary) == text.npos;
    };
    if (m_strictBoundary.empty() || !std::ranges::all_of(texts, isFree))
        m_strictBoundary = FreeBoundary(wanted, texts).substr(2);
    return m_strictBoundary;
}

CString CTovMailMessageMimeContainer::Header() const {
    CString header = CTovMailMessage::Header();
    if (m_parts.empty() && !m_strict) return header;
    header += "MIME-Version: 1.0\r\n";
    if (m_parts.empty()) {
        header += "Content-type: text/plain; charset=\"";
        header += FieldText(CharsetFor(TextPart::CharsetDefault(), m_body));
        header += "\"\r\nContent-transfer-encoding: ";
        header += IsSevenBitLines(m_body, LineEnds::kAny) ? "7bit\r\n" : "quoted-printable\r\n";
        return header;
    }
    if (m_parts.size() == 1) return header += HeaderOf(*m_parts.front());
    header += "Content-Type: multipart/mixed;\r\n\tboundary=";
    if (m_strict) return header.append("\"").append(StrictBoundary(Pieces(m_parts))).append("\"\r\n");
    return header.append(HeaderText(m_boundary)).append("\r\n");
}

CString CTovMailMessageMimeContainer::Body() const {
    constexpr std::size_t spare = 64;  // for what sending adds
    CString body;
    if (m_parts.empty()) {
        if (!m_strict) return CTovMailMessage::Body();
        if (IsSevenBitLines(m_body, LineEnds::kAny)) {
            AppendWithLineEnds(body, m_body);
        } else {
            MakeRoom(body, EncodedLength(m_body, TransferEncoding::kQuotedPrintable));
            AppendQuotedPrintable(body, m_body, LineEnds::kAny);
        }
        return body;
    }
    if (m_parts.size() == 1) {
        CTovMailMessageMimePart const& part = *m_parts.front();
        if (!IsOwn(part)) return part.Body();
        MakeRoom(body, OwnLength(part) + spare);
        AppendOwnBody(body, part);
        return body;
    }
    Pieces pieces(m_parts);
    CString const delimiter = "\r\n--" + (m_strict ? StrictBoundary(pieces) : HeaderText(m_boundary));
    std::size_t length = m_preMime.size() + m_postMime.size() + delimiter.size() + spare;
    for (std::size_t i = 0; i < m_parts.size(); ++i)
        length += delimiter.size() + pieces.headers[i].size() + pieces.bodies[i].size() +
                  OwnLength(*m_parts[i]) + 4;
    MakeRoom(body, length);  // without it, a file that is too large is left out below
    body += m_preMime;
    for (std::size_t i = 0; i < m_parts.size(); ++i) {
        body.append(delimiter).append("\r\n").append(pieces.headers[i]).append("\r\n");
        CString const text = std::move(pieces.bodies[i]);
        body += text;
        AppendOwnBody(body, *m_parts[i]);
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
    m_strictBoundary.clear();
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
