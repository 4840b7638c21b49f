#include <tov310/smtp.h>

#include <tov310/wait_cursor.h>

#include "frame/resource_module.h"
#include "mail/mail_text.h"
#include "mail/smtp_socket.h"
#include "mail/transfer_encoding.h"

#include <asio/ip/host_name.hpp>

#include <algorithm>
#include <charconv>
#include <new>
#include <string>
#include <string_view>
#include <utility>

namespace tov {
namespace {

constexpr unsigned int mostPort = 65535;

constexpr unsigned int textNoServerName = 26156;
constexpr unsigned int textNoSocket = 26157;
constexpr unsigned int textNoConnection = 26158;
constexpr unsigned int textNoGreeting = 26159;
constexpr unsigned int textNotConnected = 26160;
constexpr unsigned int textNoSender = 26161;
constexpr unsigned int textNoRecipient = 26162;
constexpr unsigned int textNotInitialized = 26163;

CString LocalHostName() {
    constexpr std::size_t most = 255;
    std::error_code failure;
    CString name = asio::ip::host_name(failure).substr(0, most);
    return failure || name.empty() ? "localhost" : name;
}

// The number at the beginning of the first three characters; 0 where there is none.
unsigned int ReplyCode(std::string_view reply) {
    constexpr std::size_t length = 3;
    if (reply.size() < length) return 0;
    reply = reply.substr(0, length);
    reply.remove_prefix(std::min(reply.find_first_not_of(" \t\r\n"), reply.size()));
    unsigned int code = 0;
    std::from_chars(reply.data(), reply.data() + reply.size(), code);
    return code;
}

// Sets a value for the length of a block.
class Kept {
 public:
    Kept(int& value, int inside) : m_value(value), m_before(std::exchange(value, inside)) {}
    Kept(Kept const&) = delete;
    Kept& operator=(Kept const&) = delete;
    ~Kept() { m_value = m_before; }

