// The connection to a mail server.
#pragma once

#include <tov310/smtp.h>

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>

#include <chrono>
#include <cstddef>
#include <string_view>
#include <system_error>

namespace tov {

// Calls wait, at most `timeOut` milliseconds for each step (0 for ever), and come back with a failure of
// Asio's categories. No call raises a signal. A signal that a host handles does not end a wait.
class CTovSmtp::CSmtpSocket {
 public:
    CSmtpSocket();  // throws std::system_error where the system has no room for a socket

    // Tries every address of the name and leaves the socket connected to the first that answers.
    std::error_code Connect(CString const& server, unsigned int port, unsigned int timeOut);

    // Sends all of it, in steps of 64 KiB. A failure is remembered: from then on nothing is sent, and what
    // the server may have said before is all that can still be received.
    void Send(std::string_view bytes, unsigned int timeOut);
    std::error_code SendError() const { return m_sendError; }

    // One block; 0 bytes without a failure where the server has closed the connection.
    std::error_code Receive(char* buffer, std::size_t size, std::size_t& got, unsigned int timeOut);

 private:
    std::error_code Open(asio::ip::tcp const& kind);

    template <class Begin>
    std::error_code Wait(unsigned int timeOut, Begin begin);

    asio::io_context m_context{1};
    asio::ip::tcp::socket m_socket;
    std::error_code m_sendError;
};

// The id of the text that tells of a failure of the socket.
unsigned int SmtpErrorText(std::error_code failure);

}  // namespace tov
