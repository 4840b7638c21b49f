// Pictures from outside: any bytes are read without harm, and what is read is a whole picture.
#include "fuzz/expect.h"
#include "imaging/bitmap_readers.h"

#include <cstdint>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

namespace {

// Every pixel is there.
void Visit(tov::HBITMAP const& bitmap) {
    if (bitmap == nullptr) return;
    Expect(tov::IsBitmapSize(bitmap->GetWidth(), bitmap->GetHeight()) && bitmap->IsTopDown());
    std::uint32_t const* const bits = bitmap->GetBits();
    std::uint32_t const volatile sum = std::accumulate(bits, bits + bitmap->GetCount(), 0u);
    static_cast<void>(sum);
}

// Whether four bytes are a number of no great size, in either direction. Large pictures only cost time here.
bool IsSmall(std::string_view bytes, std::size_t at, bool isBigEndian) {
    if (bytes.size() < at + 4) return true;
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < 4; ++i)
        number = number << 8 | static_cast<unsigned char>(bytes[at + (isBigEndian ? i : 3 - i)]);
    return number < 2048 || ~number < 2048;
}

// The checksums of a PNG file put right, so that what they protect is reached.
std::string WithSums(std::string file) {
    std::size_t at = tov::pngSignature.size();
    while (at + 12 <= file.size()) {
        std::size_t length = 0;
        for (std::size_t i = 0; i < 4; ++i)
            length = length << 8 | static_cast<unsigned char>(file[at + i]);
        if (length > file.size() - at - 12) break;
        std::uint32_t sum = ~0u;
        for (std::size_t i = at + 4; i < at + 8 + length; ++i) {
            sum ^= static_cast<unsigned char>(file[i]);
            for (int bit = 0; bit < 8; ++bit)
                sum = sum >> 1 ^ ((sum & 1) != 0 ? 0xEDB88320u : 0);
        }
        for (std::size_t i = 0; i < 4; ++i)
            file[at + 8 + length + i] = static_cast<char>(~sum >> (24 - 8 * i));
        at += length + 12;
    }
    return file;
}

}  // namespace

// The input is a file, or without its signature a packed stream.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string_view const bytes(reinterpret_cast<char const*>(data), size);
    if (bytes.starts_with(tov::bmpSignature)) {
        if (IsSmall(bytes, 18, false) && IsSmall(bytes, 22, false)) Visit(tov::ReadBmp(bytes));
    } else if (bytes.starts_with(tov::pngSignature)) {
        if (IsSmall(bytes, 16, true) && IsSmall(bytes, 20, true))
            Visit(tov::ReadPng(WithSums(std::string(bytes))));
    } else if (size > 0) {
        std::vector<unsigned char> output(data[0] * std::size_t{16});
        tov::Inflate({data + 1, size - 1}, output);
    }
    return 0;
}
