// Toolbars of resource modules come from translators: any bytes are read or refused, and a toolbar that was
// read is written and read again as the same.
#include "fuzz/expect.h"
#include "imaging/toolbar_resource.h"

#include <algorithm>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>

namespace {

bool IsSide(int pixels) {
    return pixels >= 1 && pixels <= 1024;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    tov::ToolbarResource toolbar;
    if (!tov::ParseToolbar({reinterpret_cast<char const*>(data), size}, toolbar)) return 0;
    Expect(IsSide(toolbar.image.cx) && IsSide(toolbar.image.cy));
    Expect(std::ranges::all_of(toolbar.ids, [](unsigned id) { return id <= 0xFFFF; }));
    nlohmann::json const written = {
        {"width", toolbar.image.cx}, {"height", toolbar.image.cy}, {"items", toolbar.ids}};
    tov::ToolbarResource again;
    again.ids = {1, 2, 3};
    Expect(tov::ParseToolbar(written.dump(), again));
    Expect(again.image == toolbar.image && again.ids == toolbar.ids);
    return 0;
}
