// The client against a server that says and does whatever a row of a table tells it.
#include <tov310/mime.h>
#include <tov310/resources.h>
#include <tov310/smtp.h>
#include <tov310/wait_cursor.h>

#include <arpa/inet.h>
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstring>
#include <functional>
#include <optional>
#include <random>
#include <thread>

namespace {
int recvFailure = 0;  // of every receive of this process; the server reads otherwise
}

extern "C" [[gnu::visibility("default")]] ssize_t recvmsg(int, msghdr*, int) {
    return errno = recvFailure, -1;
}
extern "C" [[gnu::visibility("default")]] ssize_t recv(int socket, void* buffer, size_t size, int) {
    return recvFailure != 0 ? (errno = recvFailure, -1) : ::read(socket, buffer, size);
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

enum class End { kStay, kClose, kReset };

struct Reply {
    std::string text;
    End end = End::kStay;
    std::chrono::milliseconds pause{0};  // before it
};

// Says one reply after the other: the first at once, each other one behind a command, or behind the whole
// text after one that begins with 354. What a reply holds behind a "|" is said 50 ms after the client's
// answer.
class ScriptedServer {
 public:
    explicit ScriptedServer(std::vector<Reply> script, std::size_t mostRead = std::string::npos)
        : m_script(std::move(script)), m_mostRead(mostRead) {
        m_listener = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* const any = reinterpret_cast<sockaddr*>(&address);
        if (::bind(m_listener, any, size) != 0 || ::listen(m_listener, 1) != 0) std::abort();
        ::getsockname(m_listener, any, &size);
        m_port = ntohs(address.sin_port);
        sigset_t all, before;
        ::sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &before);  // signals are for the client
        m_thread = std::thread([this] { Serve(); });
        ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    }
    ~ScriptedServer() { Got(); }
    unsigned Port() const { return m_port; }

    // What the client has sent; waits for the end.
    std::string const& Got() {
        if (m_thread.joinable()) {
            ::shutdown(m_listener, SHUT_RDWR);
            m_thread.join();
            ::close(m_listener);
        }
        return m_got;
    }

 private:
    void Serve() {
        int const peer = ::accept(m_listener, nullptr, nullptr);
        if (peer < 0) return;
        End end = End::kStay;
        bool isText = false;
        for (std::size_t i = 0; i < m_script.size() && end == End::kStay; ++i) {
            Reply const& reply = m_script[i];
            if (i != 0 && !Read(peer, isText ? "\r\n.\r\n" : "\r\n")) break;
            std::this_thread::sleep_for(reply.pause);
            std::size_t const cut = std::min(reply.text.find('|'), reply.text.size());
            Say(peer, reply.text.substr(0, cut));
            if (cut != reply.text.size()) {
                // Not before the client has taken the first piece, however busy the machine is.
                pollfd answer{peer, POLLIN, 0};
                ::poll(&answer, 1, 5000);
                std::this_thread::sleep_for(50ms);
                Say(peer, reply.text.substr(cut + 1));
            }
            isText = reply.text.starts_with("354");
            end = reply.end;
        }
        if (end == End::kStay) Read(peer, "");
        linger const hard{1, 0};
        if (end == End::kReset) ::setsockopt(peer, SOL_SOCKET, SO_LINGER, &hard, sizeof hard);
        ::close(peer);
    }

    static void Say(int peer, std::string const& text) {
        ::send(peer, text.data(), text.size(), MSG_NOSIGNAL);
    }

    // Reads up to the end of a command, or so many bytes of the text.
    bool Read(int peer, std::string const& end) {
        std::size_t const begin = m_got.size();
        for (char c = 0; ::read(peer, &c, 1) == 1;) {
            m_got += c;
            if (end.size() > 2 && m_got.size() - begin >= m_mostRead) return true;
            // In the text the line end before it may be that of the header.
            if (!end.empty() && m_got.size() - begin >= end.size() - 2 && m_got.ends_with(end)) return true;
        }
        return false;
    }

    std::vector<Reply> m_script;
    std::size_t m_mostRead;
    int m_listener;
    unsigned m_port = 0;
    std::string m_got;
    std::thread m_thread;
};

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

