#include <tov310/messages.h>
#include <tov310/window.h>

#include "vesk/immortal.h"

#include <map>
#include <mutex>
#include <string>
#include <string_view>

namespace tov {
namespace {

constexpr std::string_view names[] = {
#define TOV_MESSAGE_NAME(name) #name,
    TOV_FOR_EACH_MESSAGE(TOV_MESSAGE_NAME)
#undef TOV_MESSAGE_NAME
};

struct Registry {
    std::mutex guard;
    std::map<std::string, unsigned, std::less<>> numbers;

    Registry() {
        unsigned number = tovFirstRegisteredMessage;
        for (std::string_view const name : names)
            numbers.emplace(name, number++);
    }
};

}  // namespace

unsigned TovRegisterMessage(char const* name) {
    if (name == nullptr || *name == '\0') return 0;
    static Immortal<Registry> immortal;
    Registry& registry = *immortal;
    std::scoped_lock const lock(registry.guard);
    auto const found = registry.numbers.find(std::string_view(name));
    if (found != registry.numbers.end()) return found->second;
    unsigned const next = tovFirstRegisteredMessage + static_cast<unsigned>(registry.numbers.size());
    if (next > tovLastRegisteredMessage) return 0;
    registry.numbers.emplace(name, next);
    return next;
}

}  // namespace tov
