#include "dorn200/image_source.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <span>

namespace tov {
namespace {

using namespace std::string_view_literals;

struct KnownFormat {
    std::string_view signature;  // "?" stands for any byte
    FREE_IMAGE_FORMAT format;
    bool readsAhead = false;
};

constexpr std::array knownFormats{
    KnownFormat{"BM"sv, FIF_BMP},
    KnownFormat{"GIF87a"sv, FIF_GIF},
    KnownFormat{"GIF89a"sv, FIF_GIF},
    KnownFormat{"\xFF\xD8\xFF"sv, FIF_JPEG, true},
    KnownFormat{"\x89PNG\r\n\x1A\n"sv, FIF_PNG},
    KnownFormat{"II*\0"sv, FIF_TIFF},
    KnownFormat{"MM\0*"sv, FIF_TIFF},
    KnownFormat{"II+\0"sv, FIF_TIFF},  // with offsets of 64 bits
    KnownFormat{"MM\0+"sv, FIF_TIFF},
    KnownFormat{"\0\0\0\x0CjP  \r\n\x87\n"sv, FIF_JP2, true},
    KnownFormat{"\xFF\x4F\xFF\x51"sv, FIF_J2K, true},
    KnownFormat{"RIFF????WEBP"sv, FIF_WEBP, true},
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

unsigned LittleEndian(unsigned char const* bytes) {
    return bytes[0] | static_cast<unsigned>(bytes[1]) << 8;
}

unsigned BigEndian(unsigned char const* bytes) {
    return static_cast<unsigned>(bytes[0]) << 24 | static_cast<unsigned>(bytes[1]) << 16 |
           static_cast<unsigned>(bytes[2]) << 8 | bytes[3];
}

bool ReadExactly(std::FILE* file, std::span<unsigned char> bytes) {
    return std::fread(bytes.data(), 1, bytes.size(), file) == bytes.size();
}

bool Skip(std::FILE* file, long count) {
    return std::fseek(file, count, SEEK_CUR) == 0;
}

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
    m_readsAhead = known->readsAhead;
}

unsigned DLL_CALLCONV ImageSource::Read(void* buffer, unsigned size, unsigned count, fi_handle handle) {
    auto& source = *static_cast<ImageSource*>(handle);
    std::size_t const done = std::fread(buffer, size, count, source.m_file.get());
    if (done < count && (!source.m_readsAhead || done == 0)) source.m_ranOut = true;
    return static_cast<unsigned>(done);
}

int DLL_CALLCONV ImageSource::Seek(fi_handle handle, long offset, int origin) {
    return std::fseek(static_cast<ImageSource*>(handle)->m_file.get(), offset, origin);
}

long DLL_CALLCONV ImageSource::Position(fi_handle handle) {
    return std::ftell(static_cast<ImageSource*>(handle)->m_file.get());
}

FreeImagePtr ImageSource::Decode(int flags) {
    if (m_format == FIF_UNKNOWN || std::fseek(m_file.get(), 0, SEEK_SET) != 0) return nullptr;
    FreeImageIO io{Read, nullptr, Seek, Position};
    m_ranOut = false;
    return FreeImagePtr(FreeImage_LoadFromHandle(m_format, &io, this, flags));
}

FreeImagePtr ImageSource::Load() {
    auto image = Decode(0);
    return m_ranOut || image == nullptr || !FreeImage_HasPixels(image.get()) ? nullptr : std::move(image);
}

bool ImageSource::Tell(ImageFacts& facts) {
    if (m_format == FIF_GIF) return TellGif(facts);
    if (m_format == FIF_JP2 || m_format == FIF_J2K) return TellJpeg2000(facts);
    auto const image = Decode(FIF_LOAD_NOPIXELS);
    if (image == nullptr) return false;
    facts = {FreeImage_GetWidth(image.get()), FreeImage_GetHeight(image.get()),
             FreeImage_GetBPP(image.get())};
    return facts.width > 0 && facts.height > 0;
}

// The first picture of the file (Graphics Interchange Format 89a, sections 18 to 24).
bool ImageSource::TellGif(ImageFacts& facts) {
    constexpr unsigned char extension = 0x21, picture = 0x2C;
    std::FILE* const file = m_file.get();
    std::array<unsigned char, 9> bytes{};
    auto const tableBits = [](unsigned char packed) { return (packed & 7u) + 1; };
    auto const hasTable = [](unsigned char packed) { return (packed & 0x80) != 0; };

    if (std::fseek(file, 6, SEEK_SET) != 0 || !ReadExactly(file, std::span(bytes).first(7))) return false;
    unsigned bits = hasTable(bytes[4]) ? tableBits(bytes[4]) : 8;
    if (hasTable(bytes[4]) && !Skip(file, 3L << bits)) return false;
    for (;;) {
        int const kind = std::fgetc(file);
        if (kind == picture) break;
        if (kind != extension || std::fgetc(file) == EOF) return false;
        for (int length = std::fgetc(file); length != 0; length = std::fgetc(file)) {
            if (length == EOF || !Skip(file, length)) return false;
        }
    }
    if (!ReadExactly(file, bytes)) return false;
    if (hasTable(bytes[8])) bits = tableBits(bytes[8]);
    facts = {LittleEndian(&bytes[4]), LittleEndian(&bytes[6]), bits == 1 ? 1u : bits <= 4 ? 4u : 8u};
    return facts.width > 0 && facts.height > 0;
}

// The size marker of the code stream (ISO/IEC 15444-1, A.5.1), which follows the start marker at once; in a
// JP2 file the stream is the content of a box.
bool ImageSource::TellJpeg2000(ImageFacts& facts) {
    std::FILE* const file = m_file.get();
    if (std::fseek(file, 0, SEEK_SET) != 0) return false;
    std::array<unsigned char, 43> size{};
    for (std::array<unsigned char, 16> box{}; m_format == FIF_JP2;) {
        if (!ReadExactly(file, std::span(box).first(8))) return false;
        std::uint64_t length = BigEndian(&box[0]);
        long header = 8;
        if (length == 1) {  // the length is the one behind the name
            if (!ReadExactly(file, std::span(box).last(8))) return false;
            length = std::uint64_t{BigEndian(&box[8])} << 32 | BigEndian(&box[12]);
            header = 16;
        }
        if (std::memcmp(&box[4], "jp2c", 4) == 0) break;
        if (length < static_cast<std::uint64_t>(header) || length > INT32_MAX ||
            !Skip(file, static_cast<long>(length) - header)) {
            return false;
        }
    }
    if (!ReadExactly(file, size) || std::memcmp(size.data(), "\xFF\x4F\xFF\x51", 4) != 0) return false;
    auto const extent = [&](std::size_t end, std::size_t offset) {
        auto const last = BigEndian(&size[end]), first = BigEndian(&size[offset]);
        return last > first ? last - first : 0;
    };
    unsigned const components = static_cast<unsigned>(size[40]) << 8 | size[41];
    unsigned const depth = (size[42] & 0x7Fu) + 1;
    facts = {extent(8, 16), extent(12, 20), components * (depth > 8 ? 16 : 8)};
    return facts.width > 0 && facts.height > 0;
}

}  // namespace tov
