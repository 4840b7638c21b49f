#include <tov310/dib_image.h>

#include <QPainter>

#include <algorithm>
#include <memory>
#include <utility>

namespace tov {
namespace {

void ReleaseShare(void* share) {
    std::unique_ptr<HBITMAP>(static_cast<HBITMAP*>(share)).reset();
}

// Whether the alpha bytes say anything.
bool SaysWhatCovers(CTovPixels const& block) {
    return std::any_of(block.GetBits(), block.GetBits() + block.GetCount(),
                       [](std::uint32_t pixel) { return pixel >> 24 != 0; });
}

class IconOfToolkit final : public CTovIcon {
 public:
    explicit IconOfToolkit(QIcon icon) : m_icon(std::move(icon)) {}
    ~IconOfToolkit() override = default;

    CSize GetSize() const override {
        QList<QSize> const sizes = m_icon.availableSizes();
        constexpr int usual = 16;  // of icons that come in any size
        return sizes.isEmpty() ? CSize{usual, usual} : CSize{sizes.front().width(), sizes.front().height()};
    }

    HBITMAP GetPixels(CSize const& dots) const override {
        QImage image(dots.cx, dots.cy, QImage::Format_ARGB32_Premultiplied);
        if (image.isNull()) return nullptr;
        image.fill(Qt::transparent);
        QPainter painter(&image);
        m_icon.paint(&painter, image.rect());
        painter.end();
        return TovPixels(image);
    }

    QIcon const& Icon() const { return m_icon; }

 private:
    QIcon m_icon;
};

}  // namespace

QImage TovImageView(HBITMAP const& block, QImage::Format format) {
    if (!block || !block->IsTopDown()) return {};
    auto share = std::make_unique<HBITMAP>(block);
    constexpr int bytesOfPixel = 4;
    return {reinterpret_cast<uchar*>(block->GetBits()),
            block->GetWidth(),
            block->GetHeight(),
            qsizetype{block->GetWidth()} * bytesOfPixel,
            format,
            ReleaseShare,
            share.release()};
}

QImage TovImage(CTovDib const& dib, QImage::Format format) {
    HBITMAP const block = dib.GetBitmap();
    if (!block || block->IsTopDown()) return TovImageView(block, format);
    HBITMAP const turned = CTovPixels::Create(block->GetWidth(), -block->GetHeight());
    if (turned) turned->CopyFrom(*block);
    return TovImageView(turned, format);
}

HBITMAP TovPixels(QImage const& image) {
    HBITMAP block = image.isNull() ? nullptr : CTovPixels::Create(image.width(), -image.height());
    if (!block) return nullptr;
    QImage const plain = image.convertToFormat(QImage::Format_ARGB32);
    for (int row = 0; row < block->GetHeight(); ++row)
        std::copy_n(reinterpret_cast<std::uint32_t const*>(plain.constScanLine(row)), block->GetWidth(),
                    block->GetRow(row));
    return block;
}

QPixmap TovPixmap(CBitmap const& bitmap) {
    HBITMAP block = bitmap.GetSafeHandle();
    if (!block) return {};
    if (!block->IsTopDown()) {
        HBITMAP const turned = CTovPixels::Create(block->GetWidth(), -block->GetHeight());
        if (!turned) return {};
        turned->CopyFrom(*block);
        block = turned;
    }
    // A pixmap must not change with the bitmap.
    return QPixmap::fromImage(
        TovImageView(block, SaysWhatCovers(*block) ? QImage::Format_ARGB32 : QImage::Format_RGB32).copy());
}

int TovSetPixmap(CBitmap& bitmap, QPixmap const& pixmap) {
    bitmap.DeleteObject();
    return bitmap.Attach(TovPixels(pixmap.toImage()));
}

HICON TovIcon(QIcon const& icon) {
    return icon.isNull() ? nullptr : std::make_shared<IconOfToolkit>(icon);
}

QIcon TovQIcon(HICON const& icon) {
    if (!icon) return {};
    if (auto const* const native = dynamic_cast<IconOfToolkit const*>(icon.get())) return native->Icon();
    QIcon shown;
    CSize const size = icon->GetSize();
    for (int const ratio : {1, 2}) {
        HBITMAP const block = icon->GetPixels({size.cx * ratio, size.cy * ratio});
        QPixmap pixmap = QPixmap::fromImage(TovImageView(block, QImage::Format_ARGB32).copy());
        pixmap.setDevicePixelRatio(ratio);
        shown.addPixmap(pixmap);
    }
    return shown;
}

}  // namespace tov
