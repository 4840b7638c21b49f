// The parts of a mail.
#include <tov310/mime.h>

#include <tov310/path.h>

#include "mail/mail_text.h"
#include "mail/mime_defaults.h"
#include "mail/transfer_encoding.h"

#include <string_view>
#include <utility>

namespace tov {
namespace {

char const* EncodingName(TransferEncoding encoding, CString const& declared) {
    switch (encoding) {
        case TransferEncoding::kQuotedPrintable:
            return "quoted-printable";
        case TransferEncoding::kBase64:
            return "base64";
        case TransferEncoding::kAsItStands:
            break;
    }
    // What needs no encoding may be called by any of these names.
    return declared == "8bit" || declared == "binary" ? declared.c_str() : "7bit";
}

}  // namespace

CTovMailMessageMimePart::~CTovMailMessageMimePart() = default;

CTovMailMessageMimePartText::CTovMailMessageMimePartText(CString text)
    : m_text(std::move(text)),
      m_charset(CharsetDefault()),
      m_contentType(ContentTypeDefault()),
      m_contentTransferEncoding(ContentTransferEncodingDefault()) {}
CTovMailMessageMimePartText::CTovMailMessageMimePartText(char const* text)
    : CTovMailMessageMimePartText(CString(TextOrEmpty(text))) {}
CTovMailMessageMimePartText::~CTovMailMessageMimePartText() = default;

CString CTovMailMessageMimePartText::Body() const {
    if (!StrictEncoding()) return m_text;
    TransferEncoding const encoding = EncodingFor(m_contentTransferEncoding, m_text);
    CString body;
    MakeRoom(body, EncodedLength(m_text, encoding));
    AppendEncoded(body, m_text, encoding);
    return body;
}

CString CTovMailMessageMimePartText::Header() const {
    if (StrictEncoding()) {
        TransferEncoding const encoding = EncodingFor(m_contentTransferEncoding, m_text);
        CString charset = FieldText(CharsetFor(m_charset, m_text));
        std::erase(charset, '"');
        return FoldedLines(CString("Content-type: ")
                               .append(FieldText(m_contentType))
                               .append("; charset=\"")
                               .append(charset)
                               .append("\"\r\nContent-transfer-encoding: ")
                               .append(EncodingName(encoding, m_contentTransferEncoding)));
    }
    return CString("Content-type: ")
        .append(HeaderText(m_contentType))
        .append("; charset=\"")
        .append(HeaderText(m_charset))
        .append("\"\r\nContent-transfer-encoding: ")
        .append(HeaderText(m_contentTransferEncoding))
        .append("\r\n");
}

CString const& CTovMailMessageMimePartText::ContentType() const {
    return m_contentType;
}
void CTovMailMessageMimePartText::ContentType(char const* type) {
    m_contentType = TextOrEmpty(type);
}
CString const& CTovMailMessageMimePartText::Charset() const {
    return m_charset;
}
void CTovMailMessageMimePartText::Charset(char const* charset) {
    m_charset = TextOrEmpty(charset);
}
CString const& CTovMailMessageMimePartText::ContentTransferEncoding() const {
    return m_contentTransferEncoding;
}
void CTovMailMessageMimePartText::ContentTransferEncoding(char const* encoding) {
    m_contentTransferEncoding = TextOrEmpty(encoding);
}

CString const& CTovMailMessageMimePartText::CharsetDefault() {
    return MimeDefaults::Instance().textCharset;
}
void CTovMailMessageMimePartText::CharsetDefault(char const* charset) {
    MimeDefaults::Instance().textCharset = TextOrEmpty(charset);
}
CString const& CTovMailMessageMimePartText::ContentTypeDefault() {
    return MimeDefaults::Instance().textType;
}
void CTovMailMessageMimePartText::ContentTypeDefault(char const* type) {
    MimeDefaults::Instance().textType = TextOrEmpty(type);
}
CString const& CTovMailMessageMimePartText::ContentTransferEncodingDefault() {
    return MimeDefaults::Instance().textEncoding;
}
void CTovMailMessageMimePartText::ContentTransferEncodingDefault(char const* encoding) {
    MimeDefaults::Instance().textEncoding = TextOrEmpty(encoding);
}

CTovMailMessageMimePartBinary::CTovMailMessageMimePartBinary(CString path)
    : m_path(std::move(path)),
      m_contentType(ContentTypeDefault()),
      m_contentDisposition(ContentDispositionDefault()),
      m_contentTransferEncoding(ContentTransferEncodingDefault()) {}
CTovMailMessageMimePartBinary::CTovMailMessageMimePartBinary(char const* path)
    : CTovMailMessageMimePartBinary(CString(TextOrEmpty(path))) {}
CTovMailMessageMimePartBinary::~CTovMailMessageMimePartBinary() = default;

CString CTovMailMessageMimePartBinary::Body() const {
    CString body;
    AppendBase64File(body, m_path.c_str(), StrictEncoding() != 0);
    return body;
}

CString CTovMailMessageMimePartBinary::Header() const {
    CString drive, directory, name, extension;
    TovSplitPath(m_path.c_str(), drive, directory, name, extension);
    name += extension;
    if (StrictEncoding()) {
        return FoldedLines(CString("Content-type: ")
                               .append(FieldText(m_contentType))
                               .append(Parameter("name", name))
                               .append("\r\nContent-Disposition: ")
                               .append(FieldText(m_contentDisposition))
                               .append(Parameter("filename", name))
                               .append("\r\nContent-transfer-encoding: base64"));
    }
    name = HeaderText(name);
    return CString("Content-type: ")
        .append(HeaderText(m_contentType))
        .append("; name=\"")
        .append(name)
        .append("\"\r\nContent-Disposition: ")
        .append(HeaderText(m_contentDisposition))
        .append("; filename=\"")
        .append(name)
        .append("\"\r\nContent-transfer-encoding: ")
        .append(HeaderText(m_contentTransferEncoding))
        .append("\r\n");
}

CString const& CTovMailMessageMimePartBinary::ContentType() const {
    return m_contentType;
}
void CTovMailMessageMimePartBinary::ContentType(char const* type) {
    m_contentType = TextOrEmpty(type);
}
CString const& CTovMailMessageMimePartBinary::ContentDisposition() const {
    return m_contentDisposition;
}
void CTovMailMessageMimePartBinary::ContentDisposition(char const* disposition) {
    m_contentDisposition = TextOrEmpty(disposition);
}
CString const& CTovMailMessageMimePartBinary::ContentTransferEncoding() const {
    return m_contentTransferEncoding;
}
void CTovMailMessageMimePartBinary::ContentTransferEncoding(char const* encoding) {
    m_contentTransferEncoding = TextOrEmpty(encoding);
}

CString const& CTovMailMessageMimePartBinary::ContentTypeDefault() {
    return MimeDefaults::Instance().binaryType;
}
void CTovMailMessageMimePartBinary::ContentTypeDefault(char const* type) {
    MimeDefaults::Instance().binaryType = TextOrEmpty(type);
}
CString const& CTovMailMessageMimePartBinary::ContentDispositionDefault() {
    return MimeDefaults::Instance().binaryDisposition;
}
void CTovMailMessageMimePartBinary::ContentDispositionDefault(char const* disposition) {
    MimeDefaults::Instance().binaryDisposition = TextOrEmpty(disposition);
}
CString const& CTovMailMessageMimePartBinary::ContentTransferEncodingDefault() {
    return MimeDefaults::Instance().binaryEncoding;
}
void CTovMailMessageMimePartBinary::ContentTransferEncodingDefault(char const* encoding) {
    MimeDefaults::Instance().binaryEncoding = TextOrEmpty(encoding);
}

}  // namespace tov
