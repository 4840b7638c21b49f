#include <tov310/base64.h>
#include <tov310/mime.h>

#include "support/files.h"
#include "support/limits.h"
#include "support/temporary_folder.h"
#include "vesk/cpu.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <functional>

namespace {
std::function<void()> beforeRead;
}
extern "C" [[gnu::visibility("default")]] ssize_t read(int file, void* buffer, size_t size) {
    if (beforeRead) beforeRead();
    return ::syscall(SYS_read, file, buffer, size);
}

namespace tov {
namespace {

namespace fs = std::filesystem;
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

// Whatever is set to whatever: lines of the header begin with a known field, and in the strict way they are
// ASCII and short.
TEST(Mime, NothingInAHeaderOpensALine) {
    std::string const evil[] = {"x\r\nBcc: y\n\rz",
                                std::string(2500, 'w'),
                                "Bcc:" + std::string(2000, ' ') + "b",
                                "é\"\\",
                                std::string(300, '"') + "Bcc: \xff",
                                "a b " + std::string(70, 'c') + " d\\"};
    for (std::string const& one : evil) {
        for (int const strict : {0, 1}) {
            Mail mail;
            mail.StrictEncoding(strict);
            auto* const text = new Text(".");
            auto* const file = new File(one + '\0' + "end");
            mail.AddMimePart(text);
            mail.AddMimePart(file);
            char const* const t = one.c_str();
            mail.From({t, t});
            mail.ReplyTo({t, t});
            mail.AddRecipient((one + "<" + one + ">").c_str(), to);
            mail.AddRecipient((one + "<a>").c_str(), cc);
            mail.Subject(t), mail.MailerName(t), mail.Boundary(t);
            text->Charset(t), text->ContentType(t), text->ContentTransferEncoding(t);
            file->ContentType(t), file->ContentDisposition(t), file->ContentTransferEncoding(t);
            std::string const parts = text->Header() + file->Header();
            EXPECT_TRUE(strict == 0 || std::ranges::none_of(parts, [](char c) { return (c & 0x80) != 0; }));
            std::string const header = mail.Header() + parts;
            for (std::size_t begin = 0, end = 0; begin < header.size(); begin = end + 2) {
                end = header.find_first_of(std::string("\r\n\0", 3), begin);
                ASSERT_EQ(header.compare(end, 2, "\r\n"), 0) << header;
                std::string const line = header.substr(begin, end - begin);
                EXPECT_THAT(
                    line,
                    testing::ContainsRegex(
                        "^([ \t]|Date: |From: |Reply-To: |To: |Cc: |X-Mailer: |Subject: |MIME-|Content-)"));
                if (strict == 0) continue;
                EXPECT_LE(line.size(), 998u) << line;
                // Words without a blank cannot be folded; all others are.
                EXPECT_TRUE(line.size() <= 78 || line.find(' ', line.find(": ") + 2) >= 78) << line;
            }
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
        EXPECT_EQ(row.get(), row.name);
        row.set("changed-default");
        Mail mail;
        mail.AddMimePart(new Text(""));
        mail.AddMimePart(new File(""));
        row.set(row.name);
        EXPECT_THAT(mail.Header() + mail.Body(), testing::HasSubstr("changed-default")) << "made before";
    }
}

// The charset and the encoding that a strict part names, and its body.
TEST(Mime, StrictTextsAreToldForWhatTheyAre) {
    std::string const line(998, 'l');
    struct {
        std::string text;
        char const *charset, *encoding, *told, *body;
    } const rows[] = {
        {"a", "iso-8859-1", "7BIT", "charset=\"utf-8\"\r\nContent-transfer-encoding: 7bit\r\n", "a"},
        {"a", "", "8bit", "\"utf-8\"\r\nContent-transfer-encoding: 8bit\r\n", "a"},
        {line, "", "binary", ": binary\r\n", line.c_str()},
        {line + "l", "", "binary", ": quoted-printable\r\n", nullptr},
        {"\xe4", "iso-8859-15", "base64", "\"iso-8859-15\"\r\nContent-transfer-encoding: base64\r\n",
         "5A==\r\n"},
        {"\x1b$B", "ISO-2022-JP", "7bit", "charset=\"ISO-2022-JP\"", "\x1b$B"},
        {"ä", "ISO-2022-JP", "7bit", "charset=\"utf-8\"", "=C3=A4=\r\n"},
    };
    for (auto const& row : rows) {
        Text part(row.text);
        part.StrictEncoding(1);
        part.Charset(row.charset);
        part.ContentTransferEncoding(row.encoding);
        EXPECT_THAT(part.Header(), testing::HasSubstr(row.told));
        EXPECT_TRUE(row.body == nullptr || part.Body() == row.body) << part.Body();
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

    // A part that never says the same twice, and knows which boundary there could be.
    struct Fickle : Own {
        CString Body() const override { return "--C_" + std::to_string(count += 6) + "_"; }
        mutable int count = -5;
    };
    mail.Boundary("C");
    mail.AddMimePart(new Fickle);
    EXPECT_THAT(mail.Header(), testing::EndsWith("boundary=\"C_2_\"\r\n"));
    EXPECT_THAT(mail.Body(), testing::EndsWith("--C_7_\r\n--C_2_--\r\n")) << "that of the header";
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
    ::mkfifo(folder.File("pipe").c_str(), 0600);
    PutFile(folder.File("endless"), "x");
    fs::resize_file(folder.File("endless"), std::uintmax_t{1} << 40);
    rlimit before{};
    ::getrlimit(RLIMIT_AS, &before);
    rlimit const little{rlim_t{1} << 33, before.rlim_max};
    for (std::string const& other : {folder.path().string(), folder.File("pipe"), folder.File("none"),
                                     folder.File("endless"), std::string("/proc/version")}) {
        if (TOV_SANITIZED && other.ends_with("endless")) continue;  // such memory ends the sanitizer
        Mail mail;
        mail.AddMimePart(new Text("text"));
        mail.AddMimePart(new File(other));
        if (!TOV_SANITIZED) ::setrlimit(RLIMIT_AS, &little);
        std::string const body = mail.Body(), alone = File(other).Body() + TovEncodeBase64(other);
        ::setrlimit(RLIMIT_AS, &before);
        EXPECT_THAT(body, testing::HasSubstr("Base64\r\n\r\n\r\n--")) << other;
        EXPECT_EQ(alone, "") << other;
    }
    fs::permissions(path, fs::perms::none);
    test::WithoutRights({folder.path()}, [&] { EXPECT_EQ(File(path).Body(), ""); });
    EXPECT_EQ(File(nullptr).Body() + Text(nullptr).Body(), "");
}

// Somebody writes before each of the first pieces that are read.
TEST(Mime, AFileThatChangesIsWrittenInOneStateOrNotAtAll) {
    test::TemporaryFolder const folder;
    std::string const path = folder.File("f");
    std::string const last(300'000, 'b');
    for (std::size_t const before : {300'000U, 400'000U, 200'000U, 0U}) {
        for (int const changes : {0, 1, 4, 1'000'000}) {
            PutFile(path, std::string(before, 'a'));
            int left = changes;
            beforeRead = [&] {
                if (left-- > 0) PutFile(path, left % 2 == 0 ? last : std::string(before, 'a'));
            };
            CString const body = File(path).Body();
            beforeRead = nullptr;
            EXPECT_EQ(body, changes < 100 ? TovEncodeBase64(path) : "") << before << '/' << changes;
        }
    }
    // A time that lies ahead is no reason to wait.
    PutFile(path, "x");
    fs::last_write_time(path, fs::file_time_type::clock::now() + std::chrono::hours(1));
    auto const begin = std::chrono::steady_clock::now();
    for (int i = 0; i < 50; ++i)
        EXPECT_NE(File(path).Body(), "");
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(900));
}

}  // namespace
}  // namespace tov
