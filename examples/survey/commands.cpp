#include "commands.h"

#include "clocks.h"
#include "find.h"
#include "mail.h"
#include "map.h"
#include "recent.h"
#include "show.h"

namespace survey {

std::span<Command const> Commands() {
    static constexpr Command commands[] = {
        {"", "[options] [FILE]", "places of the earth and how far they are apart", ShowHelp, RunShow},
        {"find", "[options] DIR PATTERN [PATTERN ...]", "searches a folder for files", FindHelp, RunFind},
        {"mail", "[options] --server HOST --from ADDRESS --to ADDRESS [FILE]",
         "sends a table of places by mail", MailHelp, RunMail},
        {"map", "[options] IMAGE --out FILE", "draws an image on a map sheet", MapHelp, RunMap},
        {"recent", "[options]", "the tables that were opened last", RecentHelp, RunRecent},
        {"time", "[options] [TEXT]", "a moment in UTC, local time and GPS time", TimeHelp, RunTime},
    };
    return commands;
}

}  // namespace survey
