#include "vesk/net_socket.h"

#include "vesk/descriptor.h"

#include <netinet/in.h>
#include <sys/socket.h>

namespace tov {

int OpenNetSocket(bool isVersion6, std::error_code& failure) {
    int const number = ::socket(isVersion6 ? AF_INET6 : AF_INET, SOCK_STREAM | SOCK_CLOEXEC, IPPROTO_TCP);
    failure = number < 0 ? std::error_code(errno, std::system_category()) : std::error_code();
    return number;
}

void CloseNetSocket(int number) {
    ::close(number);
}

}  // namespace tov
