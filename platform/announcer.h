// Says texts by way of the toolkit's accessibility.
#pragma once

#include <tov310/announce.h>

namespace tov {

class Announcer final : public ITovAnnounce {
 public:
    Announcer();
    ~Announcer() override = default;
    void Announce(HWND window, char const* text) override;
};

}  // namespace tov
