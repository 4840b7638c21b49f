// Icons: pictures that come in the size that a device asks for.
#pragma once

#include <tov310/export.h>
#include <tov310/geometry.h>
#include <tov310/pixels.h>

#include <memory>

namespace tov {

class TOV_CORE_API CTovIcon {
 public:
    virtual ~CTovIcon();

    // The size that it is meant for, in pixels.
    virtual CSize GetSize() const = 0;

    // The picture in a size, in dots: rows that run top-down, alpha bytes that say what of it covers. Null
    // where that cannot be had.
    virtual HBITMAP GetPixels(CSize const& dots) const = 0;

 protected:
    CTovIcon() = default;
    CTovIcon(CTovIcon const&) = default;
    CTovIcon& operator=(CTovIcon const&) = default;
};

// Names an icon and keeps it alive together with all copies of the name; null names none. Those of the
// toolkit come from TovIcon (dib_image.h).
using HICON = std::shared_ptr<CTovIcon const>;

// An icon of pixels with alpha bytes, in their size. The second block, if any, is the same picture in finer
// dots for screens that have several of them for a pixel. The blocks must not be changed any more. Null
// without pixels.
TOV_CORE_API HICON TovIconOf(HBITMAP picture, HBITMAP finer = nullptr);

}  // namespace tov