 private:
    int& m_value;
    int m_before;
};

}  // namespace

CTovSmtp::RESPONSE_CODE const CTovSmtp::s_ResponseTable[4] = {
    {250, 26152},  // GENERIC_SUCCESS
    {220, 26153},  // CONNECT_SUCCESS
    {354, 26154},  // DATA_SUCCESS
    {221, 26155},  // QUIT_SUCCESS
};

CTovSmtp::CTovSmtp() = default;
CTovSmtp::CTovSmtp(CString server, unsigned int port) : m_server(std::move(server)) {
    CTovSmtp::Port(port);
}
CTovSmtp::~CTovSmtp() {
    if (m_connected) CTovSmtp::Disconnect();
}

int CTovSmtp::Connect() {
    if (m_connected) return 1;
    if (m_server.empty()) return SetError(textNoServerName, 0), 0;
    m_lastCode = 0;
    try {
        m_socket = std::make_unique<CSmtpSocket>();
    } catch (std::system_error const&) {
        return SetError(textNoSocket, 0), 0;
    }
    // A zero byte would end the name early.
    bool const isName = m_server.find('\0') == CString::npos;
    if (!isName || m_socket->Connect(m_server, m_port, m_timeOut)) {
        SetError(textNoConnection, 0);
    } else if (!GetResponse(CONNECT_SUCCESS)) {
        SetError(textNoGreeting, m_lastCode);
    } else if (Greet() && m_socket != nullptr) {
        return m_connected = 1;
    }
    Close();
    return 0;
}

int CTovSmtp::Greet() {
    Send("HELO " + LocalHostName() + "\r\n");
    return GetResponse(GENERIC_SUCCESS);
}

int CTovSmtp::Disconnect() {
    if (!m_connected) return 1;
    Send("QUIT\r\n");
    int const result = GetResponse(QUIT_SUCCESS);
    Close();
    return result;
}

// A derived class may have taken the loss of the connection for an answer.
void CTovSmtp::Send(std::string_view bytes) {
    if (m_socket != nullptr) m_socket->Send(bytes, m_timeOut);
}

void CTovSmtp::Close() {
    m_socket.reset();
    m_connected = 0;
}

int CTovSmtp::SendMailMessage(CTovMailMessage* message) {
    if (!m_connected) return SetError(textNotConnected, 0), 0;
    CTovWaitCursor const wait;
    return TransmitMailMessage(message);
}

int CTovSmtp::TransmitMailMessage(CTovMailMessage* message) {
    if (message == nullptr) return 0;
    if (!m_connected) return SetError(textNotConnected, 0), 0;
    CString const sender = HeaderText(message->From().address);
    if (sender.empty()) return SetError(textNoSender, 0), 0;
    if (message->GetNumRecipients() == 0) return SetError(textNoRecipient, 0), 0;

    Send("MAIL From: <" + sender + ">\r\n");
    if (!GetResponse(GENERIC_SUCCESS)) return 0;
    for (auto const type :
         {CTovMailMessage::eRecipientTo, CTovMailMessage::eRecipientCc, CTovMailMessage::eRecipientBcc}) {
        CString address, name;
        for (unsigned int i = 0; message->Recipient(address, name, i, type); ++i) {
            Send("RCPT TO: <" + HeaderText(address) + ">\r\n");
            // Whom the server does not know is no failure.
            Kept const anyCode(m_isAnyCodeGood, 1);
            GetResponse(GENERIC_SUCCESS);
            if (!m_connected) return 0;
        }
    }
    // What fails while the mail is composed must not leave the server waiting for its end.
    Kept const strict(m_strict, message->StrictEncoding());
    CString header = message->Header();
    PrepareHeader(header);
    m_strict ? StuffStrictly(header, true) : DoubleLoneDots(header);
    header += "\r\n";
    CString body = message->Body();
    PrepareBody(body);
    Send("DATA\r\n");
    if (!GetResponse(DATA_SUCCESS)) return 0;
    try {
        Send(header);
        Send(body);
        // Strictly, the line end of the last line is not doubled.
        bool const isAtLine = m_strict && (body.empty() || body.ends_with("\r\n"));
        Send(isAtLine ? ".\r\n" : "\r\n.\r\n");
    } catch (...) {
        Close();
        throw;
    }
    return GetResponse(GENERIC_SUCCESS);
}

void CTovSmtp::PrepareHeader(CString&) {}

void CTovSmtp::PrepareBody(CString& body) {
    bool const isEnded = body.ends_with("\r\n") || (m_strict && body.empty());
    if (!isEnded) {
        MakeRoom(body, 2);
        body += "\r\n";
    }
    m_strict ? StuffStrictly(body, false) : DoubleLoneDots(body);
}

int CTovSmtp::GetResponse(unsigned int row) {
    m_lastCode = 0;
    if (m_socket == nullptr) return SetError(textNotInitialized, 0), 0;
    RESPONSE_CODE const& expected =
        s_ResponseTable[std::min<std::size_t>(row, std::size(s_ResponseTable) - 1)];
    char buffer[1024];
    std::size_t got = 0;
    std::error_code failure = m_socket->Receive(buffer, sizeof buffer, got, m_timeOut);
    m_lastCode = ReplyCode({buffer, got});
    bool const isExpected = m_lastCode == expected.nResponse;
    bool const isGood = isExpected || (m_isAnyCodeGood && got != 0);
    // A server that agrees before it has got all has not got it.
    if (isGood) failure = m_socket->SendError();
    if (isGood && !failure) return isExpected;
    failure ? SetError(SmtpErrorText(failure), 0) : SetError(expected.nTextId, m_lastCode);
    // Nothing more can come over a lost connection.
    if (failure || got == 0 || m_socket->SendError()) Close();
    return 0;
}

void CTovSmtp::SetError(unsigned int nTextId, unsigned int nCode) {
    m_lastError = std::to_string(nCode) + ':' + LibraryString(nTextId);
}

CString CTovSmtp::Server() const {
    return m_server;
}
int CTovSmtp::Server(CString server) {
    if (m_connected) return 0;
    m_server = std::move(server);
    return 1;
}
unsigned int CTovSmtp::Port() const {
    return m_port;
}
int CTovSmtp::Port(unsigned int port) {
    if (m_connected || port == 0 || port > mostPort) return 0;
    m_port = port;
    return 1;
}
int CTovSmtp::Connected() const {
    return m_connected;
}
CString CTovSmtp::GetLastError() const {
    return m_lastError;
}

}  // namespace tov
