#include <tov310/pump.h>

#include "util/seam.h"

namespace tov {
namespace {

class PumpsNothing final : public ITovPump {};

constinit Seam<ITovPump, PumpsNothing> pumpSeam;

}  // namespace

ITovPump::~ITovPump() = default;

void ITovPump::Pump(HWND) {}

ITovPump* TovGetPump() {
    return pumpSeam.Get();
}

ITovPump* TovSetPump(ITovPump* pump) {
    return pumpSeam.Set(pump);
}

void TovSetDefaultPump(ITovPump* pump) {
    pumpSeam.SetDefault(pump);
}

}  // namespace tov
