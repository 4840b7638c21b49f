// What a server says: any bytes in any pieces, and then the end, leave an error in its form and a closed
// connection, or a mail that was taken.
#include <tov310/smtp.h>

#include "fuzz/expect.h"
#include "tests/support/scripted_server.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    using namespace tov::test;
    std::string words(reinterpret_cast<char const*>(data), size);
    std::erase(words, '|');     // a pause
    std::vector<Reply> script;  // a zero byte ends a reply
    do {
        script.push_back({words.substr(0, words.find('\0'))});
        words.erase(0, script.back().text.size() + 1);
    } while (!words.empty());
    script.back().end = End::kClose;
    ScriptedServer server(std::move(script));

    tov::CTovMailMessage mail;
    mail.From("a@x");
    mail.AddRecipient("b@x", tov::CTovMailMessage::eRecipientTo);
    mail.Body("text");
    tov::CTovSmtp smtp("127.0.0.1", server.Port());
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
    return 0;
}
