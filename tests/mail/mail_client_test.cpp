#include <tov310/application.h>
#include <tov310/mapi.h>
#include <tov310/resources.h>
#include <tov310/system_error.h>

#include "support/child.h"
#include "support/files.h"
#include "support/limits.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <sys/wait.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <set>

namespace tov {
namespace {

namespace fs = std::filesystem;
using test::GetFile;
using test::PutFile;
using Addresses = std::vector<TovMailHelper::MAIL_ADDRESS>;

// A program of the name that the desktop's has, which writes down how it was called, and things of the same
// name that are none.
struct Client : testing::Test {
    Client() {
        PutFile(folder.File("a b"), "");
        fs::create_directories(folder.path() / "first/xdg-email");
        fs::create_directories(folder.path() / "here/relative");
        fs::current_path(folder.path() / "here");
        for (char const* const wrong : {"here/xdg-email", "here/relative/xdg-email"})
            Program("exit 4", wrong);
        ::setenv("PATH",
                 ("relative::" + folder.File("first:") + folder.path().string() + ":/usr/bin:/bin").c_str(),
                 1);
        Program("exit 0");
    }
    ~Client() override {
        ::setenv("PATH", before.c_str(), 1);
        fs::current_path("/");
    }

    void Program(std::string const& end, char const* name = "xdg-email") {
        std::string const path = folder.File(name);
        PutFile(path, "#!/bin/sh\ncd '" + folder.path().string() + "'\nprintf '%s\\n' \"$@\" > called\n" +
                          "ls /proc/$$/fd > open\ncut -d' ' -f6 /proc/$$/stat > session\n" +
                          "grep '^Sig[BI]' /proc/self/status > signals\nread line\n" + end + "\n");
        fs::permissions(path, fs::perms::owner_all);
    }

    // The code, or 0 with the arguments in `called`.
    unsigned long Send(char const* subject = "S", std::vector<CString> attachments = {}) {
        CString message;
        unsigned long error = 77;
        int const result = TovSendMailByClient(&to, nullptr, &bcc, subject, "one\ntwo\r\n--help",
                                               &attachments, &error, &message);
        EXPECT_TRUE(result == (error == 0) && message == TovSystemErrorText(error)) << error << message;
        // Nothing of what was started is left to this process.
        EXPECT_TRUE(::waitpid(-1, nullptr, WNOHANG) == -1 && errno == ECHILD);
        called = Said("called");
        return error;
    }

    std::string Said(char const* about) { return GetFile(folder.path() / about); }

