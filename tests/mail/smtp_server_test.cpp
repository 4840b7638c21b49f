// Mails through a server that others wrote, read by a parser that others wrote.
#include <tov310/mime.h>
#include <tov310/smtp.h>

#include "mail/mail_server.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <ctime>
#include <random>

namespace tov {
namespace {

using test::GetFile;
using test::PutFile;
using Mail = CTovMailMessageMimeContainer;
using Text = CTovMailMessageMimePartText;
using File = CTovMailMessageMimePartBinary;
using testing::ElementsAre;

std::string FromHex(std::string const& hex) {
    std::string bytes;
    for (std::size_t i = 0; i < hex.size(); i += 2)
        bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
    return bytes;
}

struct RealServer : testing::Test {
    void SetUp() override {
        if (server.Port() == 0) GTEST_SKIP() << "python3-aiosmtpd is not installed";
        ASSERT_TRUE(smtp.Server("127.0.0.1") && smtp.Port(server.Port()) && smtp.Connect())
            << smtp.GetLastError();
    }

    nlohmann::json Sent(CTovMailMessage& mail) {
        mail.From("Anja <a@x.example>");
        bool const isSent = smtp.SendMailMessage(&mail) != 0;
        EXPECT_TRUE(isSent) << smtp.GetLastError();
        return isSent ? server.NextMail() : nlohmann::json();
    }

