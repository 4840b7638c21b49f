// The mail program of the desktop.
#include <tov310/mapi.h>

#include "mail/mail_text.h"
#include "mail/transfer_encoding.h"
#include "util/file_error.h"
#include "util/file_facts.h"
#include "vesk/directory.h"
#include "vesk/error_codes.h"
#include "vesk/file_pieces.h"
#include "vesk/process.h"

#include <exception>
#include <filesystem>
#include <string_view>
#include <vector>

namespace tov {
namespace {

using MailAddresses = std::vector<TovMailHelper::MAIL_ADDRESS>;

constexpr char const* mailProgram = "xdg-email";
constexpr std::chrono::seconds mailPatience{2};

// Escaped for a URI (RFC 6068). Line ends are CR LF there.
void AppendEscaped(CString& uri, std::string_view text) {
    constexpr char hex[] = "0123456789ABCDEF";
    constexpr std::string_view safe = "-._~@";
    for (char const c : text) {
        bool const isLetter = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
        if (isLetter || safe.find(c) != safe.npos) {
            uri += c;
        } else {
            auto const byte = static_cast<unsigned char>(c);
            uri.append({'%', hex[byte >> 4], hex[byte & 15]});
        }
    }
}

// One text for the whole mail: nothing in it can be taken for an option of the program.
class MailUri {
 public:
    // False for an address that is empty.
    bool AddAddresses(char const* field, MailAddresses const* list) {
        if (list == nullptr) return true;
        for (auto const& one : *list) {
            if (one.address.empty()) return false;
            if (&one != list->data()) {
                m_text += ',';
            } else if (*field != '\0') {
                Begin(field);
            }
            AppendEscaped(m_text, HeaderText(one.address));
        }
        return true;
    }

    void AddText(char const* field, std::string_view text) {
        if (text.empty()) return;
        Begin(field);
        AppendEscaped(m_text, text);
    }

    CString const& Text() const { return m_text; }

 private:
    void Begin(char const* field) {
        m_text.append(m_text.find('?') == CString::npos ? "?" : "&").append(field).append("=");
    }

    CString m_text = "mailto:";
};

// The code of what is wrong with an attachment; its path from the root, which begins like no option.
unsigned long CheckAttachment(CString const& path, std::string& absolute) {
    std::string const systemPath = SystemPath(path.c_str());
    EntryFacts facts;
    if (auto const failure = FactsOfPath(systemPath.c_str(), true, facts))
        return PathErrorCode(failure, systemPath);
    if (facts.kind != EntryKind::kFile) return TOV_ERROR_ACCESS_DENIED;
    FilePieces file;
    std::error_code failure = file.Open(systemPath.c_str());
    if (failure) return PathErrorCode(failure, systemPath);
    absolute = std::filesystem::absolute(systemPath, failure).string();
    return VeskErrorCode(failure.value());
}

// The published exit codes of the program.
unsigned long CodeOfExit(int exitCode) {
    switch (exitCode) {
        case 0:
            return TOV_ERROR_NONE;
        case 1:
            return TOV_ERROR_INVALID_PARAMETER;
        case 2:
            return TOV_ERROR_NOT_FOUND;
        case 3:
            return TOV_ERROR_MODULE_NOT_LOADED;
        case 5:
            return TOV_ERROR_ACCESS_DENIED;
        default:
            return TOV_ERROR_IO;
    }
}

unsigned long HandToClient(MailAddresses const* to, MailAddresses const* cc, MailAddresses const* bcc,
                           char const* subject, char const* text, std::vector<CString> const* attachments) {
    MailUri uri;
    if (!uri.AddAddresses("", to) || !uri.AddAddresses("cc", cc) || !uri.AddAddresses("bcc", bcc))
        return TOV_ERROR_INVALID_PARAMETER;
    uri.AddText("subject", HeaderText(TextOrEmpty(subject)));
    CString body;
    AppendWithLineEnds(body, TextOrEmpty(text));
    uri.AddText("body", body);
    // Otherwise the program takes paths for texts in the charset of its locale.
    std::vector<std::string> arguments{"--utf8", uri.Text()};
    if (attachments != nullptr) {
        for (CString const& path : *attachments) {
            std::string absolute;
            if (unsigned long const code = CheckAttachment(path, absolute)) return code;
            arguments.insert(arguments.end(), {"--attach", absolute});
        }
    }
    std::string const program = FindProgram(mailProgram);
    if (program.empty()) return TOV_ERROR_MODULE_NOT_LOADED;
    int exitCode = 0;
    if (auto const failure = StartProgram(program, arguments, mailPatience, exitCode))
        return VeskErrorCode(failure.value());
    return CodeOfExit(exitCode);
}

}  // namespace

int TovSendMailByClient(MailAddresses const* to, MailAddresses const* cc, MailAddresses const* bcc,
                        char const* subject, char const* text, std::vector<CString> const* attachments,
                        unsigned long* error, CString* message) {
    FileReport const report(error, message);
    try {
        return report.Result(HandToClient(to, cc, bcc, subject, text, attachments));
    } catch (std::exception const&) {  // no memory, or a text longer than any
        return report.Result(TOV_ERROR_NOT_ENOUGH_MEMORY);
    }
}

}  // namespace tov
