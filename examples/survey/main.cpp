// survey: shows a table of places in any unit, and how far two of them are apart, and does what else a
// surveyor's desk needs.
//
// A first host of the library. Without a command it reads coordinates into values (places), computes with the
// numbers in them (sphere), lets the library print them, and remembers through it what the user chose
// (settings) and which tables were opened (recent). Each command has a file of its own; `commands` names them
// all.
#include "answer.h"
#include "commands.h"
#ifdef SURVEY_WINDOWS
#include "window_commands.h"
#endif

#include <exception>
#include <iostream>
#include <span>
#include <string>
#include <vector>

namespace survey {
namespace {

// All of them; the first is what is done without a command.
std::vector<Command> AllCommands() {
    std::span<Command const> const plain = Commands();
    std::vector<Command> all(plain.begin(), plain.end());
#ifdef SURVEY_WINDOWS
    std::span<Command const> const shown = WindowCommands();
    all.insert(all.end(), shown.begin(), shown.end());
#endif
    return all;
}

void PrintUsage(Command const& command, std::string_view lead) {
    std::cout << lead << "survey " << command.name << (command.name.empty() ? "" : " ") << command.usage
              << '\n';
}

void PrintHelp(Command const& command) {
    std::vector<Command> const all = AllCommands();
    std::span<Command const> const commands = all;
    bool const isWhole = command.name.empty();
    PrintUsage(command, "usage: ");
    for (Command const& other : isWhole ? commands.subspan(1) : commands.first(0))
        PrintUsage(other, "       ");
    std::cout << '\n' << command.help();
    if (isWhole) {
        std::cout << "\nCommands; survey COMMAND --help tells more\n";
        for (Command const& other : commands.subspan(1))
            std::cout << "  " << other.name << std::string(11 - other.name.size(), ' ') << other.about
                      << '\n';
    }
    std::cout << R"(
Every command takes
  --lang LANGUAGE        language of the library's texts: en, or zh_CN, which is built in
  --profile PATH         remember there instead: a file when PATH holds ".ini" or begins
                         with "/", otherwise a branch of the registry
  --reset                forget what is remembered
  --help                 this text

Exit codes: 0 fine, 1 not everything went well (lines of the table were skipped, no file was
found), 2 wrong call, 3 something cannot be read or written, 130 ended by Ctrl-C
)";
}

int Run(Arguments arguments) {
    CommonOptions common;
    std::vector<Command> const commands = AllCommands();
    Command const* command = &commands.front();
    while (arguments.Next()) {
        if (TakeCommon(arguments, common)) continue;
        bool isCommand = false;
        for (Command const& known : commands) {
            isCommand = arguments.MayBeCommand() && !known.name.empty() && known.name == arguments.Name();
            if (isCommand) command = &known;
            if (isCommand) break;
        }
        if (!isCommand) arguments.Back();
        break;
    }
    int const code = command->run(arguments, common);
    if (common.help) PrintHelp(*command);
    return code;
}

}  // namespace
}  // namespace survey

int main(int argc, char** argv) {
    try {
        std::span<char const* const> const arguments(argv, static_cast<std::size_t>(argc));
#ifdef SURVEY_WINDOWS
        // Whoever clicks on the program wants to see a window.
        if (argc < 2 && survey::HasDisplay()) {
            int const code = survey::RunFirstWindow();
            if (code != survey::kNoDisplay) return code;
        }
#endif
        int const code = survey::Run(survey::Arguments(arguments.subspan(argc > 0 ? 1 : 0)));
        if (std::cout.flush()) return code;
        survey::Complain() << "the output cannot be written\n";
        return survey::kUnreadable;
    } catch (survey::UsageError const& error) {
        survey::Complain() << error.what() << "\nsurvey --help tells how it is called.\n";
        return survey::kUsage;
    } catch (std::exception const& error) {
        survey::Complain() << error.what() << '\n';
        return survey::kUnreadable;
    }
}
