#include "dorn200/image_source.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace tov {
namespace {

using namespace std::string_view_literals;

struct KnownFormat {
    std::string_view signature;  // "?" stands for any byte
    FREE_IMAGE_FORMAT format;
    Reading reading = Reading::kExact;
};

constexpr std::array knownFormats{
    KnownFormat{"BM"sv, FIF_BMP},
    KnownFormat{"GIF87a"sv, FIF_GIF},
    KnownFormat{"GIF89a"sv, FIF_GIF},
    KnownFormat{"\0\0\1\0"sv, FIF_ICO},
    KnownFormat{"\xFF\xD8\xFF"sv, FIF_JPEG, Reading::kBlocks},
    KnownFormat{"\x89PNG\r\n\x1A\n"sv, FIF_PNG},
    KnownFormat{"II*\0"sv, FIF_TIFF},
    KnownFormat{"MM\0*"sv, FIF_TIFF},
    KnownFormat{"II+\0"sv, FIF_TIFF},  // with offsets of 64 bits
    KnownFormat{"MM\0+"sv, FIF_TIFF},
    KnownFormat{"\0\0\0\x0CjP  \r\n\x87\n"sv, FIF_JP2, Reading::kBeyond},
    KnownFormat{"\xFF\x4F\xFF\x51"sv, FIF_J2K, Reading::kBeyond},
    KnownFormat{"RIFF????WEBP"sv, FIF_WEBP, Reading::kBlocks},
    KnownFormat{"P1"sv, FIF_PBM},
    KnownFormat{"P2"sv, FIF_PGM},
    KnownFormat{"P3"sv, FIF_PPM},
    KnownFormat{"P4"sv, FIF_PBMRAW},
    KnownFormat{"P5"sv, FIF_PGMRAW},
    KnownFormat{"P6"sv, FIF_PPMRAW},
};

bool HasSignature(std::string_view head, std::string_view signature) {
    return head.size() >= signature.size() &&
           std::equal(signature.begin(), signature.end(), head.begin(),
                      [](char wanted, char found) { return wanted == '?' || wanted == found; });
}

// FreeImage does not tell its listener on whose behalf it speaks.
thread_local ImageSource* hearing = nullptr;

}  // namespace

ImageSource::ImageSource(char const* path) : m_file(std::fopen(path, "rb")) {
    if (m_file == nullptr) return;
    std::array<char, 12> bytes{};
    std::string_view const head(bytes.data(), std::fread(bytes.data(), 1, bytes.size(), m_file.get()));
    auto const known = std::find_if(knownFormats.begin(), knownFormats.end(), [&](KnownFormat const& format) {
        return HasSignature(head, format.signature);
    });
    if (known == knownFormats.end()) return;
    m_format = known->format;
    m_reading = known->reading;
}

unsigned DLL_CALLCONV ImageSource::Read(void* buffer, unsigned size, unsigned count, fi_handle handle) {
    auto& source = *static_cast<ImageSource*>(handle);
    std::size_t const done = std::fread(buffer, size, count, source.m_file.get());
    bool const isShort = source.m_reading == Reading::kExact
                             ? done < count
                             : source.m_reading == Reading::kBlocks && done == 0;
    if (isShort) source.m_ranOut = true;
    return static_cast<unsigned>(done);
}

int DLL_CALLCONV ImageSource::Seek(fi_handle handle, long offset, int origin) {
    return std::fseek(static_cast<ImageSource*>(handle)->m_file.get(), offset, origin);
}

long DLL_CALLCONV ImageSource::Position(fi_handle handle) {
    return std::ftell(static_cast<ImageSource*>(handle)->m_file.get());
}

// The readers of JPEG and TIFF files fill up with grey or black what their pixels do not reach to, and only
// say so; of a JPEG file only the first thing that they notice. Bytes between the picture and the mark of its
// end are padding that cameras write; at other places they are what a decoder could make nothing of.
void ImageSource::Hear(FREE_IMAGE_FORMAT, char const* message) {
    std::string_view const text = message;
    if (hearing == nullptr || text.find("extraneous bytes before marker 0xd9") != text.npos) return;
    for (std::string_view const word :
         {"Corrupt JPEG data"sv, "Premature end"sv, "Inconsistent progression"sv, "may be incomplete"sv}) {
        if (text.find(word) != text.npos) hearing->m_ranOut = true;
    }
}

FreeImagePtr ImageSource::Decode(int flags) {
    if (m_format == FIF_UNKNOWN || std::fseek(m_file.get(), 0, SEEK_SET) != 0) return nullptr;
    FreeImageIO io{Read, nullptr, Seek, Position};
    m_ranOut = false;
    hearing = this;
    FreeImage_SetOutputMessage(Hear);
    FreeImagePtr image(FreeImage_LoadFromHandle(m_format, &io, this, flags));
    FreeImage_SetOutputMessage(nullptr);
    hearing = nullptr;
    return image;
}

FreeImagePtr ImageSource::Load() {
    if (m_format == FIF_GIF && !HasAllGifPixels(m_file.get())) return nullptr;
    if (m_format == FIF_BMP && !MayHaveAllBmpPixels(m_file.get())) return nullptr;
    auto image = Decode(0);
    return m_ranOut || image == nullptr || !FreeImage_HasPixels(image.get()) ? nullptr : std::move(image);
}

bool ImageSource::Tell(ImageFacts& facts) {
    if (m_format == FIF_GIF) return TellGif(m_file.get(), facts);
    if (m_format == FIF_JP2 || m_format == FIF_J2K)
        return TellJpeg2000(m_file.get(), m_format == FIF_JP2, facts);
    auto const image = Decode(FIF_LOAD_NOPIXELS);
    if (image == nullptr) return false;
    facts = {FreeImage_GetWidth(image.get()), FreeImage_GetHeight(image.get()),
             FreeImage_GetBPP(image.get())};
    return facts.width > 0 && facts.height > 0;
}

}  // namespace tov
