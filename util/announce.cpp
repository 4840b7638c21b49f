#include <tov310/announce.h>

#include "util/seam.h"

namespace tov {
namespace {

class SaysNothing final : public ITovAnnounce {};

constinit Seam<ITovAnnounce, SaysNothing> announceSeam;

}  // namespace

ITovAnnounce::~ITovAnnounce() = default;

void ITovAnnounce::Announce(HWND, char const*) {}

ITovAnnounce* TovGetAnnounce() {
    return announceSeam.Get();
}

ITovAnnounce* TovSetAnnounce(ITovAnnounce* announce) {
    return announceSeam.Set(announce);
}

void TovSetDefaultAnnounce(ITovAnnounce* announce) {
    announceSeam.SetDefault(announce);
}

}  // namespace tov
