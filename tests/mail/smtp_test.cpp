// The client against a server that says and does whatever a row of a table tells it.
#include <tov310/mime.h>
#include <tov310/resources.h>
#include <tov310/smtp.h>
#include <tov310/wait_cursor.h>

#include "support/scripted_server.h"
#include "vesk/cpu.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <netdb.h>
#include <sys/resource.h>
#include <sys/time.h>

#include <algorithm>
#include <cstring>
#include <new>

namespace {
int recvFailure = 0;  // of every receive of this process; the server reads otherwise
}

extern "C" [[gnu::visibility("default")]] ssize_t recvmsg(int, msghdr*, int) {
    return errno = recvFailure, -1;
}
extern "C" [[gnu::visibility("default")]] ssize_t recv(int socket, void* buffer, size_t size, int) {
    return recvFailure != 0 ? (errno = recvFailure, -1) : ::read(socket, buffer, size);
}

// A machine with a long name.
extern "C" [[gnu::visibility("default")]] int gethostname(char* name, size_t size) noexcept {
    std::fill_n(name, size, '\0');
    return std::fill_n(name, 300, 'h'), 0;
}

// A name with two addresses, at the first of which nobody listens.
extern "C" [[gnu::visibility("default")]] int getaddrinfo(char const* name, char const* service,
                                                          addrinfo const* hints, addrinfo** result) {
    static auto* const real = reinterpret_cast<decltype(&getaddrinfo)>(::dlsym(RTLD_NEXT, "getaddrinfo"));
    if (std::strcmp(name, "two.example") != 0) return real(name, service, hints, result);
    int const failure = real("127.0.0.7", service, hints, result);
    return failure != 0 ? failure : real("127.0.0.1", service, hints, &(*result)->ai_next);
}

namespace tov {
namespace {

using namespace std::chrono_literals;
using test::End;
using test::Reply;
using test::ScriptedServer;

struct Smtp : testing::Test {
    Smtp() {
        static HINSTANCE const english = TovLoadResourceModule(TOV_TEST_SOURCE_DIR "/res/en");
        TovSetTovResourceHandle(english);
        mail.From("A <a@x>");
        mail.AddRecipient("b@x", CTovMailMessage::eRecipientTo);
        mail.AddRecipient("c@x", CTovMailMessage::eRecipientCc);
        mail.AddRecipient("d@x", CTovMailMessage::eRecipientBcc);
        mail.Body("text");
    }
    ~Smtp() override { TovSetTovResourceHandle(nullptr); }

