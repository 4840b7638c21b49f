// Sends a table of places by mail.
#pragma once

#include "common.h"

#include <string>

namespace survey {

// Writes the places of a table into a mail, attaches files, and sends it. Where the server refuses it says
// what the server said.
int RunMail(Arguments& arguments, CommonOptions& common);
std::string MailHelp();

}  // namespace survey