    test::TemporaryFolder folder;
    std::string const before = std::getenv("PATH");
    Addresses to{{"Joe", "j+1@x"}, {"", "--help"}}, bcc{{"", "ä&?%@y\r\nX"}};
    std::string called;
};

TEST_F(Client, GetsTheWholeMailInOneArgument) {
    ASSERT_EQ(Send("--version", {folder.File("a b"), folder.path().string() + "\\a b"}), 0u);
    std::string const attached = "--attach\n" + folder.File("a b") + "\n";
    EXPECT_EQ(
        called,
        "--utf8\nmailto:j%2B1@x,--help?bcc=%C3%A4%26%3F%25@y%20%20X&subject=--version&body=one%0D%0Atwo%0D"
        "%0A--help\n" +
            attached + attached);
    EXPECT_EQ(TovSendMailByClient(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), 1);
    EXPECT_EQ(Said("called"), "--utf8\nmailto:\n");
}

TEST_F(Client, TakesNothingOverFromThisProcess) {
    for (int const first : {0, 3}) {  // of the descriptors that a host has closed; its own one is 50
        pid_t const child = test::StartChild([&] {
            sigset_t blocked;
            ::sigemptyset(&blocked);
            ::sigaddset(&blocked, SIGUSR2);
            ::sigprocmask(SIG_BLOCK, &blocked, nullptr);
            ::signal(SIGUSR1, SIG_IGN);
            ::dup2(1, 50);
            for (int standard = first; standard < 3; ++standard)
                ::close(standard);
            return TovSendMailByClient(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr) == 1;
        });
        EXPECT_EQ(test::EndChild(child), 0);
        EXPECT_THAT(Said("open"), testing::AllOf(testing::StartsWith("0\n1\n1"), testing::EndsWith("\n2\n")))
            << "the shell's own begin at 10";
        EXPECT_EQ(Said("signals"), "SigBlk:\t0000000000000000\nSigIgn:\t0000000000000000\n");
        EXPECT_NE(std::stoi(Said("session")), ::getsid(0));
    }
}

TEST_F(Client, FailuresAreTold) {
    // clang-format off
    std::pair<char const*, unsigned long> const ends[] = {
        {"exit 1", 87}, {"exit 2", 2}, {"exit 3", 126}, {"exit 4", 1117}, {"exit 5", 5}, {"kill -9 $$", 1117},
        {"exec sleep 3", 0}};
    // clang-format on
    for (auto const& [end, code] : ends) {
        Program(end);
        EXPECT_EQ(Send(), code) << end;
    }
    Program("exit 0");
    fs::permissions(folder.path() / "a b", fs::perms::none);
    test::WithoutRights({folder.path()}, [&] { EXPECT_EQ(Send("S", {folder.File("a b")}), 5u); });
    EXPECT_EQ(Send("S", {folder.File("none")}), TOV_ERROR_NOT_FOUND);
    EXPECT_EQ(Send("S", {folder.File("no/ne")}), TOV_ERROR_PATH_NOT_FOUND);
    EXPECT_EQ(Send("S", {folder.path().string()}), TOV_ERROR_ACCESS_DENIED);
    EXPECT_EQ(Send(std::string(4 << 20, 'x').c_str()), TOV_ERROR_SYSTEM_BASE + E2BIG);
    PutFile(folder.File("xdg-email"), "\x7f is nothing that can be run");
    EXPECT_EQ(Send(), TOV_ERROR_SYSTEM_BASE + ENOEXEC);
    to.push_back({"nobody", ""});
    EXPECT_EQ(Send(), TOV_ERROR_INVALID_PARAMETER);
    to.clear();
    ::setenv("PATH", "/nowhere", 1);
    EXPECT_EQ(Send(), TOV_ERROR_MODULE_NOT_LOADED);
}

std::vector<unsigned int> notices;
std::string sent;

// A mail system, which writes down what it gets.
struct Mapi : CTovMapiSendMail {
    explicit Mapi(bool isWhole) {
        m_module = this;
        m_sendMail = [](LHANDLE session, std::uintptr_t window, MapiMessage* mail, unsigned long flags,
                        unsigned long) {
            sent = std::to_string(session) + ' ' + std::to_string(window) + ' ' + std::to_string(flags) +
                   ' ' + mail->lpszSubject + '|' + mail->lpszNoteText;
            for (unsigned long i = 0; i < mail->nRecipCount; ++i)
                sent.append("|")
                    .append(std::to_string(mail->lpRecips[i].ulRecipClass))
                    .append(mail->lpRecips[i].lpszName)
                    .append("<")
                    .append(mail->lpRecips[i].lpszAddress);
            for (unsigned long i = 0; i < mail->nFileCount; ++i)
                sent.append("|")
                    .append(std::to_string(static_cast<long>(mail->lpFiles[i].nPosition)))
                    .append(mail->lpFiles[i].lpszPathName)
                    .append(">")
                    .append(mail->lpFiles[i].lpszFileName);
            return MAPI_E_AMBIG_RECIP;
        };
        if (!isWhole) return;
        m_logon = [](std::uintptr_t, char*, char*, unsigned long, unsigned long, LHANDLE*) { return 3UL; };
        m_logoff = [](LHANDLE, std::uintptr_t, unsigned long, unsigned long) { return 5UL; };
    }
};

TEST(MapiSendMail, WithoutAMailSystemTheUserIsToldOnce) {
    notices.clear();
    sent.clear();
    EXPECT_EQ(CTovMapiSendMail::SetNoticeHandler([](unsigned int id) { notices.push_back(id); }), nullptr);
    CTovMapiSendMail none;
    EXPECT_TRUE(none.InitializeMapiLib() == 0 && none.InitializeMapiLib() == 0);
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(none.Send(nullptr, nullptr, nullptr, "S", "T", nullptr, MAPI_DIALOG), MAPI_E_FAILURE);
    EXPECT_EQ(none.SendMailEx({}, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 0), MAPI_E_FAILURE);
    EXPECT_TRUE(none.Logon(0, nullptr, nullptr, 0, 0, nullptr) == 2 && none.Logoff(0, 0, 0, 0) == 2);
    Mapi half(false);
    EXPECT_TRUE(half.Send(nullptr, nullptr, nullptr, "S", "T", nullptr, 0) == MAPI_E_FAILURE && sent.empty());
    EXPECT_EQ(half.InitializeMapiLib(), 0);
    EXPECT_THAT(notices, testing::ElementsAre(0xF190, 0xF190, 0xF190, 0xF191));
    CTovMapiSendMail::SetNoticeHandler(nullptr);
}

TEST(MapiSendMail, RecordsHoldTheMail) {
    Mapi mapi(true);
    CWinApp app;
    CTovMessageWindow window;
    window.Create();
    app.SetMainWnd(window.GetSafeHwnd());
    Addresses const to{{"A", "a@x"}}, cc{{"", "c@x"}, {"D", "d@x"}}, bcc{{"B", "b@x"}};
    std::vector<CString> const files{"/x/y.z", "w"};
    std::string const mail = "S||1A<a@x|2<c@x|2D<d@x|3B<b@x|-1/x/y.z>y.z|-1w>w";
    EXPECT_EQ(mapi.Send(&to, &cc, &bcc, "S", nullptr, &files, MAPI_NEW_SESSION), MAPI_E_AMBIG_RECIP);
    EXPECT_EQ(sent, "0 0 2 " + mail);
    mapi.Send(&to, &cc, &bcc, "S", nullptr, &files, MAPI_DIALOG);
    EXPECT_EQ(sent, "0 " + std::to_string(window.GetSafeHwnd().id) + " 8 " + mail);
    EXPECT_TRUE(mapi.Logon(0, nullptr, nullptr, 0, 0, nullptr) == 3 && mapi.Logoff(5, 0, 0, 0) == 5);
}

TEST(MapiSendMail, EveryCodeHasItsText) {
    TovSetTovResourceHandle(TovLoadResourceModule(TOV_TEST_SOURCE_DIR "/res/en"));
    using Mail = CTovMapiSendMail;
    // The codes that have a text of their own.
    std::pair<void (*)(unsigned long, CString&), std::set<unsigned long>> const rows[] = {
        {&Mail::GetMAPISendMailErrorString, {1, 3, 5, 9, 10, 11, 12, 14, 15, 18, 19, 21, 25}},
        {&Mail::GetMAPILogonErrorString, {1, 3, 5, 8}},
        {&Mail::GetMAPILogoffErrorString, {1, 3, 5, 8}}};
    for (auto const& [get, codes] : rows) {
        std::set<CString> texts;
        for (unsigned long code = 0; code < 30; ++code) {
            CString text;
            get(code, text);
            bool const isOther = text == "One or more unspecified errors occurred.";
            EXPECT_NE(isOther, codes.contains(code)) << code << text;
            if (!isOther) texts.insert(text);
        }
        EXPECT_EQ(texts.size(), codes.size());
    }
    CString text;
    Mail::GetMAPISendMailErrorString(MAPI_E_ATTACHMENT_OPEN_FAILURE, text);
    EXPECT_EQ(text, "The specified attachment could not be opened.");
    Mail::GetMAPILogonErrorString(MAPI_E_TOO_MANY_SESSIONS, text);
    EXPECT_EQ(text, "The user had too many sessions open simultaneously.");
    TovSetTovResourceHandle(nullptr);
}

}  // namespace
}  // namespace tov