    CTovMailMessageMimeContainer mail;
};

// The good reply to each step, and the text of a wrong one.
constexpr char const* wrong = "SMTP server error.";
constexpr struct {
    char const *good, *error;
} dialogue[] = {{"220 hi\r\n", "Server didn't respond."},
                {"250 a\r\n", wrong},
                {"250 b\r\n", wrong},
                {"251 c\r\n", ""},
                {"550 d\r\n", ""},
                {"250 e\r\n", ""},
                {"354 f\r\n", "SMTP server not ready for data."},
                {"250 g\r\n", wrong},
                {"221 h\r\n", "SMTP server didn't terminate session."}};
constexpr std::size_t steps = std::size(dialogue);

std::vector<Reply> GoodScript() {
    std::vector<Reply> script;
    for (auto const& step : dialogue)
        script.push_back({step.good});
    return script;
}

// Every step with every kind of answer and of end, against what is told of each.
TEST_F(Smtp, EveryStepAnswersEveryReplyAndEveryLoss) {
    struct {
        std::string text;
        unsigned code;
        End end;
    } const answers[] = {{"", 0, End::kClose},
                         {"25", 0, End::kReset},
                         {"251 x\r\n", 251, End::kStay},
                         {"421 x\r\n", 421, End::kClose},
                         {"-20", 0, End::kStay},
                         {"  7", 7, End::kStay},
                         {std::string(2000, '9') + "\r\n", 999, End::kStay}};
    for (std::size_t step = 0; step < steps; ++step) {
        for (auto const& answer : answers) {
            bool const isRecipient = step >= 3 && step <= 5;
            // A block is a reply, so that a long one is two, and what is left of it goes for the next step.
            bool const isLong = answer.text.size() > 1024;
            if (isLong && isRecipient) continue;
            auto script = GoodScript();
            script[step] = {answer.text, answer.end};
            ScriptedServer server(script);
            CTovSmtp smtp("127.0.0.1", server.Port());
            int const connected = smtp.Connect();
            int const sent = connected && smtp.SendMailMessage(&mail);
            int const stays = smtp.Connected();
            std::string const first = smtp.GetLastError();
            int const ended = smtp.Disconnect();
            std::string const last = smtp.GetLastError();
            SCOPED_TRACE(std::to_string(step) + ' ' + answer.text.substr(0, 9) + ' ' + first + ' ' + last);

            bool const isLost = answer.end != End::kStay;
            bool const isAccepted = isRecipient && !isLost;
            std::string const error = std::to_string(answer.code) + ':' + dialogue[step].error;
            EXPECT_TRUE(connected == (step > 1) && sent == (step == 8 || isAccepted) && !smtp.Connected());
            if (!isLost) {
                EXPECT_EQ(stays, connected);
                EXPECT_EQ(step == 8 ? last : first, isAccepted ? "OK" : error);
            } else {
                // A reset may overtake what was said before it, even the word that the connection stands.
                // Where that is no failure the next step fails.
                EXPECT_TRUE(!stays || (answer.text != "" && !isRecipient) || step == 8);
                std::string const reset =
                    step == 0 ? dialogue[0].error : "Virtual circuit was reset by the remote side.";
                std::string const overtaken = step == 0 ? "0:Unable to connect to server." : error;
                EXPECT_THAT(step == 8 ? last : first,
                            testing::AnyOf(error, overtaken, "0:" + reset,
                                           isRecipient ? "0:SMTP server not ready for data." : "",
                                           isRecipient ? "0:SMTP server error." : ""));
            }
            EXPECT_EQ(ended, !stays || isAccepted || (step == 7 && !isLost && !isLong));
        }
    }
}

TEST_F(Smtp, TheWholeDialogueIsAsItHasAlwaysBeen) {
    struct : CTovSmtp {
        void PrepareHeader(CString& header) override {
            wasWaiting = CTovWaitCursor::Active();
            header = "H: " + std::to_string(header.find("Date: ")) + "\r\n.\r\n";
        }
        void SetError(unsigned id, unsigned) override { ADD_FAILURE() << id; }
        int wasWaiting = 0;
    } smtp;
    ScriptedServer server(GoodScript());
    EXPECT_TRUE(smtp.Server("127.0.0.1") && smtp.Port(server.Port()));
    EXPECT_TRUE(smtp.Connect() && smtp.Connect() && smtp.Connected());
    EXPECT_TRUE(!smtp.Port(587) && smtp.Port() == server.Port() && !smtp.Server("x") &&
                smtp.Server() == "127.0.0.1");
    for (int number = 3; number < 100; ++number) {
        sockaddr_in peer{};
        socklen_t size = sizeof peer;
        bool const isOpen = ::getpeername(number, reinterpret_cast<sockaddr*>(&peer), &size) == 0;
        if (!isOpen || ntohs(peer.sin_port) != server.Port()) continue;
        EXPECT_EQ(::fcntl(number, F_GETFD), FD_CLOEXEC) << "programs that the host starts inherit it";
    }
    mail.From({"A", "a@x\r\nRSET"});
    EXPECT_TRUE(smtp.SendMailMessage(&mail) && smtp.wasWaiting && !CTovWaitCursor::Active());
    EXPECT_EQ(smtp.SendMailMessage(nullptr), 0);
    EXPECT_TRUE(smtp.Disconnect() && smtp.GetLastError() == "OK" && !smtp.Connected());
    EXPECT_EQ(server.Got(), "HELO " + std::string(255, 'h') +
                                "\r\nMAIL From: <a@x  RSET>\r\nRCPT TO: <b@x>\r\nRCPT TO: <c@x>\r\nRCPT TO: "
                                "<d@x>\r\nDATA\r\nH: 0\r\n..\r\n\r\ntext\r\n\r\n.\r\nQUIT\r\n");
}

// Whoever composes may throw; the server must not be left waiting for the rest of a text.
TEST_F(Smtp, WhatCannotBeComposedIsNotBegun) {
    static char const* culprit;
    struct Mail : CTovMailMessage {
        CString Header() const override { return Check("Header"), ""; }
        CString Body() const override { return Check("Body"), ""; }
        using CTovMailMessage::Body;
        void Check(char const* name) const {
            if (std::strcmp(name, culprit) == 0) throw std::bad_alloc();
        }
    } bad;
    struct Client : CTovSmtp {
        using CTovSmtp::CTovSmtp;
        void PrepareHeader(CString&) override { Mail().Check("PrepareHeader"); }
        void PrepareBody(CString&) override { Mail().Check("PrepareBody"); }
    };
    bad.From("a@x");
    bad.AddRecipient("b@x", CTovMailMessage::eRecipientTo);
    for (char const* const name : {"Header", "Body", "PrepareHeader", "PrepareBody"}) {
        culprit = name;
        ScriptedServer server({{"220"}, {"250"}, {"250"}, {"250"}, {"221"}});
        Client smtp("127.0.0.1", server.Port());
        EXPECT_TRUE(smtp.Connect());
        EXPECT_THROW(smtp.SendMailMessage(&bad), std::bad_alloc) << name;
        EXPECT_TRUE(smtp.Connected() && smtp.Disconnect()) << name;
        EXPECT_THAT(server.Got(), testing::EndsWith("<b@x>\r\nQUIT\r\n"));
    }
}

// What is sent of a header and a body, for dots and line ends of all kinds and for long lines.
TEST_F(Smtp, DotsAreDoubledWhereAServerCouldTakeThemForTheEnd) {
    std::string const h(998, 'h');
    // clang-format off
    struct { std::string header, body, usual, strict; } const rows[] = {
        {"", "", "\r\n\r\n\r\n.\r\n", "\r\n.\r\n"},
        {"", ".", "\r\n..\r\n\r\n.\r\n", "\r\n..\r\n.\r\n"},
        {"", ".\r\n", "\r\n..\r\n\r\n.\r\n", "\r\n..\r\n.\r\n"},
        {".\r\n", "a\r\n.\r\n.\r\n.\r\nQUIT", "..\r\n\r\na\r\n..\r\n..\r\n..\r\nQUIT\r\n\r\n.\r\n",
         "..\r\n\r\na\r\n..\r\n..\r\n..\r\nQUIT\r\n.\r\n"},
        {"", "..\r\n.a\r\n", "\r\n..\r\n.a\r\n\r\n.\r\n", "\r\n...\r\n..a\r\n.\r\n"},
        {"", "a\n.\n.\r.\nb", "\r\na\n..\n..\r..\nb\r\n\r\n.\r\n", "\r\na\r\n..\r\n..\r\n..\r\nb\r\n.\r\n"},
        {h + "To: x\r\n", h + ".c", h + "To: x\r\n\r\n" + h + ".c\r\n\r\n.\r\n",
         h + "\r\n To: x\r\n\r\n" + h + "\r\n..c\r\n.\r\n"}};
    // clang-format on
    for (auto const& row : rows) {
        for (int const strict : {0, 1}) {
            struct Raw : CTovMailMessage {  // written as it is
                int StrictEncoding() const override { return strict; }
                CString Header() const override { return header; }
                CString header;
                int strict = 0;
            } raw;
            raw.header = row.header;
            raw.strict = strict;
            raw.From("a@x");
            raw.AddRecipient("b@x", CTovMailMessage::eRecipientTo);
            raw.Body(row.body.c_str());
            ScriptedServer server({{"220"}, {"250"}, {"250"}, {"250"}, {"354"}, {"250"}, {"221"}});
            CTovSmtp smtp("127.0.0.1", server.Port());
            EXPECT_TRUE(smtp.Connect() && smtp.SendMailMessage(&raw) && smtp.Disconnect())
                << smtp.GetLastError();
            EXPECT_THAT(server.Got(),
                        testing::EndsWith("DATA\r\n" + (strict ? row.strict : row.usual) + "QUIT\r\n"))
                << row.body;
        }
    }
}

TEST_F(Smtp, APieceIsAReply) {
    struct {
        std::vector<Reply> script;
        char const* error;
        int connected;
    } const rows[] = {
        {{{"22|0 hi\r\n"}}, "0:Server didn't respond.", 0},
        {{{"220-a\r\n|220 b\r\n", End::kStay}, {"250"}}, "220:SMTP server error.", 0},
        {{{"220-a\r\n220 b\r\n"}, {"250"}, {"221"}}, "OK", 1},
    };
    for (auto const& row : rows) {
        ScriptedServer server(row.script);
        CTovSmtp smtp("127.0.0.1", server.Port());
        EXPECT_EQ(smtp.Connect(), row.connected);
        EXPECT_EQ(smtp.GetLastError(), row.error);
        EXPECT_EQ(smtp.Connected(), row.connected);
    }
}

// Losses in the middle of the text, in front of a client that has much more to send than the system keeps.
TEST_F(Smtp, ALossInsideTheTextIsAnErrorAndNoSignal) {
    mail.Body(std::string(16 << 20, 'x').c_str());
    for (std::size_t i = 0; i < 6; ++i) {
        auto script = GoodScript();
        char const* const words[] = {"552 too much\r\n", "250 early\r\n", ""};
        script[7] = {words[i % 3], i % 2 == 0 ? End::kClose : End::kReset};
        ScriptedServer server(script, i * 9'999);
        CTovSmtp smtp("127.0.0.1", server.Port());
        EXPECT_TRUE(smtp.Connect() && !smtp.SendMailMessage(&mail) && !smtp.Connected());
        EXPECT_THAT(smtp.GetLastError(), testing::AnyOf("552:SMTP server error.",
                                                        "0:Virtual circuit was reset by the remote side."));
        EXPECT_TRUE(smtp.Disconnect() && !smtp.SendMailMessage(&mail));
        EXPECT_EQ(smtp.GetLastError(), "0:Must be connected to SMTP server.");
    }
}

TEST_F(Smtp, WaitsEndInTimeAndNotBySignals) {
    struct sigaction action {};
    struct sigaction before {};
    action.sa_handler = [](int) {};
    ::sigaction(SIGALRM, &action, &before);
    itimerval const often{{0, 3000}, {0, 3000}}, never{};
    ::setitimer(ITIMER_REAL, &often, nullptr);
    char const* const late = "0:Virtual circuit was aborted due to timeout or other failure.";
    for (std::size_t const silent : {0U, 7U}) {
        for (unsigned const timeOut : {0U, 250U}) {
            auto script = GoodScript();
            script[silent].pause = 700ms;
            ScriptedServer server(script);
            CTovSmtp smtp("127.0.0.1", server.Port());
            smtp.TimeOut(timeOut);
            int const done = smtp.Connect() && smtp.SendMailMessage(&mail) && smtp.Disconnect();
            EXPECT_TRUE(done == (timeOut == 0) && !smtp.Connected());
            // On a busy machine already the greeting may come too late.
            EXPECT_THAT(smtp.GetLastError(), testing::AnyOf(timeOut == 0 ? "OK" : "0:Server didn't respond.",
                                                            timeOut == 0 || silent == 0 ? "OK" : late));
        }
    }
    ::setitimer(ITIMER_REAL, &never, nullptr);
    ::sigaction(SIGALRM, &before, nullptr);
    // Who takes nothing at all.
    auto script = GoodScript();
    script[7] = {"250", End::kClose, 1500ms};
    ScriptedServer server(script, 1);
    CTovSmtp smtp("127.0.0.1", server.Port());
    smtp.TimeOut(500);
    mail.Body(std::string(16 << 20, 'x').c_str());
    EXPECT_TRUE(smtp.Connect() && !smtp.SendMailMessage(&mail));
    EXPECT_EQ(smtp.GetLastError(), late);
}

TEST_F(Smtp, EveryAddressOfANameIsTried) {
    ScriptedServer server({{"220"}, {"250"}, {"221"}});
    CTovSmtp smtp("two.example", server.Port());
    EXPECT_TRUE(smtp.Connect() && smtp.Disconnect()) << smtp.GetLastError();
}

TEST_F(Smtp, WhatIsWrongBeforeAnythingIsSentIsTold) {
    auto made = CTovSmtp::classCTovSmtp.CreateObject();
    auto& smtp = dynamic_cast<CTovSmtp&>(*made);
    EXPECT_TRUE(smtp.Server().empty() && smtp.Port() == 25 && smtp.GetLastError() == "OK" &&
                smtp.Disconnect());
    EXPECT_TRUE(!smtp.Port(0) && !smtp.Port(65536) && smtp.Port() == 25);
    auto const fails = [&](int result, char const* error) {
        EXPECT_TRUE(result == 0 && smtp.GetLastError() == error) << error << smtp.GetLastError();
    };
    fails(smtp.Connect(), "0:SMTP server name must not be empty.");
    fails(smtp.SendMailMessage(nullptr), "0:Must be connected to SMTP server.");
    ScriptedServer server({{"220"}, {"250"}, {"221"}});
    smtp.Port(server.Port());
    for (std::string const& nobody : {std::string("127.0.0.7"), std::string("127.0.0.1\0.example", 18)}) {
        smtp.Server(nobody);
        fails(smtp.Connect(), "0:Unable to connect to server.");
    }
    smtp.Server("127.0.0.1");
    int const next = ::dup(0);
    ::close(next);
    rlimit before;
    ::getrlimit(RLIMIT_NOFILE, &before);
    for (unsigned few = 0; few < 4 && !TOV_SANITIZED; ++few) {  // the sanitizer needs descriptors of its own
        rlimit const limit{static_cast<rlim_t>(next) + few, before.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &limit);
        int const result = smtp.Connect();
        ::setrlimit(RLIMIT_NOFILE, &before);
        fails(result, "0:Unable to create the socket.");
    }
    EXPECT_TRUE(smtp.Connect()) << smtp.GetLastError();
    CTovMailMessage empty;
    fails(smtp.SendMailMessage(&empty), "0:No sender (FROM) given.");
    empty.From("a@x");
    fails(smtp.SendMailMessage(&empty), "0:No Recipient (TO) given.");
    EXPECT_TRUE(smtp.Disconnect());
}

TEST_F(Smtp, FailuresOfTheSocketHaveTheirTexts) {
    // clang-format off
    std::pair<int, char const*> const rows[] = {
        {ENETDOWN, "Network subsystem failed."}, {ENOTCONN, "Socket is not connected."},
        {EINPROGRESS, "Blocking Windows sockets operation is in progress."},
        {ENOTSOCK, "The descriptor is not a socket."}, {EOPNOTSUPP, "Socket is not of type SOCK_STREAM."},
        {ESHUTDOWN, "Socket has been shut down."}, {EINVAL, "Socket has not been bound with Bind."},
        {EMSGSIZE, "The datagram was too large to fit into the specified buffer and was truncated."},
        {ECONNABORTED, "Virtual circuit was aborted due to timeout or other failure."},
        {ECONNRESET, "Virtual circuit was reset by the remote side."}, {EIO, "Socket error."}};
    // clang-format on
    for (auto const& [number, text] : rows) {
        ScriptedServer server({{"220"}, {"250"}, {"250"}});
        CTovSmtp smtp("127.0.0.1", server.Port());
        EXPECT_TRUE(smtp.Connect());
        recvFailure = number;
        EXPECT_TRUE(!smtp.SendMailMessage(&mail) && !smtp.Connected());
        recvFailure = 0;
        EXPECT_EQ(smtp.GetLastError(), std::string("0:") + text);
    }
    struct : CTovSmtp {
        using CTovSmtp::GetResponse;
    } smtp;
    EXPECT_TRUE(smtp.GetResponse(9) == 0 && smtp.GetLastError() == "0:Socket not initialized.");
}

}  // namespace
}  // namespace tov