// The text of a wrong reply to each step: the greeting, HELO, MAIL, three times RCPT, DATA, the mail, QUIT.
constexpr char const* wrong = "SMTP server error.";
constexpr char const* stepTexts[] = {"Server didn't respond.",
                                     wrong,
                                     wrong,
                                     wrong,
                                     wrong,
                                     wrong,
                                     "SMTP server not ready for data.",
                                     wrong,
                                     "SMTP server didn't terminate session."};
constexpr char const* goodReplies[] = {"220 hi\r\n", "250 a\r\n", "250 b\r\n", "250 c\r\n", "250 d\r\n",
                                       "250 e\r\n",  "354 f\r\n", "250 g\r\n", "221 h\r\n"};
constexpr std::size_t steps = std::size(goodReplies);

// Every step with every kind of answer and of end, against what is told of each.
TEST_F(Smtp, EveryStepAnswersEveryReplyAndEveryLoss) {
    char host[256];
    ::gethostname(host, sizeof host);
    std::string const commands[] = {"HELO " + std::string(host) + "\r\n",
                                    "MAIL From: <a@x>\r\n",
                                    "RCPT TO: <b@x>\r\n",
                                    "RCPT TO: <c@x>\r\n",
                                    "RCPT TO: <d@x>\r\n",
                                    "DATA\r\n",
                                    "",
                                    "QUIT\r\n"};
    // clang-format off
    struct { std::string text; unsigned code; End end; } const answers[] = {
        {"", 0, End::kClose}, {"", 0, End::kReset}, {"2", 0, End::kClose}, {"25", 0, End::kReset},
        {"251 x\r\n", 251, End::kStay}, {"550 x\r\n", 550, End::kStay}, {"421 x\r\n", 421, End::kClose},
        {"abc\r\n", 0, End::kStay}, {"25", 0, End::kStay}, {"  7", 7, End::kStay}, {"2x0", 2, End::kReset},
        {"-20", 0, End::kStay}, {std::string(2000, '9') + "\r\n", 999, End::kStay}};
    // clang-format on
    for (std::size_t step = 0; step < steps; ++step) {
        for (auto const& answer : answers) {
            bool const isRecipient = step >= 3 && step <= 5;
            // A block is a reply, so that a long one is two, and what is left of it goes for the next step.
            bool const isLong = answer.text.size() > 1024;
            if (isLong && isRecipient) continue;
            std::vector<Reply> script;
            for (std::size_t i = 0; i < steps; ++i)
                script.push_back({goodReplies[i], End::kStay});
            script[step] = {answer.text, answer.end};
            ScriptedServer server(script);
            CTovSmtp smtp("127.0.0.1", server.Port());
            int const connected = smtp.Connect();
            int const sent = connected && smtp.SendMailMessage(&mail);
            int const stays = smtp.Connected();
            std::string const first = smtp.GetLastError();
            int const ended = smtp.Disconnect();
            std::string const last = smtp.GetLastError();
            std::string const why = std::to_string(step) + ' ' + answer.text.substr(0, 9) + '/' +
                                    std::to_string(static_cast<int>(answer.end)) + ' ' + first + ' ' + last;

            bool const isLost = answer.end != End::kStay;
            bool const isAccepted = isRecipient && !isLost;
            EXPECT_TRUE(connected == (step > 1) && sent == (step == 8 || isAccepted) && !smtp.Connected())
                << why;
            if (!isLost) {
                EXPECT_EQ(stays, connected) << why;
                std::string const error = std::to_string(answer.code) + ':' + stepTexts[step];
                EXPECT_EQ(step == 8 ? last : first, isAccepted ? "OK" : error) << why;
            } else {
                // A reset may overtake what was said before it. Where that is no failure the next step fails.
                EXPECT_TRUE(!stays || (answer.text != "" && !isRecipient) || step == 8) << why;
                std::string const reset =
                    step == 0 ? stepTexts[0] : "Virtual circuit was reset by the remote side.";
                EXPECT_THAT(step == 8 ? last : first,
                            testing::AnyOf(std::to_string(answer.code) + ':' + stepTexts[step], "0:" + reset,
                                           isRecipient ? "0:SMTP server not ready for data." : "",
                                           isRecipient ? "0:SMTP server error." : ""))
                    << why;
            }
            EXPECT_EQ(ended, !stays || isAccepted || (step == 7 && !isLost && !isLong)) << why;
            std::string expected;
            for (std::size_t k = 0; k < std::min(step, std::size_t{6}); ++k)
                expected += commands[k];
            EXPECT_THAT(server.Got(), testing::StartsWith(expected)) << why;
        }
    }
}

