#include <tov310/icon.h>

#include <tov310/device_context.h>

#include <utility>

namespace tov {
namespace {

class IconOfPixels final : public CTovIcon {
 public:
    IconOfPixels(HBITMAP picture, HBITMAP finer) : m_picture(std::move(picture)), m_finer(std::move(finer)) {}
    ~IconOfPixels() override = default;

    CSize GetSize() const override { return {m_picture->GetWidth(), m_picture->GetHeight()}; }

    HBITMAP GetPixels(CSize const& dots) const override {
        bool const fine = m_finer && dots.cx > m_picture->GetWidth();
        HBITMAP const& from = fine ? m_finer : m_picture;
        if (from->GetWidth() == dots.cx && from->GetHeight() == dots.cy && from->IsTopDown()) return from;
        return TovStretchPixels(from->GetBits(), TovHeaderOf(*from),
                                {0, 0, from->GetWidth(), from->GetHeight()}, dots.cx, dots.cy,
                                {0, 0, dots.cx, dots.cy}, HALFTONE);
    }

 private:
    HBITMAP m_picture;
    HBITMAP m_finer;
};

}  // namespace

CTovIcon::~CTovIcon() = default;

HICON TovIconOf(HBITMAP picture, HBITMAP finer) {
    if (!picture) return nullptr;
    return std::make_shared<IconOfPixels>(std::move(picture), std::move(finer));
}

}  // namespace tov
