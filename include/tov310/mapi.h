// Handing a mail to the mail program of the desktop, which shows it to the user and sends it.
//
// TovSendMailByClient does that on this platform. CTovMapiSendMail is the way by Simple MAPI, an interface
// that mail programs of one other platform offer. Its codes have the published values, and its records the
// published members in their order; "unsigned long" is as wide as the compiler makes it.
#pragma once

#include <tov310/export.h>
#include <tov310/mail_message.h>
#include <tov310/types.h>

#include <vector>

namespace tov {

// Opens a new mail in the user's mail program, by the program "xdg-email" of the desktop, which is looked up
// in PATH. Recipients go by their addresses; their names do not. Lists may be null. Attachments are existing
// files. The user still decides whether the mail is sent.
//
// Answers 1 when the mail was handed over, else 0 and the pair of system_error.h: 126 where the desktop has
// no xdg-email or no mail program, 2, 3 or 5 for an attachment that cannot be attached, 87 for an address
// that is empty, another code when the program failed. Subject and text travel in one argument of the
// program, for which the system has 128 KiB, and most characters but letters take three bytes there: a longer
// mail fails with 0x20000007 and is better attached as a file. The mail program may go on running; the call
// waits for at most two seconds, as long as handing over takes.
TOV_CORE_API int TovSendMailByClient(std::vector<TovMailHelper::MAIL_ADDRESS> const* to,
                                     std::vector<TovMailHelper::MAIL_ADDRESS> const* cc,
                                     std::vector<TovMailHelper::MAIL_ADDRESS> const* bcc, char const* subject,
                                     char const* text, std::vector<CString> const* attachments,
                                     unsigned long* error = nullptr, CString* message = nullptr);

// Results of Simple MAPI.
inline constexpr unsigned long SUCCESS_SUCCESS = 0;
inline constexpr unsigned long MAPI_E_USER_ABORT = 1;
inline constexpr unsigned long MAPI_E_FAILURE = 2;
inline constexpr unsigned long MAPI_E_LOGIN_FAILURE = 3;
inline constexpr unsigned long MAPI_E_INSUFFICIENT_MEMORY = 5;
inline constexpr unsigned long MAPI_E_TOO_MANY_SESSIONS = 8;
inline constexpr unsigned long MAPI_E_TOO_MANY_FILES = 9;
inline constexpr unsigned long MAPI_E_TOO_MANY_RECIPIENTS = 10;
inline constexpr unsigned long MAPI_E_ATTACHMENT_NOT_FOUND = 11;
inline constexpr unsigned long MAPI_E_ATTACHMENT_OPEN_FAILURE = 12;
inline constexpr unsigned long MAPI_E_UNKNOWN_RECIPIENT = 14;
inline constexpr unsigned long MAPI_E_BAD_RECIPTYPE = 15;
inline constexpr unsigned long MAPI_E_TEXT_TOO_LARGE = 18;
inline constexpr unsigned long MAPI_E_INVALID_SESSION = 19;
inline constexpr unsigned long MAPI_E_AMBIG_RECIP = 21;
inline constexpr unsigned long MAPI_E_INVALID_RECIPS = 25;

// Classes of recipients.
inline constexpr unsigned long MAPI_ORIG = 0;
inline constexpr unsigned long MAPI_TO = 1;
inline constexpr unsigned long MAPI_CC = 2;
inline constexpr unsigned long MAPI_BCC = 3;

// Flags; any sum.
inline constexpr unsigned long MAPI_LOGON_UI = 0x1;     // a dialog may ask for the log-in
inline constexpr unsigned long MAPI_NEW_SESSION = 0x2;  // not one that another program began
inline constexpr unsigned long MAPI_DIALOG = 0x8;       // the mail is shown before it goes

struct MapiFileDesc {
    unsigned long ulReserved;
    unsigned long flFlags;
    unsigned long nPosition;  // of its sign in the text; -1 for none
    char* lpszPathName;
    char* lpszFileName;
    void* lpFileType;
};

struct MapiRecipDesc {
    unsigned long ulReserved;
    unsigned long ulRecipClass;
    char* lpszName;
    char* lpszAddress;
    unsigned long ulEIDSize;
    void* lpEntryID;
};

struct MapiMessage {
    unsigned long ulReserved;
    char* lpszSubject;
    char* lpszNoteText;
    char* lpszMessageType;
    char* lpszDateReceived;
    char* lpszConversationID;
    unsigned long flFlags;
    MapiRecipDesc* lpOriginator;
    unsigned long nRecipCount;
    MapiRecipDesc* lpRecips;
    unsigned long nFileCount;
    MapiFileDesc* lpFiles;
};

// Sends mails by Simple MAPI. Where there is no such thing, as on this platform, nothing is sent: every call
// says that it failed. A derived class that knows one sets m_module and all three entry points; without each
// of them InitializeMapiLib and Send fail. To be used on the user-interface thread; the dialogs of the mail
// program run inside the call.
class TOV_CORE_API CTovMapiSendMail {
 public:
    using MAIL_ADDRESS = TovMailHelper::MAIL_ADDRESS;
    using LHANDLE = std::uintptr_t;  // a session; 0 is none
    using SendMailEntry = unsigned long (*)(LHANDLE session, std::uintptr_t window, MapiMessage* message,
                                            unsigned long flags, unsigned long reserved);
    using LogonEntry = unsigned long (*)(std::uintptr_t window, char* profile, char* password,
                                         unsigned long flags, unsigned long reserved, LHANDLE* session);
    using LogoffEntry = unsigned long (*)(LHANDLE session, std::uintptr_t window, unsigned long flags,
                                          unsigned long reserved);