TEST_F(Smtp, TheWholeDialogueIsAsItHasAlwaysBeen) {
    std::vector<Reply> script;
    for (std::size_t i = 0; i < steps; ++i)
        script.push_back({goodReplies[i]});
    script[4].text = "251 elsewhere\r\n";
    script[5].text = "550 nobody\r\n";
    struct : CTovSmtp {
        using CTovSmtp::CTovSmtp;
        void PrepareHeader(CString& header) override {
            wasWaiting = CTovWaitCursor::Active();
            header = "H: " + std::to_string(header.find("Date: ")) + "\r\n.\r\n";
        }
        int wasWaiting = 0;
    } smtp;
    ScriptedServer server(script);
    EXPECT_TRUE(smtp.Server("127.0.0.1") && smtp.Port(server.Port()));
    EXPECT_TRUE(smtp.Connect() && smtp.Connect() && smtp.Connected());
    EXPECT_TRUE(!smtp.Port(587) && smtp.Port() == server.Port() && !smtp.Server("x") &&
                smtp.Server() == "127.0.0.1");
    mail.From({"A", "a@x\r\nRSET"});
    EXPECT_TRUE(smtp.SendMailMessage(&mail) && smtp.wasWaiting && !CTovWaitCursor::Active())
        << smtp.GetLastError();
    EXPECT_EQ(smtp.SendMailMessage(nullptr), 0);
    EXPECT_TRUE(smtp.Disconnect() && smtp.GetLastError() == "OK" && !smtp.Connected());
    std::string const got = server.Got();
    EXPECT_EQ(got.substr(got.find("MAIL")),
              "MAIL From: <a@x  RSET>\r\nRCPT TO: <b@x>\r\nRCPT TO: <c@x>\r\nRCPT TO: <d@x>\r\nDATA\r\nH: "
              "0\r\n..\r\n\r\ntext\r\n\r\n.\r\nQUIT\r\n");
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
        {{{"554 busy\r\n", End::kClose}}, "554:Server didn't respond.", 0},
    };
    for (auto const& row : rows) {
        ScriptedServer server(row.script);
        CTovSmtp smtp("127.0.0.1", server.Port());
        EXPECT_EQ(smtp.Connect(), row.connected);
        EXPECT_EQ(smtp.GetLastError(), row.error);
        EXPECT_EQ(smtp.Connected(), row.connected);
    }
}

