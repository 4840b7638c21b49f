// Sockets to other machines.
#pragma once

#include <system_error>

namespace tov {

// A new TCP socket that programs which are started meanwhile do not inherit; -1 and the failure where the
// system has no room for one.
int OpenNetSocket(bool isVersion6, std::error_code& failure);
void CloseNetSocket(int number);

}  // namespace tov