    test::TemporaryFolder folder;
    test::MailServer server;
    CTovSmtp smtp;
};

TEST_F(RealServer, GetsMailsOfTheUsualForm) {
    CTovMailMessage plain;
    plain.AddMultipleRecipients("Ben <b@x.example>,c@x.example", CTovMailMessage::eRecipientTo);
    plain.AddRecipient("d@x.example", CTovMailMessage::eRecipientBcc);
    plain.Body(".\r\n.\r\nRSET\r\n.\r\n.two\r\nend");
    auto mail = Sent(plain);
    EXPECT_EQ(mail["from"], "a@x.example");
    EXPECT_THAT(mail["to"], ElementsAre("b@x.example", "c@x.example", "d@x.example"));
    // The line that begins with a dot is not doubled, so the server takes the dot for its own.
    EXPECT_THAT(server.Raw(0), testing::EndsWith("\r\n\r\n.\r\n.\r\nRSET\r\n.\r\ntwo\r\nend\r\n\r\n"));

    Mail hidden;
    hidden.AddRecipient("d@x.example", CTovMailMessage::eRecipientBcc);
    hidden.Body("not used");
    hidden.AddMimePart(new Text("only part"));
    mail = Sent(hidden);
    EXPECT_THAT(mail["to"], ElementsAre("d@x.example"));
    EXPECT_FALSE(mail["fields"].contains("to"));
    EXPECT_EQ(GetFile(mail["parts"][0]["path"]), "only part\r\n\r\n");

    std::string bytes(20 << 20, '\0');
    std::ranges::generate(bytes,
                          [random = std::mt19937(310)]() mutable { return static_cast<char>(random()); });
    PutFile(folder.File("large.bin"), bytes);
    for (bool const strict : {false, true}) {
        Mail large;
        large.AddRecipient("b@x.example", CTovMailMessage::eRecipientTo);
        large.StrictEncoding(strict);
        large.AddMimePart(new Text("see there"));
        large.AddMimePart(new File(folder.File("large.bin")));
        mail = Sent(large);
        EXPECT_EQ(mail["parts"].size(), 2u);
        EXPECT_EQ(GetFile(mail["parts"][0]["path"]), "see there");
        // Readers take the tail of the usual form for one more group.
        EXPECT_TRUE(GetFile(mail["parts"][1]["path"]).substr(0, bytes.size()) == bytes);
    }
    EXPECT_TRUE(smtp.Disconnect());
}

// Every name that can be: pieces that mean something in a mail, and bytes at random. Python calls control
// characters in names a defect however they are written, so they come only into contents.
std::string HostileText(std::mt19937& random, bool isName) {
    // clang-format off
    static std::string const pieces[] = {
        ".", "\r", "\n", "\r\n", "\r\n.\r\n", "\r\n..\r\nDATA\r\n", "--X", "--X--", "--X_1_", "=", "=?utf-8?B?QQ==?=",
        "\"", "\\", "<>", ",;:", "  ", "%41", "'", "é", "点", "\U0001F4D0", "From ", "word", " ", std::string(300, 'x'),
        std::string(1200, 'y'), std::string("\0", 1), "\t", "\xff", "\x80\xc3"};
    // clang-format on
    std::string text;
    for (auto n = random() % 12; n != 0; --n) {
        std::string piece = pieces[random() % std::size(pieces)];
        if (random() % 4 == 0 && !isName) piece.assign(random() % 40, static_cast<char>(random()));
        if (isName && piece == "\t") continue;
        text += piece;
    }
    return text;
}

std::string Blanked(std::string text) {
    std::ranges::replace_if(
        text, [](char c) { return c == '\r' || c == '\n' || c == '\0'; }, ' ');
    return text;
}

std::string WithLineFeeds(std::string text) {
    for (std::size_t at = 0; (at = text.find("\r\n", at)) != text.npos;)
        text.erase(at, 1);
    std::ranges::replace(text, '\r', '\n');
    return text;
}

// What a name is taken for by somebody who is told another charset.
std::string AsRead(std::string const& name, nlohmann::json const& hex) {
    std::string const read = FromHex(hex);
    if (read == name) return read;
    std::string latin;
    for (std::size_t i = 0; i < read.size(); ++i) {
        auto const byte = static_cast<unsigned char>(read[i]);
        latin += byte < 0x80 ? read[i] : static_cast<char>((byte << 6 & 0xC0) | (read[++i] & 0x3F));
    }
    return latin;
}

TEST_F(RealServer, GivesBackStrictMailsToTheByte) {
    std::mt19937 random(311);
    for (int i = 0; i < 80; ++i) {
        Mail mail;
        mail.StrictEncoding(1);
        mail.Boundary(i % 3 == 0 ? "X" : i % 3 == 1 ? "\"bad\r\n boundary" : "");
        std::string const subject = HostileText(random, true), to = HostileText(random, true);
        mail.Subject(subject.c_str());
        mail.AddRecipient("b@x.example", CTovMailMessage::eRecipientTo);
        mail.AddRecipient("\xc3\x84rger & Co. <c@x.example>", CTovMailMessage::eRecipientCc);
        mail.ReplyTo({to, "r@x.example"});
        mail.PreMime(i % 4 == 0 ? "--X\nfoo" : "");
        std::string const body = HostileText(random, false);
        mail.Body(body.c_str());
        std::vector<std::string> contents, names;
        for (auto n = random() % 4; n != 0; --n) {
            contents.push_back(HostileText(random, false));
            names.emplace_back();
            if (random() % 2 != 0) {
                auto* const text = new Text(contents.back());
                char const* const encodings[] = {"quoted-printable", "base64", "7bit", "nonsense"};
                text->ContentTransferEncoding(encodings[random() % 4]);
                mail.AddMimePart(text);
            } else {
                std::string name = HostileText(random, true).substr(0, 200) + "n";
                std::erase_if(name, [](char c) { return c == '\\' || c == '\0'; });
                names.back() = name;
                PutFile(folder.path() / name, contents.back());
                mail.AddMimePart(new File(folder.File(name)));
            }
        }
        auto const got = Sent(mail);
        ASSERT_THAT(got["defects"], testing::IsEmpty()) << got << server.Raw(i);
        ASSERT_LE(std::abs(got["date"].get<double>() - static_cast<double>(std::time(nullptr))), 60)
            << got["date"];
        auto const& fields = got["fields"];
        ASSERT_EQ(FromHex(fields["subject"]), Blanked(subject.c_str())) << server.Raw(i);
        ASSERT_EQ(FromHex(got["names"][2]), "Ärger & Co.");
        // The parser reads names in quotes, but breaks those in encoded words.
        std::string reply = FromHex(fields["reply-to"]);
        reply = reply.starts_with('"') ? FromHex(got["names"][3])
                                       : reply.substr(0, reply.rfind(to.empty() ? "<" : " <"));
        ASSERT_EQ(reply, Blanked(to)) << server.Raw(i);
        if (contents.empty()) {
            std::string lines = WithLineFeeds(body.c_str());
            std::string const text = WithLineFeeds(GetFile(got["parts"][0]["path"]));
            if (text != lines) lines += '\n';
            ASSERT_EQ(text, lines) << server.Raw(i);
            continue;
        }
        ASSERT_EQ(got["parts"].size(), contents.size()) << server.Raw(i);
        for (std::size_t k = 0; k < contents.size(); ++k) {
            auto const& part = got["parts"][k];
            std::string content = GetFile(part["path"]);
            // Text that is not encoded cannot do without its last line end.
            if (contents.size() == 1 && server.Raw(i).find(": 7bit") != std::string::npos &&
                !contents[k].ends_with("\r\n") && content.ends_with("\r\n"))
                content.resize(content.size() - 2);
            ASSERT_EQ(content, contents[k]) << server.Raw(i);
            if (names[k].empty()) continue;
            ASSERT_EQ(AsRead(Blanked(names[k]), part["name"]), Blanked(names[k])) << server.Raw(i);
        }
    }
}

}  // namespace
}  // namespace tov
