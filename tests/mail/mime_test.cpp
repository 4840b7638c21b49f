#include <tov310/base64.h>
#include <tov310/mime.h>

#include "support/files.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <atomic>
#include <ctime>
#include <thread>

namespace tov {
namespace {

using test::GetFile;
using test::PutFile;
using Mail = CTovMailMessageMimeContainer;
using Text = CTovMailMessageMimePartText;
using File = CTovMailMessageMimePartBinary;
constexpr auto to = CTovMailMessage::eRecipientTo;
constexpr auto cc = CTovMailMessage::eRecipientCc;
constexpr auto bcc = CTovMailMessage::eRecipientBcc;

// The whole mail, with the date taken out when it is that of now.
std::string Written(CTovMailMessage const& mail) {
    std::string text = mail.Header() + "\r\n" + mail.Body();
    std::size_t const begin = text.find(' ') + 1, length = text.find('\r') - begin;
    std::tm date{};
    bool const strict = mail.StrictEncoding() != 0;
    std::string const stamp = text.substr(begin, length);
    char const* const end = ::strptime(
        stamp.c_str(), strict ? "%a, %d %b %Y %H:%M:%S +0000" : "%a, %d %b %y %H:%M:%S GMT", &date);
    EXPECT_TRUE(end != nullptr && *end == '\0' && stamp.size() == (strict ? 31u : 27u)) << stamp;
    EXPECT_LE(std::time(nullptr) - ::timegm(&date), 60) << stamp;
    return text.replace(begin, length, "DATE");
}

TEST(MailMessage, AddressesAreCutAndChecked) {
    // clang-format off
    struct { char const *text, *name, *address; int added; } const rows[] = {
        {"Joe <joe.example>", "Joe", "joe.example", 1}, {"Joe <joe.example", "Joe", "joe.example", 1},
        {"\tJoe > joe<x", "Joe", " joe", 0}, {">joe", "", "joe", 1}, {"joe@x", "", "joe@x", 1},
        {" joe@x", "", " joe@x", 0}, {"Joe", "", "Joe", 1}, {"a@b <c@d>", "a@b", "c@d", 0},
        {"\"Joe\" <c@d>", "\"Joe\"", "c@d", 0}, {"Joe <\"c\"@d>", "Joe", "\"c\"@d", 0},
        {"Joe <>", "Joe", "", 0}, {"", "", "", 0}, {nullptr, "", "", 0}};
    // clang-format on
    for (auto const& row : rows) {
        auto const address = CTovMailMessage::MailAddressFromString(row.text);
        EXPECT_TRUE(address.name == row.name && address.address == row.address) << row.text;
        CTovMailMessage mail;
        EXPECT_EQ(mail.AddRecipient(row.text, cc), row.added) << row.text;
        EXPECT_EQ(mail.GetNumRecipientsCc(), static_cast<unsigned>(row.added));
    }
    struct Lenient : CTovMailMessage {
        int CheckMailAddress(MAIL_ADDRESS const& address) const override { return !address.address.empty(); }
    } lenient;
    CString address, name = "x";
    EXPECT_TRUE(lenient.AddRecipient("\"J@\" <a b>", bcc) && lenient.Recipient(address, name, 0, bcc));
    EXPECT_EQ(name + '|' + address, "J|a b") << "a name is mended where the check lets it through";
}

TEST(MailMessage, RecipientsAreListedByType) {
    CTovMailMessage mail;
    EXPECT_EQ(mail.AddMultipleRecipients("a@x, b@x,,Cy <c@x>, Di <d@x>", to), 1);
    EXPECT_EQ(mail.AddMultipleRecipients(nullptr, to), 1);
    mail.AddRecipient("e@x", bcc);
    EXPECT_EQ(mail.AddRecipient("e@x", static_cast<CTovMailMessage::eRecipientTypes>(3)), 0);
    EXPECT_EQ(mail.AddRecipient("e@x", static_cast<CTovMailMessage::eRecipientTypes>(-1)), 0);
    EXPECT_TRUE(mail.GetNumRecipients() == 4 && mail.GetNumRecipientsTo() == 3 &&
                mail.GetNumRecipientsBcc() == 1);
    EXPECT_TRUE(mail.DeleteRecipient(1, to) && !mail.DeleteRecipient(2, to) && !mail.DeleteRecipient(0, cc));
    CString address, name;
    EXPECT_TRUE(mail.Recipient(address, name, 1, to) && address == "d@x" && name == "Di");
    EXPECT_TRUE(!mail.Recipient(address, name, 2, to) && address.empty() && name.empty());
    EXPECT_EQ(mail.Header().find("e@x"), std::string::npos) << "nobody is told of Bcc";
}

TEST(Mime, MailsAreAsInTheGoldenFiles) {
    test::TemporaryFolder const folder;
    PutFile(folder.File("three é.bin"), "foo");
    for (std::string const prefix : {"", "strict_"}) {
        Mail mail;
        mail.StrictEncoding(prefix != "");
        auto const expect = [&](std::string const& name) {
            EXPECT_EQ(Written(mail), GetFile(TOV_TEST_SOURCE_DIR "/tests/mail/golden/" + prefix + name))
                << name;
        };
        mail.From({"Joe", "joe@x.example"});
        mail.ReplyTo("office@x.example");
        mail.AddMultipleRecipients("Ann <ann@x.example>,b@x.example", to);
        mail.AddMultipleRecipients("Eve <eve@x.example>,c@x.example,f@x.example", cc);
        mail.DeleteRecipient(2, cc);
        mail.Subject("Höhen\r\nBcc: all@x.example");
        mail.Body("Guten Tag.\r\n");
        expect("text.eml");
        mail.ReplyTo("");
        mail.DeleteRecipient(1, to);
        mail.DeleteRecipient(1, cc);
        mail.DeleteRecipient(0, cc);
        mail.Subject(nullptr);
        mail.MailerName("Survey");
        EXPECT_EQ(mail.AddMimePart(new Text("a=b é")), 1);
        if (prefix.empty()) expect("one_part.eml");
        mail.AddMimePart(new File(folder.File("three é.bin")));
        auto* const missing = new File("/gone/missing.bin");
        EXPECT_EQ(mail.AddMimePart(missing) + mail.AddMimePart(missing) + mail.AddMimePart(nullptr), 1);
        missing->ContentDisposition("inline");
        mail.PreMime("pre");
        mail.PostMime("post");
        expect("parts.eml");
    }
}

TEST(Mime, NothingInAHeaderOpensALine) {
    std::string const evil = "x\r\nBcc: y\n\rz";
    std::string const evilWithZero = evil + '\0' + "end";
    for (int const strict : {0, 1}) {
        Mail mail;
        mail.StrictEncoding(strict);
        mail.From({evilWithZero, evilWithZero});
        mail.ReplyTo({evilWithZero, evilWithZero});
        mail.AddRecipient((evil + "<" + evil + ">").c_str(), to);
        mail.AddRecipient(("a<a\r\nBcc:" + evil.substr(9) + ">").c_str(), cc);
        mail.Subject(evil.c_str());
        mail.MailerName(evil.c_str());
        mail.Boundary(evil.c_str());
        auto* const text = new Text(".");
        auto* const file = new File(evilWithZero);
        text->Charset(evil.c_str());
        file->ContentDisposition(evil.c_str());
        text->ContentType(evil.c_str());
        text->ContentTransferEncoding(evil.c_str());
        file->ContentType(evil.c_str());
        file->ContentTransferEncoding(evil.c_str());
        mail.AddMimePart(text);
        mail.AddMimePart(file);
        std::string const header = mail.Header() + text->Header() + file->Header();
        EXPECT_EQ(header.find('\0'), header.npos);
        for (std::size_t at = header.find_first_of("\r\n"); at != header.npos;
             at = header.find_first_of("\r\n", at)) {
            EXPECT_EQ(header.substr(at, 2), "\r\n") << header;
            at += 2;
            EXPECT_NE(header.substr(at, 4), "Bcc:") << header;
        }
    }
}

TEST(Mime, NewObjectsTakeOverTheDefaults) {
    struct Default {
        CString const& (*get)();
        void (*set)(char const*);
        char const* name;
    } const rows[] = {
        {&CTovMailMessage::MailerNameDefault, &CTovMailMessage::MailerNameDefault, "TovMail"},
        {&Text::CharsetDefault, &Text::CharsetDefault, "iso-8859-1"},
        {&Text::ContentTypeDefault, &Text::ContentTypeDefault, "text/plain"},
        {&Text::ContentTransferEncodingDefault, &Text::ContentTransferEncodingDefault, "quoted-printable"},
        {&File::ContentTypeDefault, &File::ContentTypeDefault, "application/octet-stream"},
        {&File::ContentDispositionDefault, &File::ContentDispositionDefault, "attachment"},
        {&File::ContentTransferEncodingDefault, &File::ContentTransferEncodingDefault, "Base64"},
        {&Mail::BoundaryDefault, &Mail::BoundaryDefault, "_NextPart_CTovMail_1dE8e48F60beBCECoestrsf"},
    };
    for (auto const& row : rows) {
        EXPECT_STREQ(row.get().c_str(), row.name);
        row.set("changed-default");
        Mail mail;
        mail.AddMimePart(new Text(""));
        mail.AddMimePart(new File(""));
        row.set(row.name);
        std::string const written = mail.Header() + mail.Body();
        EXPECT_THAT(written, testing::HasSubstr("changed-default"));
        EXPECT_EQ(mail.Header() + mail.Body(), written) << "what was made keeps its own";
    }
}

// A host's own part, and one that it derives from a part of the library.
TEST(Mime, PartsOfAHostAreAskedForTheirText) {
    struct Own : CTovMailMessageMimePart {
        CString Body() const override { return "own --B_1_ --B"; }
        CString Header() const override { return "Content-type: x/y\r\n"; }
        CString const& ContentType() const override { return type; }
        CString type = "x/y";
    };
    struct Derived : File {
        using File::File;
        CString Body() const override { return "derived"; }
    };
    Mail mail;
    mail.Boundary("B");
    mail.AddMimePart(new Own);
    mail.AddMimePart(new Derived("/etc/passwd"));
    EXPECT_THAT(
        mail.Body(),
        testing::MatchesRegex("\r\n--B\r\nContent-type: x/y\r\n\r\nown(.|\n)*\r\n\r\nderived\r\n--B--\r\n"));
    mail.StrictEncoding(1);
    EXPECT_THAT(mail.Header(), testing::EndsWith("boundary=\"B_2_\"\r\n"));
    EXPECT_THAT(mail.Body(), testing::EndsWith("derived\r\n--B_2_--\r\n"));
}

TEST(Mime, FilesOfEveryLengthAreWrittenAsTheirBase64) {
    test::TemporaryFolder const folder;
    std::string const path = folder.File("f");
    File file(path), strict(path);
    strict.StrictEncoding(1);
    constexpr std::size_t piece = 57 * 512;
    for (std::size_t const size :
         {0UL, 1UL, 56UL, 57UL, 58UL, piece - 1, piece, piece + 1, piece + 57, 3 * piece + 3}) {
        std::string bytes(size, 'x');
        for (std::size_t i = 0; i < size; ++i)
            bytes[i] = static_cast<char>(i * i >> 3);
        PutFile(path, bytes);
        EXPECT_EQ(file.Body(), TovEncodeBase64(path)) << size;
        CString body = strict.Body();
        EXPECT_EQ(body.size(), (size + 2) / 3 * 4 + (size + 56) / 57 * 2) << size;
        unsigned long const count = TovDecodeBase64(reinterpret_cast<unsigned char*>(body.data()));
        EXPECT_TRUE(body.substr(0, count) == bytes) << size;
    }
    for (std::string const& other : {folder.path().string(), folder.File("pipe"), folder.File("none")}) {
        ::mkfifo(folder.File("pipe").c_str(), 0600);
        EXPECT_EQ(File(other).Body(), "") << other;
    }
    EXPECT_EQ(File(nullptr).Body() + Text(nullptr).Body(), "");
}

// Half of the file is of one letter and half of the other only while somebody writes.
TEST(Mime, AFileThatChangesIsWrittenInOneStateOrNotAtAll) {
    test::TemporaryFolder const folder;
    std::string const path = folder.File("f");
    std::string const states[] = {std::string(300'000, 'a'), std::string(200'000, 'b')};
    PutFile(path, states[0]);
    std::atomic<bool> isOver{false};
    std::thread writer([&] {
        for (unsigned i = 0; !isOver; ++i) {
            PutFile(path, states[i % 2]);
            std::this_thread::sleep_for(std::chrono::milliseconds(i % 8 * 3));
        }
    });
    int whole = 0;
    for (int i = 0; i < 100; ++i) {
        CString body = File(path).Body();
        unsigned long const count = TovDecodeBase64(reinterpret_cast<unsigned char*>(body.data()));
        body.resize(count);
        // A state may also be what the writer has got to when it pauses; the letters never mix.
        EXPECT_EQ(body.find_first_not_of(body.substr(0, 1)), body.npos);
        whole += body == states[0] || body == states[1];
    }
    isOver = true;
    writer.join();
    EXPECT_GT(whole, 0);
}

}  // namespace
}  // namespace tov
