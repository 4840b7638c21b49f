#include <tov310/application.h>
#include <tov310/mapi.h>
#include <tov310/resources.h>
#include <tov310/system_error.h>

#include "support/files.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <sys/wait.h>

#include <cstdlib>
#include <map>

namespace tov {
namespace {

using test::GetFile;
using test::PutFile;
using Addresses = std::vector<TovMailHelper::MAIL_ADDRESS>;

// A program of the name that the desktop's has, which writes down how it was called.
struct Client : testing::Test {
    Client() {
        PutFile(folder.File("a b"), "");
        ::setenv("PATH", ("relative::" + folder.path().string() + ":/usr/bin:/bin").c_str(), 1);
        Program("exit 0");
    }
    ~Client() override { ::setenv("PATH", before.c_str(), 1); }

    void Program(std::string const& end) {
        std::string const path = folder.File("xdg-email");
        PutFile(path, "#!/bin/sh\nprintf '%s\\n' \"$@\" > '" + folder.File("called") + "'\nread line\n" +
                          end + "\n");
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
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
        called = GetFile(folder.path() / "called");
        return error;
    }

    test::TemporaryFolder folder;
    std::string const before = std::getenv("PATH");
    Addresses to{{"Joe", "j+1@x"}, {"", "--help"}}, bcc{{"", "ä&?%@y\r\nX"}};
    std::string called;
};

TEST_F(Client, GetsTheWholeMailInOneArgument) {
    ASSERT_EQ(Send("--version", {folder.File("a b"), folder.path().string() + "\\a b"}), 0u);
    std::string const attached = "--attach\n" + folder.File("a b") + "\n";
    EXPECT_EQ(called,
              "mailto:j%2B1@x,--help?bcc=%C3%A4%26%3F%25@y%20%20X&subject=--version&body=one%0D%0Atwo%0D%0A--"
              "help\n" +
                  attached + attached);
    EXPECT_EQ(TovSendMailByClient(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), 1);
    EXPECT_EQ(GetFile(folder.path() / "called"), "mailto:\n");
}

TEST_F(Client, FailuresAreTold) {
    // clang-format off
    std::pair<char const*, unsigned long> const ends[] = {
        {"exit 1", 87}, {"exit 2", 2}, {"exit 3", 126}, {"exit 4", 1117}, {"kill -9 $$", 1117}, {"exec sleep 3", 0}};
    // clang-format on
    for (auto const& [end, code] : ends) {
        Program(end);
        EXPECT_EQ(Send(), code) << end;
    }
    Program("exit 0");
    EXPECT_EQ(Send("S", {folder.File("none")}), TOV_ERROR_NOT_FOUND);
    EXPECT_EQ(Send("S", {folder.File("no/ne")}), TOV_ERROR_PATH_NOT_FOUND);
    EXPECT_EQ(Send("S", {folder.path().string()}), TOV_ERROR_ACCESS_DENIED);
    EXPECT_GT(Send(std::string(4 << 20, 'x').c_str()), TOV_ERROR_SYSTEM_BASE) << "no argument is that long";
    PutFile(folder.File("xdg-email"),
            "\x7f"
            "ELF nothing that can be run");
    EXPECT_GT(Send(), TOV_ERROR_SYSTEM_BASE);
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
        m_logon = [](std::uintptr_t, char*, char*, unsigned long, unsigned long, LHANDLE* session) {
            return *session = 5, 3UL;
        };
        m_logoff = [](LHANDLE session, std::uintptr_t, unsigned long, unsigned long) {
            return static_cast<unsigned long>(session);
        };
    }
};

TEST(MapiSendMail, WithoutAMailSystemTheUserIsToldOnce) {
    auto const before = CTovMapiSendMail::SetNoticeHandler([](unsigned int id) { notices.push_back(id); });
    EXPECT_EQ(before, nullptr);
    CTovMapiSendMail none;
    EXPECT_TRUE(none.InitializeMapiLib() == 0 && none.InitializeMapiLib() == 0);
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(none.Send(nullptr, nullptr, nullptr, "S", "T", nullptr, MAPI_DIALOG), MAPI_E_FAILURE);
    EXPECT_EQ(none.SendMailEx({}, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 0), MAPI_E_FAILURE);
    EXPECT_EQ(none.Logon(0, nullptr, nullptr, 0, 0, nullptr) + none.Logoff(0, 0, 0, 0), 2 * MAPI_E_FAILURE);
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
    CTovMapiSendMail::LHANDLE session = 0;
    EXPECT_TRUE(mapi.Logon(0, nullptr, nullptr, 0, 0, &session) == 3 && mapi.Logoff(session, 0, 0, 0) == 5);
}

TEST(MapiSendMail, EveryCodeHasItsText) {
    TovSetTovResourceHandle(TovLoadResourceModule(TOV_TEST_SOURCE_DIR "/res/en"));
    // The beginnings of the texts for sending; then for the codes that only logging on and off know.
    // clang-format off
    std::map<unsigned long, char const*> const sending{
        {1, "The user canceled"}, {3, "There was no default"}, {5, "There was insuff"},
        {9, "There were too many file"}, {10, "There were too many rec"}, {11, "The specified attachment was"},
        {12, "The specified attachment could"}, {14, "A recipient did"}, {15, "The type of"}, {18, "The text in"},
        {19, "An invalid session"}, {21, "A recipient matched"}, {25, "One or more recipients"}};
    // clang-format on
    for (unsigned long code = 0; code < 30; ++code) {
        bool const isOfLogon = code == 1 || code == 3 || code == 5;
        char const* const other = "One or more unspec";
        char const* const send = sending.contains(code) ? sending.at(code) : other;
        char const* const logon = code == 8 ? "The user had too" : isOfLogon ? send : other;
        CString text;
        CTovMapiSendMail::GetMAPISendMailErrorString(code, text);
        EXPECT_THAT(text, testing::StartsWith(send));
        CTovMapiSendMail::GetMAPILogonErrorString(code, text);
        EXPECT_THAT(text, testing::StartsWith(logon));
        CTovMapiSendMail::GetMAPILogoffErrorString(code, text);
        EXPECT_THAT(text, testing::StartsWith(code == 19 ? send : logon));
    }
    TovSetTovResourceHandle(nullptr);
}

}  // namespace
}  // namespace tov
