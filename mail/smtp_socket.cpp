#include "mail/smtp_socket.h"

#include "vesk/net_socket.h"

#include <asio/buffer.hpp>
#include <asio/error.hpp>

#include <algorithm>
#include <string>

namespace tov {
namespace {

constexpr unsigned int otherSocketError = 26175;

}  // namespace

CTovSmtp::CSmtpSocket::CSmtpSocket() : m_socket(m_context) {
    // Whether there can be one at all; each address opens its own kind.
    std::error_code failure = Open(asio::ip::tcp::v4());
    if (failure == asio::error::address_family_not_supported) failure = Open(asio::ip::tcp::v6());
    if (failure) throw std::system_error(failure);
}

std::error_code CTovSmtp::CSmtpSocket::Open(asio::ip::tcp const& kind) {
    std::error_code failure;
    m_socket.close(failure);
    int const number = OpenNetSocket(kind == asio::ip::tcp::v6(), failure);
    if (failure) return failure;
    m_socket.assign(kind, number, failure);
    if (failure) CloseNetSocket(number);
    return failure;
}

// Waits are asynchronous operations that are run to their end, since only those can be given up.
template <class Begin>
std::error_code CTovSmtp::CSmtpSocket::Wait(unsigned int timeOut, Begin begin) {
    std::error_code result = asio::error::timed_out;
    bool isOver = false;
    begin([&](std::error_code failure) {
        result = failure;
        isOver = true;
    });
    m_context.restart();
    if (timeOut == 0) {
        m_context.run();
    } else {
        m_context.run_for(std::chrono::milliseconds(timeOut));
    }
    if (!isOver) {
        std::error_code ignored;
        m_socket.close(ignored);
        m_context.restart();
        m_context.run();  // the operation ends now, and must not find this call over
        result = asio::error::timed_out;
    }
    return result;
}

std::error_code CTovSmtp::CSmtpSocket::Connect(CString const& server, unsigned int port,
                                               unsigned int timeOut) {
    std::error_code failure;
    asio::ip::tcp::resolver resolver(m_context);
    // Every address counts, also on a machine that knows only itself.
    auto const addresses =
        resolver.resolve(server, std::to_string(port), asio::ip::resolver_base::numeric_service, failure);
    if (failure) return failure;
    failure = asio::error::host_not_found;
    for (auto const& address : addresses) {
        failure = Open(address.endpoint().protocol());
        if (failure) continue;
        failure = Wait(timeOut, [&](auto end) { m_socket.async_connect(address.endpoint(), end); });
        if (!failure) break;
    }
    // A mail ends in a short piece, which would wait for the acknowledgement of the one before.
    std::error_code ignored;
    if (!failure) m_socket.set_option(asio::ip::tcp::no_delay(true), ignored);
    return failure;
}

void CTovSmtp::CSmtpSocket::Send(std::string_view bytes, unsigned int timeOut) {
    constexpr std::size_t step = std::size_t{64} << 10;
    while (!bytes.empty() && !m_sendError) {
        std::size_t sent = 0;
        m_sendError = Wait(timeOut, [&](auto end) {
            m_socket.async_send(asio::buffer(bytes.data(), std::min(bytes.size(), step)),
                                [end, &sent](std::error_code failure, std::size_t count) {
                                    sent = count;
                                    end(failure);
                                });
        });
        bytes.remove_prefix(sent);
    }
}

std::error_code CTovSmtp::CSmtpSocket::Receive(char* buffer, std::size_t size, std::size_t& got,
                                               unsigned int timeOut) {
    got = 0;
    std::error_code failure;
    if (m_sendError) {
        m_socket.non_blocking(true, failure);
        if (!failure) got = m_socket.receive(asio::buffer(buffer, size), 0, failure);
        return got != 0 ? std::error_code() : m_sendError;
    }
    failure = Wait(timeOut, [&](auto end) {
        m_socket.async_receive(asio::buffer(buffer, size),
                               [end, &got](std::error_code code, std::size_t count) {
                                   got = count;
                                   end(code);
                               });
    });
    return failure == asio::error::eof ? std::error_code() : failure;
}

unsigned int SmtpErrorText(std::error_code failure) {
    struct Row {
        std::error_code failure;
        unsigned int textId;
    };
    // The last rows are names that this kind of socket knows beside the usual ones.
    Row const rows[] = {
        {asio::error::network_down, 26164},
        {asio::error::not_connected, 26165},
        {asio::error::in_progress, 26166},
        {asio::error::not_socket, 26167},
        {asio::error::operation_not_supported, 26168},
        {asio::error::shut_down, 26169},
        {asio::error::would_block, 26170},
        {asio::error::message_size, 26171},
        {asio::error::invalid_argument, 26172},
        {asio::error::connection_aborted, 26173},
        {asio::error::connection_reset, 26174},
        {asio::error::already_started, 26166},
        {asio::error::bad_descriptor, 26167},
        {asio::error::try_again, 26170},
        {asio::error::timed_out, 26173},
        {asio::error::broken_pipe, 26174},
    };
    auto const row = std::ranges::find(rows, failure, &Row::failure);
    return row != std::end(rows) ? row->textId : otherSocketError;
}

}  // namespace tov