    // Ids of what a user is told: there is no mail system; it lacks an entry point.
    static constexpr unsigned int noMailSystem = 0xF190;
    static constexpr unsigned int faultyMailSystem = 0xF191;

    CTovMapiSendMail() = default;
    CTovMapiSendMail(CTovMapiSendMail const&) = delete;
    CTovMapiSendMail& operator=(CTovMapiSendMail const&) = delete;
    virtual ~CTovMapiSendMail();

    // Finds the mail system. Answers 1, or 0; a notice tells the user why, unless Send has failed to find it
    // before.
    int InitializeMapiLib();

    // The three entry points; MAPI_E_FAILURE where there are none.
    unsigned long SendMail(LHANDLE session, std::uintptr_t window, MapiMessage* message, unsigned long flags,
                           unsigned long reserved);
    unsigned long Logon(std::uintptr_t window, char* profile, char* password, unsigned long flags,
                        unsigned long reserved, LHANDLE* session);
    unsigned long Logoff(LHANDLE session, std::uintptr_t window, unsigned long flags, unsigned long reserved);

    // Sends a mail with the window as owner of the dialogs. Lists may be null. Answers the code of
    // MAPISendMail.
    unsigned long SendMailEx(HWND window, std::vector<MAIL_ADDRESS> const* to,
                             std::vector<MAIL_ADDRESS> const* cc, std::vector<MAIL_ADDRESS> const* bcc,
                             char const* subject, char const* text, std::vector<CString> const* attachments,
                             unsigned long flags);

    // The same, with the main window of the application (application.h) where the flags allow dialogs. That
    // window is the owner and nothing else: whoever sets entry points keeps the user from it while a dialog
    // is up and gives the focus back, as only the toolkit can. Once no mail system could be found the object
    // stays silent and answers MAPI_E_FAILURE.
    unsigned long Send(std::vector<MAIL_ADDRESS> const* to, std::vector<MAIL_ADDRESS> const* cc,
                       std::vector<MAIL_ADDRESS> const* bcc, char const* subject, char const* text,
                       std::vector<CString> const* attachments, unsigned long flags);

    // The text of a result, in the language of the library's resource module; of an unknown one that of
    // MAPI_E_FAILURE.
    static void GetMAPISendMailErrorString(unsigned long code, CString& text);
    static void GetMAPILogonErrorString(unsigned long code, CString& text);
    static void GetMAPILogoffErrorString(unsigned long code, CString& text);

    // Who shows the notices to the user, in texts of the host's own; null, as at first, for nobody. Answers
    // the one before.
    using NoticeHandler = void (*)(unsigned int id);
    static NoticeHandler SetNoticeHandler(NoticeHandler handler);

 protected:
    int m_available = 1;
    void* m_module = nullptr;  // what the entry points come from
    SendMailEntry m_sendMail = nullptr;
    LogonEntry m_logon = nullptr;
    LogoffEntry m_logoff = nullptr;
};

}  // namespace tov
