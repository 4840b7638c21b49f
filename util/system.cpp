#include <tov310/system.h>

#include <tov310/device_context.h>
#include <tov310/tip.h>

#include "util/system_guard.h"
#include "vesk/immortal.h"

#include <atomic>

namespace tov {
namespace {

class NoScreen final : public ITovSystem {};

std::atomic<ITovSystem*> defaultSystem{nullptr};

ITovSystem* DefaultSystem() {
    if (ITovSystem* const system = defaultSystem.load()) return system;
    static Immortal<NoScreen> none;
    return &*none;
}

std::atomic<ITovSystem*> systemInForce{nullptr};  // null stands for the default

}  // namespace

ITovSystem::~ITovSystem() = default;

void ITovSystem::SetCursor(unsigned int) {}

void ITovSystem::RefreshCursor() {}

HWND ITovSystem::GetFocus() {
    return {};
}

int ITovSystem::IsKeyDown(int) {
    return 0;
}

CSize ITovSystem::GetTextExtent(HFONT, char const*) {
    return {};
}

HFONT ITovSystem::GetDialogFont() {
    return nullptr;
}

int ITovSystem::SetTimer(HWND, WPARAM, unsigned) {
    return 0;
}

int ITovSystem::KillTimer(HWND, WPARAM) {
    return 0;
}

unsigned ITovSystem::GetDoubleClickTime() {
    return 500;
}

HBITMAP ITovSystem::GetPicture(HWND) {
    return nullptr;
}

std::uint32_t ITovSystem::GetSysColor(int) {
    return 0;
}

std::unique_ptr<CDC> ITovSystem::CreateMemoryDC(HWND, CSize const&) {
    return nullptr;
}

std::unique_ptr<ITovTip> ITovSystem::CreateTip(HWND) {
    return nullptr;
}

std::unique_ptr<CDC> ITovSystem::CreatePaintDC(HWND, CRect* part) {
    if (part != nullptr) *part = {};
    return nullptr;
}

void TovSetDefaultSystem(ITovSystem* system) {
    std::scoped_lock const lock(systemGuard);
    defaultSystem.store(system);
}

HWND TovGetFocus() {
    return TovGetSystem()->GetFocus();
}

ITovSystem* TovGetSystem() {
    ITovSystem* const system = systemInForce.load();
    return system != nullptr ? system : DefaultSystem();
}

ITovSystem* TovSetSystem(ITovSystem* system) {
    std::scoped_lock const lock(systemGuard);
    ITovSystem* const before = systemInForce.exchange(system);
    return before != nullptr ? before : DefaultSystem();
}

}  // namespace tov
