// A mail: who sends it to whom, its subject and its text.
//
//     CTovMailMessage mail;
//     mail.From("Survey <survey@office.example>");
//     mail.AddRecipient("Ann <ann@office.example>", CTovMailMessage::eRecipientTo);
//     mail.Subject("Traverse 12");
//     mail.Body("Closed within 3 mm.\r\n");
//
// CTovSmtp (smtp.h) sends it. CTovMailMessageMimeContainer (mime.h) takes attachments and, on demand, writes
// what mail readers of today expect; this class writes the header that its family of programs has always
// written, in which text stands as it is.
//
// A line end inside a name, an address, a subject or a mailer name never opens a new line of the header:
// where they are written each CR, LF and zero byte is a blank. A message belongs to its caller; nothing is
// locked.
#pragma once

#include <tov310/export.h>
#include <tov310/types.h>

#include <vector>

namespace tov {

namespace TovMailHelper {

struct MAIL_ADDRESS {
    CString name;  // for people; may be empty
    CString address;
};

}  // namespace TovMailHelper

class TOV_CORE_API CTovMailMessage {
 public:
    using MAIL_ADDRESS = TovMailHelper::MAIL_ADDRESS;

    enum eRecipientTypes : int {
        eRecipientTo = 0,
        eRecipientCc = 1,
        eRecipientBcc = 2,  // gets the mail without being named in it
    };

    CTovMailMessage();
    CTovMailMessage(CTovMailMessage const&) = default;
    CTovMailMessage& operator=(CTovMailMessage const&) = default;
    virtual ~CTovMailMessage();

    // Adds "Name <address>" or "address" to a list. Answers 1, or 0 and adds nothing where the address is
    // empty or holds a blank, a quote or an angle bracket, where the name holds a quote, "@" or an angle
    // bracket, and for an unknown type.
    virtual int AddRecipient(char const* recipient, eRecipientTypes type);

    // Adds each piece between commas that AddRecipient takes, and answers 1. A blank behind a comma belongs
    // to the piece: it does no harm before a name, but makes a lone address one that is not taken.
    virtual int AddMultipleRecipients(char const* recipients, eRecipientTypes type);

    // Both answer 1, or 0 where there is no such recipient; the texts are empty then.
    virtual int DeleteRecipient(unsigned int index, eRecipientTypes type);
    virtual int Recipient(CString& sAddress, CString& sName, unsigned int index, eRecipientTypes type) const;

    virtual unsigned int GetNumRecipients() const;  // of all lists
    virtual unsigned int GetNumRecipientsTo() const;
    virtual unsigned int GetNumRecipientsCc() const;
    virtual unsigned int GetNumRecipientsBcc() const;

    // The program that is named in the header; at first MailerNameDefault.
    virtual CString const& MailerName() const;
    virtual void MailerName(char const* name);

    // The sender, and where replies are to go if not there. A text is read as MailAddressFromString does;
    // nothing is checked.
    virtual MAIL_ADDRESS From() const;
    virtual void From(char const* address);
    virtual void From(MAIL_ADDRESS address);
    virtual MAIL_ADDRESS ReplyTo() const;
    virtual void ReplyTo(char const* address);
    virtual void ReplyTo(MAIL_ADDRESS address);

    // The header with the present time, each line ending in CR LF, without the empty line behind it.
    virtual CString Header() const;

    virtual CString const& Subject() const;
    virtual void Subject(char const* subject);

    virtual CString Body() const;
    virtual void Body(char const* body);

    // What each new message takes over; "TovMail" at first. One for the process, without a lock.
    static CString const& MailerNameDefault();
    static void MailerNameDefault(char const* name);

    // Cuts "Name <address>" at its first angle bracket, of either kind, and at the next one. The name is
    // trimmed. A text without any is all address.
    static MAIL_ADDRESS MailAddressFromString(char const* text);

 protected:
    // What AddRecipient takes: 1 or 0, as told there.
    virtual int CheckMailAddress(MAIL_ADDRESS const& address) const;

    // Takes what CheckMailAddress refuses in a name out of it, then checks. AddRecipient calls it after the
    // check, for classes that check less.
    virtual int TransformMailAdress(MAIL_ADDRESS& address) const;

 public:
    // Whether the mail is written for readers of today (mime.h); here 0. CTovSmtp asks it, too.
    virtual int StrictEncoding() const;

 private:
    friend class CTovMailMessageMimeContainer;  // writes the text without a copy

    using Recipients = std::vector<MAIL_ADDRESS>;
    Recipients* List(eRecipientTypes type);

    Recipients m_recipients[3];  // by type
    CString m_mailerName;
    MAIL_ADDRESS m_from;
    MAIL_ADDRESS m_replyTo;
    CString m_subject;
    CString m_body;
};

}  // namespace tov
