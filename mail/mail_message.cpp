#include <tov310/mail_message.h>

#include <tov310/text.h>
#include <tov310/time_types.h>

#include "mail/mail_text.h"
#include "util/trim.h"
#include "vesk/immortal.h"

#include <string_view>
#include <utility>

namespace tov {
namespace {

constexpr char const* angleBrackets = "<>";
constexpr char const* refusedInNames = "\"@<>";
constexpr char const* refusedInAddresses = " \"<>";

struct DefaultMailerName {
    CString text = "TovMail";
};
CString& MailerNameSlot() {
    static Immortal<DefaultMailerName> name;
    return name->text;
}

// The present time as the family's programs write it.
CString MailDate() {
    return CTime::GetCurrentTime().FormatGmt("%a, %d %b %y %H:%M:%S GMT");
}

CString QuotedAddressLine(std::string_view name, CTovMailMessage::MAIL_ADDRESS const& address) {
    return CString(name)
        .append(": \"")
        .append(HeaderText(address.name))
        .append("\" <")
        .append(HeaderText(address.address))
        .append(">\r\n");
}

}  // namespace

CTovMailMessage::CTovMailMessage() : m_mailerName(MailerNameDefault()) {}
CTovMailMessage::~CTovMailMessage() = default;

CTovMailMessage::Recipients* CTovMailMessage::List(eRecipientTypes type) {
    auto const index = static_cast<unsigned>(type);
    return index < std::size(m_recipients) ? &m_recipients[index] : nullptr;
}

int CTovMailMessage::AddRecipient(char const* recipient, eRecipientTypes type) {
    MAIL_ADDRESS address = MailAddressFromString(recipient);
    if (!CheckMailAddress(address) || !TransformMailAdress(address)) return 0;
    Recipients* const list = List(type);
    if (list == nullptr) return 0;
    list->push_back(std::move(address));
    return 1;
}

int CTovMailMessage::AddMultipleRecipients(char const* recipients, eRecipientTypes type) {
    std::vector<CString> pieces;
    TovExtractSubstrings(recipients, ",", pieces);
    for (CString const& piece : pieces)
        AddRecipient(piece.c_str(), type);
    return 1;
}

int CTovMailMessage::DeleteRecipient(unsigned int index, eRecipientTypes type) {
    Recipients* const list = List(type);
    if (list == nullptr || index >= list->size()) return 0;
    list->erase(list->begin() + index);
    return 1;
}

int CTovMailMessage::Recipient(CString& sAddress, CString& sName, unsigned int index,
                               eRecipientTypes type) const {
    sAddress.clear();
    sName.clear();
    auto const list = static_cast<unsigned>(type);
    if (list >= std::size(m_recipients) || index >= m_recipients[list].size()) return 0;
    sAddress = m_recipients[list][index].address;
    sName = m_recipients[list][index].name;
    return 1;
}

unsigned int CTovMailMessage::GetNumRecipients() const {
    return GetNumRecipientsTo() + GetNumRecipientsCc() + GetNumRecipientsBcc();
}
unsigned int CTovMailMessage::GetNumRecipientsTo() const {
    return static_cast<unsigned int>(m_recipients[eRecipientTo].size());
}
unsigned int CTovMailMessage::GetNumRecipientsCc() const {
    return static_cast<unsigned int>(m_recipients[eRecipientCc].size());
}
unsigned int CTovMailMessage::GetNumRecipientsBcc() const {
    return static_cast<unsigned int>(m_recipients[eRecipientBcc].size());
}

CString const& CTovMailMessage::MailerName() const {
    return m_mailerName;
}
void CTovMailMessage::MailerName(char const* name) {
    m_mailerName = TextOrEmpty(name);
}

CTovMailMessage::MAIL_ADDRESS CTovMailMessage::From() const {
    return m_from;
}
void CTovMailMessage::From(char const* address) {
    m_from = MailAddressFromString(address);
}
void CTovMailMessage::From(MAIL_ADDRESS address) {
    m_from = std::move(address);
}

CTovMailMessage::MAIL_ADDRESS CTovMailMessage::ReplyTo() const {
    return m_replyTo;
}
void CTovMailMessage::ReplyTo(char const* address) {
    m_replyTo = MailAddressFromString(address);
}
void CTovMailMessage::ReplyTo(MAIL_ADDRESS address) {
    m_replyTo = std::move(address);
}

CString CTovMailMessage::Header() const {
    Recipients const& to = m_recipients[eRecipientTo];
    Recipients const& cc = m_recipients[eRecipientCc];
    CString header = "Date: ";
    if (StrictEncoding()) {
        header.append(StrictMailDate()).append("\r\n").append(AddressLine("From", &m_from, 1));
        if (!m_replyTo.address.empty()) header += AddressLine("Reply-To", &m_replyTo, 1);
        if (!to.empty()) header += AddressLine("To", to.data(), to.size());
        if (!cc.empty()) header += AddressLine("Cc", cc.data(), cc.size());
        return header.append(UnstructuredLine("X-Mailer", m_mailerName))
            .append(UnstructuredLine("Subject", m_subject));
    }
    header.append(MailDate()).append("\r\n").append(QuotedAddressLine("From", m_from));
    if (!m_replyTo.address.empty()) header += QuotedAddressLine("Reply-To", m_replyTo);
    // The two lists have different forms, which readers of these mails have come to expect.
    auto const add = [&header](char const* name, Recipients const& list, char const* before,
                               char const* between) {
        for (MAIL_ADDRESS const& one : list) {
            header.append(&one == list.data() ? name : ",").append(before).append(HeaderText(one.name));
            header.append(between).append(HeaderText(one.address)).append(">");
        }
        if (!list.empty()) header += "\r\n";
    };
    add("To: ", to, "\" ", "\" <");
    add("Cc: ", cc, "", "<");
    header.append("X-Mailer: ").append(HeaderText(m_mailerName)).append("\r\n");
    return header.append("Subject: ").append(HeaderText(m_subject)).append("\r\n");
}

CString const& CTovMailMessage::Subject() const {
    return m_subject;
}
void CTovMailMessage::Subject(char const* subject) {
    m_subject = TextOrEmpty(subject);
}

CString CTovMailMessage::Body() const {
    return m_body;
}
void CTovMailMessage::Body(char const* body) {
    m_body = TextOrEmpty(body);
}

int CTovMailMessage::StrictEncoding() const {
    return 0;
}

CString const& CTovMailMessage::MailerNameDefault() {
    return MailerNameSlot();
}
void CTovMailMessage::MailerNameDefault(char const* name) {
    MailerNameSlot() = TextOrEmpty(name);
}

CTovMailMessage::MAIL_ADDRESS CTovMailMessage::MailAddressFromString(char const* text) {
    std::string_view const all = TextOrEmpty(text);
    std::size_t const bracket = all.find_first_of(angleBrackets);
    if (bracket == all.npos) return {{}, CString(all)};
    std::string_view const rest = all.substr(bracket + 1);
    return {CString(TrimBlanks(all.substr(0, bracket))),
            CString(rest.substr(0, rest.find_first_of(angleBrackets)))};
}

int CTovMailMessage::CheckMailAddress(MAIL_ADDRESS const& address) const {
    return !address.address.empty() && address.address.find_first_of(refusedInAddresses) == CString::npos &&
           address.name.find_first_of(refusedInNames) == CString::npos;
}

int CTovMailMessage::TransformMailAdress(MAIL_ADDRESS& address) const {
    std::erase_if(address.name,
                  [](char c) { return std::string_view(refusedInNames).find(c) != std::string_view::npos; });
    return CheckMailAddress(address);
}

}  // namespace tov
