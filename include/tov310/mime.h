// Mails with attachments.
//
//     CTovMailMessageMimeContainer mail;
//     mail.StrictEncoding(1);
//     mail.AddMimePart(new CTovMailMessageMimePartText("The coordinates are attached.\r\n"));
//     mail.AddMimePart(new CTovMailMessageMimePartBinary("/data/points.csv"));
//
// A container without parts writes the text of the message. With one part it writes that part alone, and with
// several all of them as multipart/mixed; the text of the message itself is not used then, so a host adds it
// as a part.
//
// There are two ways to write. The usual one is that of the family's programs, byte for byte: the text of a
// part stands as it is whatever its header says, and Base64 has the tail of TovEncodeBase64. The strict one
// (StrictEncoding) is what mail readers of today expect:
//
//   - header text that is not plain ASCII in encoded words (RFC 2047), file names as in RFC 2231
//   - a date with English names, four digits of the year and "+0000"; To and Cc alike
//   - texts in utf-8 (those that are not UTF-8 in the charset of their part), in quoted-printable or Base64
//     where the header of the part says so or where they cannot be sent otherwise; files in Base64 with
//     ordinary padding
//   - a quoted boundary that stands in no part
//   - headers of parts, those of a host's parts too, in folded lines; what is not ASCII in a type or charset
//     becomes "?"
//   - what is encoded comes back to the byte; a text that is not has CR LF as line ends
//
// In both, a line end in what the header is made of is a blank there (mail_message.h).
#pragma once

#include <tov310/mail_message.h>

#include <memory>
#include <vector>

namespace tov {

// One part of a mail. A host may derive its own.
class TOV_CORE_API CTovMailMessageMimePart {
 public:
    CTovMailMessageMimePart() = default;
    CTovMailMessageMimePart(CTovMailMessageMimePart const&) = default;
    CTovMailMessageMimePart& operator=(CTovMailMessageMimePart const&) = default;
    virtual ~CTovMailMessageMimePart();

    virtual CString Body() const = 0;
    // Lines that end in CR LF, without the empty line behind them.
    virtual CString Header() const = 0;
    virtual CString const& ContentType() const = 0;

    // Set by the container that the part is in.
    int StrictEncoding() const { return m_strict; }
    void StrictEncoding(int strict) { m_strict = strict != 0; }

 private:
    int m_strict = 0;
};

// A text of the mail. It may hold any bytes.
class TOV_CORE_API CTovMailMessageMimePartText : public CTovMailMessageMimePart {
 public:
    explicit CTovMailMessageMimePartText(CString text);
    explicit CTovMailMessageMimePartText(char const* text);
    ~CTovMailMessageMimePartText() override;

    CString const& Text() const { return m_text; }

    CString Body() const override;
    CString Header() const override;
    CString const& ContentType() const override;
    virtual void ContentType(char const* type);
    virtual CString const& Charset() const;
    virtual void Charset(char const* charset);
    virtual CString const& ContentTransferEncoding() const;
    virtual void ContentTransferEncoding(char const* encoding);

    // What new parts take over; "iso-8859-1", "text/plain" and "quoted-printable" at first. For the process,
    // without a lock, as the defaults of the other classes are.
    static CString const& CharsetDefault();
    static void CharsetDefault(char const* charset);
    static CString const& ContentTypeDefault();
    static void ContentTypeDefault(char const* type);
    static CString const& ContentTransferEncodingDefault();
    static void ContentTransferEncodingDefault(char const* encoding);

 private:
    CString m_text;
    CString m_charset;
    CString m_contentType;
    CString m_contentTransferEncoding;
};

// A file, which is read whenever the body is asked for. One that cannot be read, has no room in memory, or
// changes while it is read and does so again and again, gives an empty body under its header. The file's
// name, without the folder, goes into the header.
class TOV_CORE_API CTovMailMessageMimePartBinary : public CTovMailMessageMimePart {
 public:
    explicit CTovMailMessageMimePartBinary(CString path);
    explicit CTovMailMessageMimePartBinary(char const* path);
    ~CTovMailMessageMimePartBinary() override;

    CString const& Path() const { return m_path; }

    CString Body() const override;
    CString Header() const override;
    CString const& ContentType() const override;
    virtual void ContentType(char const* type);
    virtual CString const& ContentDisposition() const;
    virtual void ContentDisposition(char const* disposition);
    virtual CString const& ContentTransferEncoding() const;
    // What the header names; the body is Base64 all the same, and in the strict way the header then says so.
    virtual void ContentTransferEncoding(char const* encoding);

    // "application/octet-stream", "attachment" and "Base64" at first.
    static CString const& ContentTypeDefault();
    static void ContentTypeDefault(char const* type);
    static CString const& ContentDispositionDefault();
    static void ContentDispositionDefault(char const* disposition);
    static CString const& ContentTransferEncodingDefault();
    static void ContentTransferEncodingDefault(char const* encoding);

 private:
    CString m_path;
    CString m_contentType;
    CString m_contentDisposition;
    CString m_contentTransferEncoding;
};

// Parts of the library itself are written into the text of the mail without a copy; each other part is asked
// once for its body by Body, and once by the strict Header.
class TOV_CORE_API CTovMailMessageMimeContainer : public CTovMailMessage {
 public:
    CTovMailMessageMimeContainer();
    CTovMailMessageMimeContainer(CTovMailMessageMimeContainer const&) = delete;
    CTovMailMessageMimeContainer& operator=(CTovMailMessageMimeContainer const&) = delete;
    ~CTovMailMessageMimeContainer() override;  // deletes the parts

    CString Header() const override;
    CString Body() const override;
    using CTovMailMessage::Body;

    // Takes over a part that was made with new. Answers 1, or 0 for null and for a part that it has already.
    virtual int AddMimePart(CTovMailMessageMimePart* part);

    // The line between parts; BoundaryDefault at first. In the strict way what may not stand in a boundary is
    // left out, and something is added while it stands in a part.
    virtual CString const& Boundary() const;
    virtual void Boundary(char const* boundary);

    // Text before and behind the parts, which readers that know of parts do not show.
    virtual CString const& PreMime() const;
    virtual void PreMime(char const* text);
    virtual CString const& PostMime() const;
    virtual void PostMime(char const* text);

    // "_NextPart_CTovMail_1dE8e48F60beBCECoestrsf" at first.
    static CString const& BoundaryDefault();
    static void BoundaryDefault(char const* boundary);

    // The strict way of writing, for this mail and its parts; 0 at first.
    int StrictEncoding() const override;
    void StrictEncoding(int strict);

 private:
    struct Pieces;
    CString StrictBoundary(Pieces const& pieces) const;

    std::vector<std::unique_ptr<CTovMailMessageMimePart>> m_parts;
    CString m_boundary;
    CString m_preMime;
    CString m_postMime;
    int m_strict = 0;
    mutable CString m_strictBoundary;  // the last one that was written, for header and body alike
};

}  // namespace tov
