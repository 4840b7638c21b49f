// What a server says: any bytes in any pieces, and then the end, leave an error in its form and a closed
// connection, or a mail that was taken.
#include <tov310/smtp.h>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <thread>

namespace {

void Expect(bool good) {
    if (!good) std::abort();
}

// Says a piece for each thing that it hears; a zero byte ends a piece.
void Serve(int listener, std::string words) {
    int const peer = ::accept(listener, nullptr, nullptr);
    char heard[4096];
    while (!words.empty()) {
        std::string const piece = words.substr(0, words.find('\0'));
        words.erase(0, piece.size() + 1);
        if (!piece.empty()) ::send(peer, piece.data(), piece.size(), MSG_NOSIGNAL);
        if (::read(peer, heard, sizeof heard) <= 0) break;
    }
    ::close(peer);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    int const listener = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto* const any = reinterpret_cast<sockaddr*>(&address);
    socklen_t length = sizeof address;
    Expect(::bind(listener, any, length) == 0 && ::listen(listener, 1) == 0);
    ::getsockname(listener, any, &length);
    std::thread server(Serve, listener, std::string(reinterpret_cast<char const*>(data), size));

    tov::CTovMailMessage mail;
    mail.From("a@x");
    mail.AddRecipient("b@x", tov::CTovMailMessage::eRecipientTo);
    mail.Body("text");
    tov::CTovSmtp smtp("127.0.0.1", ntohs(address.sin_port));
    smtp.TimeOut(20);  // the server may say nothing and wait as well
    int const connected = smtp.Connect();
    Expect(connected == smtp.Connected());
    int const sent = connected && smtp.SendMailMessage(&mail);
    smtp.Disconnect();
    Expect(!smtp.Connected());
    if (!sent) {
        std::string const error = smtp.GetLastError();
        std::size_t const digits = error.find_first_not_of("0123456789");
        Expect(digits >= 1 && digits <= 3 && error[digits] == ':' && error.size() > digits + 1);
    }
    server.join();
    ::close(listener);
    return 0;
}