// Losses in the middle of the text, in front of a client that has much more to send.
TEST_F(Smtp, ALossInsideTheTextIsAnErrorAndNoSignal) {
    std::mt19937 random(310);
    std::string const body(16 << 20, 'x');  // more than the system keeps on its way
    mail.Body(body.c_str());
    for (int i = 0; i < 24; ++i) {
        std::string const words = i % 3 == 0 ? "552 too much\r\n" : i % 3 == 1 ? "250 early\r\n" : "";
        ScriptedServer server({{"220"},
                               {"250"},
                               {"250"},
                               {"250"},
                               {"250"},
                               {"250"},
                               {"354"},
                               {words, i % 2 == 0 ? End::kClose : End::kReset}},
                              random() % 50'000);
        CTovSmtp smtp("127.0.0.1", server.Port());
        EXPECT_EQ(smtp.Connect(), 1);
        EXPECT_EQ(smtp.SendMailMessage(&mail), 0);
        EXPECT_THAT(smtp.GetLastError(), testing::AnyOf("552:SMTP server error.",
                                                        "0:Virtual circuit was reset by the remote side."));
        EXPECT_EQ(smtp.Connected(), 0);
        EXPECT_TRUE(smtp.Disconnect());
        EXPECT_EQ(smtp.SendMailMessage(&mail), 0);
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
    for (std::size_t const silent : {0U, 3U, 7U}) {
        std::vector<Reply> script;
        for (std::size_t i = 0; i < steps; ++i)
            script.push_back({goodReplies[i], End::kStay, i == silent ? 700ms : 20ms});
        for (unsigned const timeOut : {0U, 250U}) {
            ScriptedServer server(script);
            CTovSmtp smtp("127.0.0.1", server.Port());
            smtp.TimeOut(timeOut);
            int const done = smtp.Connect() && smtp.SendMailMessage(&mail) && smtp.Disconnect();
            EXPECT_EQ(done, timeOut == 0) << silent << smtp.GetLastError();
            if (timeOut == 0) continue;
            EXPECT_EQ(smtp.Connected(), 0);
            // On a busy machine already the greeting may come too late.
            char const* const late = "0:Virtual circuit was aborted due to timeout or other failure.";
            EXPECT_THAT(smtp.GetLastError(),
                        testing::AnyOf("0:Server didn't respond.", silent == 0 ? "" : late));
        }
    }
    ::setitimer(ITIMER_REAL, &never, nullptr);
    ::sigaction(SIGALRM, &before, nullptr);
    // Who takes nothing at all.
    ScriptedServer server(
        {{"220"}, {"250"}, {"250"}, {"250"}, {"250"}, {"250"}, {"354"}, {"250", End::kClose, 1500ms}}, 1);
    CTovSmtp smtp("127.0.0.1", server.Port());
    smtp.TimeOut(500);
    mail.Body(std::string(16 << 20, 'x').c_str());
    EXPECT_EQ(smtp.Connect(), 1);
    EXPECT_EQ(smtp.SendMailMessage(&mail), 0);
    EXPECT_EQ(smtp.GetLastError(), "0:Virtual circuit was aborted due to timeout or other failure.");
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
    smtp.Server("127.0.0.7");
    smtp.Port(9);
    fails(smtp.Connect(), "0:Unable to connect to server.");
    smtp.Server(std::string("127.0.0.1\0.example", 18));
    fails(smtp.Connect(), "0:Unable to connect to server.");
    ScriptedServer server({{"220"}, {"250"}, {"221"}});
    smtp.Server("127.0.0.1");
    smtp.Port(server.Port());
    int const next = ::dup(0);
    ::close(next);
    rlimit before;
    ::getrlimit(RLIMIT_NOFILE, &before);
    for (unsigned few = 0; few < 4; ++few) {
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
        EXPECT_EQ(smtp.SendMailMessage(&mail), 0);
        recvFailure = 0;
        EXPECT_EQ(smtp.GetLastError(), std::string("0:") + text);
        EXPECT_EQ(smtp.Connected(), 0);
    }
    struct : CTovSmtp {
        using CTovSmtp::GetResponse;
    } smtp;
    EXPECT_TRUE(smtp.GetResponse(9) == 0 && smtp.GetLastError() == "0:Socket not initialized.");
}

}  // namespace
}  // namespace tov
