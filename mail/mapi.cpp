#include <tov310/mapi.h>

#include <tov310/application.h>
#include <tov310/path.h>

#include "frame/resource_module.h"
#include "mail/mail_text.h"

#include <algorithm>
#include <atomic>
#include <span>

namespace tov {
namespace {

using MailAddresses = std::vector<TovMailHelper::MAIL_ADDRESS>;

std::atomic<CTovMapiSendMail::NoticeHandler> mapiNotice{nullptr};

struct MapiText {
    unsigned long code;
    unsigned int textId;
};

constexpr unsigned int mapiFailureText = 26147;

constexpr MapiText sendMailTexts[] = {
    {MAPI_E_USER_ABORT, 26148},
    {MAPI_E_LOGIN_FAILURE, 26142},
    {MAPI_E_INSUFFICIENT_MEMORY, 26140},
    {MAPI_E_TOO_MANY_FILES, 26144},
    {MAPI_E_TOO_MANY_RECIPIENTS, 26145},
    {MAPI_E_ATTACHMENT_NOT_FOUND, 26137},
    {MAPI_E_ATTACHMENT_OPEN_FAILURE, 26138},
    {MAPI_E_UNKNOWN_RECIPIENT, 26146},
    {MAPI_E_BAD_RECIPTYPE, 26139},
    {MAPI_E_TEXT_TOO_LARGE, 26143},
    {MAPI_E_INVALID_SESSION, 26150},
    {MAPI_E_AMBIG_RECIP, 26136},
    {MAPI_E_INVALID_RECIPS, 26141},
};
constexpr MapiText logonTexts[] = {
    {MAPI_E_USER_ABORT, 26148},
    {MAPI_E_LOGIN_FAILURE, 26142},
    {MAPI_E_INSUFFICIENT_MEMORY, 26140},
    {MAPI_E_TOO_MANY_SESSIONS, 26149},
};

void MapiTextOf(unsigned long code, std::span<MapiText const> texts, CString& text) {
    auto const row = std::ranges::find(texts, code, &MapiText::code);
    text = LibraryString(row != texts.end() ? row->textId : mapiFailureText);
}

}  // namespace

CTovMapiSendMail::~CTovMapiSendMail() = default;

int CTovMapiSendMail::InitializeMapiLib() {
    if (!m_available) return 0;
    // There is no module to load here, so only a derived class can have found the entry points.
    bool const isLoaded = m_module != nullptr;
    if (isLoaded && m_sendMail != nullptr && m_logon != nullptr && m_logoff != nullptr) return 1;
    NoticeHandler const notice = mapiNotice;
    if (notice != nullptr) notice(isLoaded ? faultyMailSystem : noMailSystem);
    return 0;
}

unsigned long CTovMapiSendMail::SendMail(LHANDLE session, std::uintptr_t window, MapiMessage* message,
                                         unsigned long flags, unsigned long reserved) {
    return m_sendMail != nullptr ? m_sendMail(session, window, message, flags, reserved) : MAPI_E_FAILURE;
}
unsigned long CTovMapiSendMail::Logon(std::uintptr_t window, char* profile, char* password,
                                      unsigned long flags, unsigned long reserved, LHANDLE* session) {
    return m_logon != nullptr ? m_logon(window, profile, password, flags, reserved, session) : MAPI_E_FAILURE;
}
unsigned long CTovMapiSendMail::Logoff(LHANDLE session, std::uintptr_t window, unsigned long flags,
                                       unsigned long reserved) {
    return m_logoff != nullptr ? m_logoff(session, window, flags, reserved) : MAPI_E_FAILURE;
}

unsigned long CTovMapiSendMail::SendMailEx(HWND window, MailAddresses const* to, MailAddresses const* cc,
                                           MailAddresses const* bcc, char const* subject, char const* text,
                                           std::vector<CString> const* attachments, unsigned long flags) {
    // The records point into texts that may be written to by their type alone, so these are copies.
    struct Person {
        unsigned long kind;
        CString name, address;
    };
    struct Attachment {
        CString path, name;
    };
    std::vector<Person> people;
    std::pair<unsigned long, MailAddresses const*> const lists[] = {
        {MAPI_TO, to}, {MAPI_CC, cc}, {MAPI_BCC, bcc}};
    for (auto const& [kind, list] : lists) {
        if (list == nullptr) continue;
        for (MAIL_ADDRESS const& one : *list)
            people.push_back({kind, one.name, one.address});
    }
    std::vector<Attachment> files;
    if (attachments != nullptr) {
        for (CString const& path : *attachments) {
            CString drive, directory, name, extension;
            TovSplitPath(path.c_str(), drive, directory, name, extension);
            files.push_back({path, name + extension});
        }
    }
    std::vector<MapiRecipDesc> recipients;
    for (Person& one : people)
        recipients.push_back({0, one.kind, one.name.data(), one.address.data(), 0, nullptr});
    std::vector<MapiFileDesc> descriptions;
    constexpr unsigned long noPlaceInText = ~0UL;
    for (Attachment& one : files)
        descriptions.push_back({0, 0, noPlaceInText, one.path.data(), one.name.data(), nullptr});

    CString subjectCopy = TextOrEmpty(subject);
    CString textCopy = TextOrEmpty(text);
    MapiMessage message{};
    message.lpszSubject = subjectCopy.data();
    message.lpszNoteText = textCopy.data();
    message.nRecipCount = static_cast<unsigned long>(recipients.size());
    message.lpRecips = recipients.empty() ? nullptr : recipients.data();
    message.nFileCount = static_cast<unsigned long>(descriptions.size());
    message.lpFiles = descriptions.empty() ? nullptr : descriptions.data();
    return SendMail(0, static_cast<std::uintptr_t>(window.id), &message, flags, 0);
}

unsigned long CTovMapiSendMail::Send(MailAddresses const* to, MailAddresses const* cc,
                                     MailAddresses const* bcc, char const* subject, char const* text,
                                     std::vector<CString> const* attachments, unsigned long flags) {
    if (!InitializeMapiLib()) {
        m_available = 0;
        return MAPI_E_FAILURE;
    }
    HWND window;
    CWinApp const* const app = TovGetApp();
    if ((flags & (MAPI_LOGON_UI | MAPI_DIALOG)) != 0 && app != nullptr) window = app->GetMainWnd();
    return SendMailEx(window, to, cc, bcc, subject, text, attachments, flags);
}

void CTovMapiSendMail::GetMAPISendMailErrorString(unsigned long code, CString& text) {
    MapiTextOf(code, sendMailTexts, text);
}
void CTovMapiSendMail::GetMAPILogonErrorString(unsigned long code, CString& text) {
    MapiTextOf(code, logonTexts, text);
}
void CTovMapiSendMail::GetMAPILogoffErrorString(unsigned long code, CString& text) {
    MapiTextOf(code, logonTexts, text);
}

CTovMapiSendMail::NoticeHandler CTovMapiSendMail::SetNoticeHandler(NoticeHandler handler) {
    return mapiNotice.exchange(handler);
}

}  // namespace tov
