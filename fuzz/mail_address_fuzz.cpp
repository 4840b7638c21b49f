// Addresses and names come from people and from other mails: whatever they hold, each stays in its line of
// the header, what is taken is what was checked, and a list is the sum of its pieces.
#include "fuzz/expect.h"

#include <tov310/mime.h>

#include <cstdint>
#include <string>

namespace {

using Mail = tov::CTovMailMessageMimeContainer;

// The header is lines of known fields and of what continues them.
void CheckLines(std::string const& header) {
    Expect(header.ends_with("\r\n"));
    for (std::size_t begin = 0, end = 0; begin < header.size(); begin = end + 2) {
        end = header.find_first_of(std::string("\r\n\0", 3), begin);
        Expect(header.compare(end, 2, "\r\n") == 0);
        std::string const line = header.substr(begin, end - begin);
        bool isKnown = line.starts_with(" ") || line.starts_with("\t");
        for (char const* const field : {"Date:", "From:", "Reply-To:", "To:", "Cc:", "X-Mailer:", "Subject:",
                                        "MIME-Version:", "Content-"})
            isKnown = isKnown || line.starts_with(field);
        Expect(isKnown);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string const bytes(reinterpret_cast<char const*>(data), size);
    for (int const strict : {0, 1}) {
        Mail mail;
        mail.StrictEncoding(strict);
        mail.From({bytes, bytes});
        mail.ReplyTo(bytes.c_str());
        mail.Subject(bytes.c_str());
        mail.MailerName(bytes.c_str());
        int const added = mail.AddRecipient(bytes.c_str(), Mail::eRecipientCc);
        tov::CString address, name;
        Expect(mail.Recipient(address, name, 0, Mail::eRecipientCc) == added);
        Expect(address.find_first_of(" \"<>") == address.npos && name.find_first_of("\"@<>") == name.npos);
        mail.AddMultipleRecipients(bytes.c_str(), Mail::eRecipientTo);
        Expect(mail.GetNumRecipientsTo() <= size + 1);
        mail.Boundary(bytes.c_str());
        mail.AddMimePart(new tov::CTovMailMessageMimePartBinary(bytes));
        CheckLines(mail.Header());
        mail.AddMimePart(new tov::CTovMailMessageMimePartText(bytes));
        CheckLines(mail.Header());
    }
    return 0;
}
