#include <tov310/bitmap.h>
#include <tov310/dib.h>
#include <tov310/raster.h>

#include "imaging/bitmap_readers.h"
#include "imaging/image_module.h"
#include "vesk/file_pieces.h"

#include <filesystem>
#include <span>
#include <string>
#include <system_error>
#include <utility>

namespace tov {
namespace {

// Whatever else stands under a path, a pipe or a device, may never end.
bool IsRegularFile(char const* path) {
    std::error_code failure;
    return path != nullptr && *path != '\0' && std::filesystem::is_regular_file(path, failure);
}

// The first bytes; all that there are of a shorter file.
std::string FirstBytes(char const* path, std::size_t count) {
    std::string bytes(count, '\0');
    FilePieces file;
    std::size_t got = 0;
    if (file.Open(path) || file.Read(bytes.data(), count, got)) return {};
    bytes.resize(got);
    return bytes;
}

HBITMAP ReadImageFile(char const* path) {
    if (!IsRegularFile(path)) return nullptr;
    std::string const head = FirstBytes(path, pngSignature.size());
    HBITMAP picture;
    if (head.starts_with(bmpSignature)) picture = ReadApart(path, BmpExtent, ReadBmp);
    if (picture != nullptr || ReadWithModule(path, picture)) return picture;
    return head == pngSignature ? ReadApart(path, PngExtent, ReadPng) : nullptr;
}

}  // namespace

int CBitmap::CreateBitmap(int width, int height) {
    // The sign of a height tells the direction of its rows.
    return height > 0 && CTovPixels::IsPossible(width, height) && Attach(CTovPixels::Create(width, -height));
}

int CBitmap::Attach(HBITMAP bitmap) {
    if (m_bitmap != nullptr || bitmap == nullptr) return 0;
    m_bitmap = std::move(bitmap);
    return 1;
}

HBITMAP CBitmap::Detach() {
    return std::exchange(m_bitmap, nullptr);
}

int CBitmap::DeleteObject() {
    return Detach() != nullptr;
}

int CBitmap::GetBitmap(BITMAP* record) const {
    if (record == nullptr) return 0;
    *record = {};
    if (m_bitmap == nullptr) return 0;
    int const width = m_bitmap->GetWidth();
    *record = {0, width, m_bitmap->GetHeight(), width * 4, 1, 32, m_bitmap->GetBits()};
    return static_cast<int>(sizeof *record);
}

int CTovBitmap::LoadBitmap(HINSTANCE module, unsigned int id) {
    DeleteObject();
    std::string const name = "bitmaps/" + std::to_string(id);
    TovSetResourceHandle(module);
    HINSTANCE const current = TovGetResourceHandle();
    HBITMAP bitmap = ReadPng(TovFindResource(current, (name + ".png").c_str()));
    if (bitmap == nullptr) bitmap = ReadBmp(TovFindResource(current, (name + ".bmp").c_str()));
    TovRestoreResourceHandle();
    return Attach(std::move(bitmap));
}

int CTovBitmap::LoadBitmap(char const* path) {
    DeleteObject();
    return Attach(ReadImageFile(path));
}

int CTovBitmap::GetImageSize(char const* path, int* width, int* height, int* bitsPerPixel) {
    ImageFileFacts facts;
    int const told = IsRegularFile(path) && TellWithModule(path, facts);
    if (width != nullptr) *width = facts.width;
    if (height != nullptr) *height = facts.height;
    if (bitsPerPixel != nullptr) *bitsPerPixel = facts.bitsPerPixel;
    return told;
}

int CTovBitmap::SaveBitmap(HDC dc, HBITMAP bitmap, enmImageFormat format, char const* path) {
    if (dc == nullptr || bitmap == nullptr || path == nullptr || *path == '\0') return 0;
    return WriteWithModule(dc, bitmap, format, path);
}

int CTovBitmap::SaveBitmap(HBITMAP bitmap, enmImageFormat format, char const* path) {
    CDC memory;
    return SaveBitmap(&memory, std::move(bitmap), format, path);
}

int CTovBitmap::ChangeBitmapColor(HBITMAP bitmap, COLORREF oldColor, COLORREF newColor, HPALETTE) {
    if (bitmap == nullptr) return 0;
    constexpr std::uint32_t colour = 0x00FFFFFF;
    std::uint32_t const from = TovSwapRedAndBlue(oldColor) & colour;
    std::uint32_t const to = TovSwapRedAndBlue(newColor) & colour;
    for (std::uint32_t& pixel : std::span(bitmap->GetBits(), bitmap->GetCount()))
        pixel = (pixel & colour) == from ? (pixel & ~colour) | to : pixel;
    return 1;
}

int CTovBitmap::ChangeColor(COLORREF oldColor, COLORREF newColor, HPALETTE palette) const {
    return ChangeBitmapColor(GetSafeHandle(), oldColor, newColor, palette);
}

int CTovBitmap::ChangeBitmapColorDC(HDC dc, BITMAP const* bitmap, COLORREF oldColor, COLORREF newColor) {
    if (dc == nullptr || bitmap == nullptr || (bitmap->bmBitsPixel == 1 && bitmap->bmPlanes == 1)) return 0;
    // Dot by dot, since pixels of several dots would be means of colours.
    HBITMAP const dots = dc->Read({0, 0, bitmap->bmWidth, bitmap->bmHeight});
    if (dots == nullptr || ChangeBitmapColor(dots, oldColor, newColor, nullptr) == 0) return 0;
    return dc->StretchDIBits(0, 0, bitmap->bmWidth, bitmap->bmHeight, 0, 0, dots->GetWidth(),
                             dots->GetHeight(), dots->GetBits(), TovHeaderOf(*dots), SRCCOPY);
}

int CTovBitmap::GetWidth() const {
    BITMAP record;
    GetBitmap(&record);
    return record.bmWidth;
}

int CTovBitmap::GetHeight() const {
    BITMAP record;
    GetBitmap(&record);
    return record.bmHeight;
}

int CTovBitmap::GetXOffset() const {
    BITMAP record;
    GetBitmap(&record);
    return record.bmWidthBytes;
}

}  // namespace tov
