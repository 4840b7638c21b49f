#include "mail.h"

#include "answer.h"
#include "files.h"
#include "places.h"
#include "settings.h"
#include "table.h"
#include "text.h"

#include <tov310/mime.h>
#include <tov310/smtp.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string_view>
#include <vector>

namespace survey {
namespace {

constexpr unsigned smtpPort = 25;
constexpr int mostPort = 65535;
constexpr unsigned patience = 60'000;  // ms for each step

struct Letter {
    std::string file;  // empty for the table that comes with the program
    std::string server;
    unsigned port = smtpPort;
    std::string from;
    std::vector<std::string> to;
    std::string subject;
    std::vector<std::string> attachments;
};

Letter ReadLetter(Arguments& arguments, CommonOptions& common) {
    Letter letter;
    while (arguments.Next()) {
        if (TakeCommon(arguments, common)) continue;
        std::string_view const name = arguments.Name();
        if (arguments.IsFile()) {
            if (!letter.file.empty()) throw UsageError("mail: more than one table");
            if (name.empty()) throw UsageError("mail: the name of the table is empty");
            letter.file = name;
        } else if (name == "--server") {
            letter.server = arguments.Text();
        } else if (name == "--port") {
            letter.port = static_cast<unsigned>(ReadNumber("--port", mostPort, arguments.Value()));
        } else if (name == "--from") {
            letter.from = arguments.Text();
        } else if (name == "--to") {
            letter.to.push_back(arguments.Text());
        } else if (name == "--subject") {
            letter.subject = arguments.Value();
        } else if (name == "--attach") {
            letter.attachments.push_back(arguments.Text());
        } else {
            arguments.Unknown();
        }
    }
    if (!common.help && (letter.server.empty() || letter.from.empty() || letter.to.empty()))
        throw UsageError("mail needs --server, --from and --to");
    return letter;
}

void Address(Letter const& letter, tov::CTovMailMessage& mail) {
    using Message = tov::CTovMailMessage;
    // The list that takes recipients also tells what a good address is.
    Message check;
    if (!check.AddRecipient(letter.from.c_str(), Message::eRecipientTo))
        throw UsageError("--from: " + Quoted(letter.from) + " is no address");
    mail.From(letter.from.c_str());
    for (std::string const& one : letter.to) {
        if (!mail.AddRecipient(one.c_str(), Message::eRecipientTo))
            throw UsageError("--to: " + Quoted(one) + " is no address");
    }
}

std::string TextOf(std::vector<Place> const& places) {
    Table table({{"Place"}, {"Latitude", Table::Align::kNumber}, {"Longitude", Table::Align::kNumber}});
    for (Place place : places) {
        tov::CString latitude, longitude;
        place.latitude.GetString(latitude);
        place.longitude.GetString(longitude);
        table.Add({place.name, latitude, longitude});
    }
    std::ostringstream text;
    table.Print(text);
    std::string lines;
    for (char const c : text.str())
        lines += c == '\n' ? "\r\n" : std::string(1, c);
    return lines;
}

bool CanBeRead(std::string const& path) {
    std::error_code unknown;
    return std::filesystem::is_regular_file(path, unknown) && std::ifstream(path, std::ios::binary).good();
}

int SendLetter(Letter const& letter, tov::CTovMailMessage& mail) {
    tov::CTovSmtp smtp(letter.server, letter.port);
    smtp.TimeOut(patience);
    if (!smtp.Connect() || !smtp.SendMailMessage(&mail)) {
        Complain() << Shown(letter.server) << ": " << smtp.GetLastError() << '\n';
        return kUnreadable;
    }
    smtp.Disconnect();
    std::cout << "Sent to " << letter.server << ".\n";
    return kFine;
}

}  // namespace

std::string MailHelp() {
    return R"(Sends the places of FILE, a table like zone1970.tab of the tz database, in the units that are
remembered.

  --server HOST          the mail server
  --port N               its port, otherwise 25
  --from ADDRESS         the sender, ann@office.example or "Ann <ann@office.example>"
  --to ADDRESS           who gets it; may be given several times
  --subject TEXT
  --attach FILE          a file to go with it; may be given several times

Code 3 also tells that the mail was not sent; what the server said stands before it.
)";
}

int RunMail(Arguments& arguments, CommonOptions& common) {
    Letter const letter = ReadLetter(arguments, common);
    LoadLanguage(common.language);
    if (common.help) return kFine;
    tov::CTovMailMessageMimeContainer mail;
    mail.StrictEncoding(1);
    mail.MailerName("survey");
    mail.Subject(letter.subject.c_str());
    Address(letter, mail);

    OpenProfile(common);
    ApplySettings({});
    std::string const file = letter.file.empty() ? DataFile("zone1970.tab").string() : letter.file;
    std::string bytes;
    if (std::string const reason = ReadFile(file, bytes); !reason.empty()) {
        Complain() << Shown(file) << ": " << reason << '\n';
        return kUnreadable;
    }
    PlaceTable const table = ReadPlaces(bytes);
    if (table.places.empty()) {
        Complain() << Shown(file) << ": no place in it\n";
        return kUnreadable;
    }
    if (!table.skipped.empty())
        Complain() << Shown(file) << ": lines skipped: " << table.skipped.size() << '\n';

    mail.AddMimePart(new tov::CTovMailMessageMimePartText(TextOf(table.places)));
    for (std::string const& path : letter.attachments) {
        // The library would send an empty file in its place.
        if (!CanBeRead(path)) {
            Complain() << Shown(path) << ": cannot be read\n";
            return kUnreadable;
        }
        mail.AddMimePart(new tov::CTovMailMessageMimePartBinary(path));
    }
    int const result = SendLetter(letter, mail);
    return result == kFine && !table.skipped.empty() ? kNotAll : result;
}

}  // namespace survey
