// The sample host sends a table through a server that others wrote.
#include "mail/mail_server.h"

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;
using tov::test::GetFile;
using tov::test::PutFile;

struct SurveyMail : testing::Test {
    // Output and exit code.
    std::string Run(std::string const& arguments) {
        std::string const command = "cd '" + folder.path().string() + "' && XDG_CONFIG_HOME='" +
                                    folder.path().string() + "' '" SURVEY_PROGRAM "' --lang en mail " +
                                    arguments + " 2>&1";
        std::FILE* const output = ::popen(command.c_str(), "r");
        std::string said;
        for (int c = 0; (c = std::getc(output)) != EOF;)
            said += static_cast<char>(c);
        int const status = ::pclose(output);
        return said + std::to_string(WEXITSTATUS(status));
    }

    tov::test::TemporaryFolder folder;
    std::string const people = " --from 'Ann <a@x.example>' --to b@x.example --to 'Ço <c@x.example>'";
};

TEST_F(SurveyMail, TheTableAndItsAttachmentsArrive) {
    tov::test::MailServer server;
    if (server.Port() == 0) GTEST_SKIP() << "python3-aiosmtpd is not installed";
    PutFile(folder.File("t.tab"), "A\t+4812+01130\tX/Hére\nnonsense\n");
    PutFile(folder.File("grüße.txt"), "hello");
    std::string const where = "--server 127.0.0.1 --port " + std::to_string(server.Port());
    EXPECT_EQ(Run(where + people + " --subject 'Zähler 1' --attach grüße.txt --attach t.tab t.tab"),
              "survey: t.tab: lines skipped: 1\nSent to 127.0.0.1.\n1");
    auto const mail = server.NextMail();
    EXPECT_THAT(mail["defects"], testing::IsEmpty());
    EXPECT_THAT(mail["to"], testing::ElementsAre("b@x.example", "c@x.example"));
    EXPECT_EQ(mail["fields"]["subject"], "5ac3a4686c65722031");
    ASSERT_EQ(mail["parts"].size(), 3u);
    EXPECT_THAT(GetFile(mail["parts"][0]["path"]), testing::ContainsRegex("X/Hére +.*48.*11.*\r\n"));
    EXPECT_EQ(GetFile(mail["parts"][1]["path"]), "hello");
    EXPECT_EQ(mail["parts"][1]["name"], "6772c3bcc39f652e747874");

    std::string const refused = Run(where + people + " --subject x --attach gone t.tab");
    EXPECT_THAT(refused, testing::EndsWith("gone: cannot be read\n3"));
    EXPECT_THAT(Run(where + " --from 'a@x y' --to b@x"), HasSubstr("--from"));
    EXPECT_THAT(Run(where + people + " none.tab"), testing::EndsWith("3"));
    EXPECT_THAT(Run(where + " --from a@x"), testing::EndsWith("2"));
    EXPECT_THAT(Run(where + " --from ä@x --to b@x.example t.tab"), HasSubstr("127.0.0.1: 5"));
}

TEST_F(SurveyMail, AServerThatIsNotThereIsTold) {
    EXPECT_EQ(Run("--server 127.0.0.7 --port 9" + people),
              "survey: 127.0.0.7: 0:Unable to connect to server.\n3");
}

}  // namespace
