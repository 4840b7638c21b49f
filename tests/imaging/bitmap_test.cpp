// links: objects
// Bitmaps in memory, and the library's own readers held against files that are made here in every form.
#include "imaging/bitmap_readers.h"
#include "support/files.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <tov310/bitmap.h>
#include <tov310/dib.h>

#include <algorithm>
#include <array>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace tov::test {
namespace {

using Row = std::vector<std::uint32_t>;
using Rows = std::vector<Row>;  // from the top

std::mt19937 randomBits(5);

std::uint32_t Random(std::uint32_t below) {
    return static_cast<std::uint32_t>(randomBits()) % below;
}

std::string Bytes(std::uint64_t value, int count, bool isBigEndian) {
    std::string bytes;
    for (int i = 0; i < count; ++i)
        bytes += static_cast<char>(value >> 8 * (isBigEndian ? count - 1 - i : i));
    return bytes;
}

std::string Big(std::uint64_t value, int count = 4) {
    return Bytes(value, count, true);
}

std::string Little(std::uint64_t value, int count = 4) {
    return Bytes(value, count, false);
}

// The samples of a row, packed from the high bits on.
std::string Pack(Row const& samples, unsigned depth) {
    std::string bytes;
    std::uint64_t held = 0;
    unsigned count = 0;
    for (std::uint32_t const sample : samples) {
        held = held << depth | sample;
        for (count += depth; count >= 8; count -= 8)
            bytes += static_cast<char>(held >> (count - 8));
    }
    if (count > 0) bytes += static_cast<char>(held << (8 - count));
    return bytes;
}

void ExpectPicture(HBITMAP const& found, Rows const& expected) {
    ASSERT_TRUE(found);
    ASSERT_EQ(found->GetHeight(), std::ssize(expected));
    ASSERT_EQ(found->GetWidth(), std::ssize(expected[0]));
    EXPECT_TRUE(found->IsTopDown());
    for (int y = 0; y < found->GetHeight(); ++y) {
        auto const& row = expected[static_cast<std::size_t>(y)];
        ASSERT_TRUE(std::equal(row.begin(), row.end(), found->GetRow(y))) << "row " << y;
    }
}

// Nothing cut off a file gives a picture of the same size, and no change of a byte does any harm.
void ExpectRobust(std::string const& file, HBITMAP (*read)(std::string_view), std::size_t spare) {
    for (std::size_t size = 0; size + spare < file.size(); size += 1 + size / 16)
        EXPECT_FALSE(read(std::string_view(file).substr(0, size))) << size << " of " << file.size();
    for (int i = 0; i < 200; ++i) {
        std::string damaged = file;
        damaged[Random(static_cast<std::uint32_t>(i % 2 == 0 ? 70 : file.size()))] ^=
            static_cast<char>(1 << Random(8));
        read(damaged);
    }
}

struct PngKind {
    unsigned kind, depth, samples;
};

constexpr PngKind pngKinds[] = {{0, 1, 1}, {0, 2, 1},  {0, 4, 1},  {0, 8, 1}, {0, 16, 1},
                                {2, 8, 3}, {2, 16, 3}, {3, 1, 1},  {3, 2, 1}, {3, 4, 1},
                                {3, 8, 1}, {4, 8, 2},  {4, 16, 2}, {6, 8, 4}, {6, 16, 4}};

std::string Chunk(std::string const& name, std::string const& data) {
    std::uint32_t sum = ~0u;
    for (char const byte : name + data) {
        sum ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = sum >> 1 ^ (sum & 1 ? 0xEDB88320u : 0);
    }
    return Big(data.size()) + name + data + Big(~sum);
}

// Filters a row the way its number tells.
std::string Filter(int filter, std::string const& row, std::string const& above, std::size_t step) {
    std::string bytes(1, static_cast<char>(filter));
    for (std::size_t i = 0; i < row.size(); ++i) {
        auto const at = [&](std::string const& from, std::size_t back) {
            return i < back || from.empty() ? 0 : static_cast<unsigned char>(from[i - back]);
        };
        int const a = at(row, step), b = at(above, 0), c = at(above, step);
        std::array<int, 3> const near{a, b, c};
        int const guess = *std::min_element(near.begin(), near.end(), [&](int x, int y) {
            return std::abs(a + b - c - x) < std::abs(a + b - c - y);
        });
        int const guesses[] = {0, a, b, (a + b) / 2, guess};
        bytes += static_cast<char>(row[i] - guesses[filter]);
    }
    return bytes;
}

TEST(BitmapPng, EveryKindIsReadAsItWasMade) {
    for (PngKind const& kind : pngKinds) {
        for (int const form : {0, 1, 2, 3}) {
            bool const isInterlaced = form % 2 != 0, hasKey = form / 2 != 0;
            std::size_t const width = 1 + Random(20), height = 1 + Random(20);
            Row palette(std::size_t{1} << std::min(kind.depth, 8u));
            for (std::uint32_t& entry : palette)
                entry = Random(1 << 24) | (hasKey ? Random(256) : 255u) << 24;
            Row key(kind.samples);
            std::vector<std::vector<Row>> samples(height, std::vector<Row>(width, Row(kind.samples)));
            Rows expected(height, Row(width));
            for (std::uint32_t& sample : key)
                sample = Random(1u << kind.depth);
            for (std::size_t y = 0; y < height; ++y) {
                for (std::size_t x = 0; x < width; ++x) {
                    Row& s = samples[y][x];
                    for (std::uint32_t& sample : s)
                        sample = Random(1u << kind.depth);
                    if (Random(4) == 0 && kind.samples % 2 == 1) s = key;
                    std::uint32_t const alpha = hasKey && s == key ? 0 : 0xFF000000;
                    Row eight = s;
                    for (std::uint32_t& sample : eight)
                        sample = kind.depth == 16 ? sample / 256 : sample * 255 / ((1u << kind.depth) - 1);
                    std::uint32_t& pixel = expected[y][x];
                    if (kind.kind == 3) pixel = palette[s[0]];
                    if (kind.kind == 0) pixel = eight[0] * 0x010101 | alpha;
                    if (kind.kind == 2) pixel = eight[0] << 16 | eight[1] << 8 | eight[2] | alpha;
                    if (kind.kind == 4) pixel = eight[0] * 0x010101 | eight[1] << 24;
                    if (kind.kind == 6) pixel = eight[0] << 16 | eight[1] << 8 | eight[2] | eight[3] << 24;
                }
            }
            // Stored blocks; image_file_test has files that are packed in all ways.
            std::string data;
            // Left, top and steps to the right and down of each pass.
            char const* const passes[] = {"0088", "4088", "0448", "2044", "0224", "1022", "0112"};
            for (int p = 0; p < (isInterlaced ? 7 : 1); ++p) {
                auto const part = [&](int i) {
                    return static_cast<std::size_t>((isInterlaced ? passes[p] : "0011")[i] - '0');
                };
                std::size_t const left = part(0), right = part(2);
                std::string above;
                for (std::size_t y = part(1); y < height && left < width; y += part(3)) {
                    Row flat;
                    for (std::size_t x = left; x < width; x += right)
                        flat.insert(flat.end(), samples[y][x].begin(), samples[y][x].end());
                    std::string const row = Pack(flat, kind.depth);
                    data += Filter(static_cast<int>(Random(5)), row, above,
                                   std::max(1u, kind.samples * kind.depth / 8));
                    above = row;
                }
            }
            std::string packed = "\x78\x01";
            std::size_t const first = data.size() / 3;
            packed += '\0' + Little(first, 2) + Little(~first, 2) + data.substr(0, first);
            packed += '\1' + Little(data.size() - first, 2) + Little(~(data.size() - first), 2) +
                      data.substr(first);
            packed += "sum?";
            std::string colours, transparency;
            for (std::uint32_t const entry : palette)
                colours += Big(entry & 0xFFFFFF, 3);
            for (std::uint32_t const part : kind.kind == 3 ? palette : key)
                transparency += kind.kind == 3 ? Big(part >> 24, 1) : Big(part, 2);
            std::string const file = std::string(pngSignature) +
                                     Chunk("IHDR", Big(width) + Big(height) + Big(kind.depth, 1) +
                                                       Big(kind.kind, 1) + Big(isInterlaced, 3)) +
                                     (kind.kind == 3 ? Chunk("PLTE", colours) : std::string()) +
                                     (hasKey && kind.kind < 4 ? Chunk("tRNS", transparency) : std::string()) +
                                     Chunk("teXt", "ignored") + Chunk("IDAT", packed.substr(0, 5)) +
                                     Chunk("IDAT", packed.substr(5)) + Chunk("IEND", "");
            SCOPED_TRACE(testing::Message()
                         << "kind " << kind.kind << " depth " << kind.depth << " form " << form);
            ExpectPicture(ReadPng(file), expected);
            ExpectRobust(file, ReadPng, 0);
        }
    }
}

struct BmpKind {
    unsigned depth, compression;
    std::array<std::uint32_t, 4> masks;  // red, green, blue, alpha
    unsigned header;
};

constexpr BmpKind bmpKinds[] = {{1, 0, {}, 40},
                                {4, 0, {}, 40},
                                {8, 0, {}, 40},
                                {8, 0, {}, 12},
                                {24, 0, {}, 12},
                                {24, 0, {}, 40},
                                {32, 0, {}, 40},
                                {16, 0, {0x7C00, 0x3E0, 0x1F, 0}, 40},
                                {16, 3, {0xF800, 0x7E0, 0x1F, 0}, 40},
                                {16, 3, {0xF00, 0xF0, 0xF, 0xF000}, 108},
                                {32, 3, {0xFF, 0xFF00, 0xFF0000, 0xFF000000}, 124},
                                {32, 6, {0x3FF00000, 0xFFC00, 0x3FF, 0xC0000000}, 40},
                                {8, 1, {}, 40},
                                {4, 2, {}, 40}};

// A row in runs, in stretches as they are, and with moves over what has colour 0.
std::string PackRuns(Row const& row, bool isHalf) {
    std::string bytes;
    for (std::size_t x = 0; x < row.size();) {
        std::size_t run = 1;
        while (x + run < row.size() && row[x + run] == row[x] && run < 255)
            ++run;
        auto const two = [&](std::size_t i) {
            std::uint32_t const low = i + 1 < row.size() ? row[i + 1] : 0;
            return Big(isHalf ? row[i] << 4 | low : row[i], 1);
        };
        std::size_t const left = row.size() - x, literal = std::min<std::size_t>(left, 3 + Random(5));
        if (row[x] == 0 && run < left) {
            bytes += std::string("\0\2", 2) + Big(run, 1) + Big(0, 1);
            x += run;
        } else if (run > 1 || literal < 3) {
            bytes += Big(run, 1) + Big(isHalf ? row[x] * 17 : row[x], 1);
            x += run;
        } else {
            std::string stored;
            for (std::size_t i = 0; i < literal; i += isHalf ? 2 : 1)
                stored += two(x + i);
            bytes += Big(literal, 2) + stored + std::string(stored.size() % 2, '\0');
            x += literal;
        }
    }
    return bytes + std::string(2, '\0');
}

TEST(BitmapBmp, EveryKindIsReadAsItWasMade) {
    for (BmpKind const& kind : bmpKinds) {
        for (bool const isTopDown : {false, true}) {
            bool const isRun = kind.compression == 1 || kind.compression == 2;
            if (isTopDown && (kind.header == 12 || isRun)) continue;
            std::size_t const width = 1 + Random(40), height = 1 + Random(20);
            Row palette(kind.depth <= 8 ? 1u << kind.depth : 0);
            for (std::uint32_t& entry : palette)
                entry = Random(1 << 24);
            Rows stored(height, Row(width)), expected(height, Row(width));
            std::string pixels;
            for (std::size_t y = 0; y < height; ++y) {
                Row& target = expected[isTopDown ? y : height - 1 - y];
                for (std::size_t x = 0; x < width; ++x) {
                    std::uint32_t& value = stored[y][x];
                    value = static_cast<std::uint32_t>(randomBits() & ((std::uint64_t{1} << kind.depth) - 1));
                    // Where all alphas are 0 they do not count.
                    if (x == 0)
                        value |= kind.depth == 32 && kind.compression == 0 ? 0xFF000000 : kind.masks[3];
                    if (isRun && x > 0 && Random(3) > 0) value = Random(3) == 0 ? 0 : stored[y][x - 1];
                    target[x] = kind.depth <= 8 ? palette[value] | 0xFF000000
                                                : value | (kind.depth == 24 ? 0xFF000000 : 0);
                    if (kind.masks[0] == 0) continue;
                    std::uint32_t parts[4];
                    for (std::size_t i = 0; i < 4; ++i) {
                        double const most = kind.masks[i];
                        parts[i] =
                            most == 0
                                ? 255
                                : static_cast<std::uint32_t>((value & kind.masks[i]) / most * 255 + 0.5);
                    }
                    target[x] = parts[3] << 24 | parts[0] << 16 | parts[1] << 8 | parts[2];
                }
                std::string row;
                if (kind.depth <= 8)
                    row = isRun ? PackRuns(stored[y], kind.depth == 4) : Pack(stored[y], kind.depth);
                for (std::uint32_t const value : kind.depth > 8 ? stored[y] : Row())
                    row += Little(value, static_cast<int>(kind.depth / 8));
                pixels += row + std::string(isRun ? 0 : (4 - row.size() % 4) % 4, '\0');
            }
            if (isRun) pixels.replace(pixels.size() - 2, 2, std::string("\0\1", 2));
            std::string masks, colours;
            for (std::size_t i = 0; i < (kind.header > 40 || kind.compression == 6 ? 4u : 3u); ++i)
                masks += Little(kind.masks[i]);
            for (std::uint32_t const entry : palette)
                colours += Little(entry, kind.header == 12 ? 3 : 4);
            std::string header =
                kind.header == 12
                    ? Little(width, 2) + Little(height, 2) + Little(1, 2) + Little(kind.depth, 2)
                    : Little(width) + Little(isTopDown ? ~height + 1 : height) + Little(1, 2) +
                          Little(kind.depth, 2) + Little(kind.compression) + std::string(20, '\0') +
                          (kind.compression % 3 == 0 && kind.compression ? masks : "");
            if (header.size() < kind.header - 4) header.resize(kind.header - 4);
            header = Little(kind.header) + header + colours;
            std::string const file =
                "BM" + std::string(8, '\0') + Little(14 + header.size()) + header + pixels;
            SCOPED_TRACE(testing::Message() << kind.depth << " bits, compression " << kind.compression
                                            << ", header " << kind.header << (isTopDown ? ", top-down" : ""));
            ExpectPicture(ReadBmp(file), expected);
            ExpectRobust(file, ReadBmp, 3);  // padding need not be there
        }
    }
}

TEST(Bitmap, SharesItsPixelsAndComesFromResources) {
    CTovBitmap bitmap;
    BITMAP record;
    EXPECT_EQ(bitmap.GetBitmap(&record), 0);
    EXPECT_FALSE(bitmap.CreateBitmap(3, -2) || bitmap.CreateBitmap(0, 2) || bitmap.Attach(nullptr));
    EXPECT_TRUE(bitmap.CreateBitmap(3, 2));
    EXPECT_FALSE(bitmap.CreateBitmap(3, 2));
    EXPECT_EQ(bitmap.GetBitmap(&record), sizeof record);
    EXPECT_TRUE(record.bmWidth == 3 && record.bmHeight == 2 && record.bmWidthBytes == 12 &&
                record.bmBitsPixel == 32);
    HBITMAP const shared = bitmap;
    shared->GetBits()[1] = 0x40123456;
    EXPECT_TRUE(bitmap.ChangeColor(0x563412, 0x0A0B0C, nullptr));
    EXPECT_EQ(static_cast<std::uint32_t*>(record.bmBits)[1], 0x400C0B0Au);
    EXPECT_TRUE(bitmap.DeleteObject());
    EXPECT_FALSE(bitmap.DeleteObject() || bitmap.GetWidth() || bitmap.ChangeColor(1, 2, nullptr));
    EXPECT_EQ(shared->GetBits()[1], 0x400C0B0Au);

    TemporaryFolder const folder;
    PutFile(folder.File("strings.json"), "{}");
    create_directory(folder.path() / "bitmaps");
    std::string const bmp = "BM" + std::string(8, '\0') + Little(54) + Little(40) + Little(1) + Little(1) +
                            Little(1, 2) + Little(24, 2) + std::string(24, '\0') + "\1\2\3";
    PutFile(folder.File("bitmaps/7.bmp"), bmp);
    PutFile(folder.File("bitmaps/8.png"), "no picture");
    HINSTANCE const module = TovLoadResourceModule(folder.path().c_str());
    ASSERT_TRUE(module);
    EXPECT_TRUE(bitmap.LoadBitmap(module, 7));
    EXPECT_EQ(bitmap.GetSafeHandle()->GetBits()[0], 0xFF030201u);
    EXPECT_FALSE(bitmap.LoadBitmap(module, 8));
    EXPECT_FALSE(bitmap.GetSafeHandle());
    EXPECT_FALSE(bitmap.LoadBitmap(nullptr, 7));
    CTovDib dib;
    EXPECT_TRUE(dib.Create(nullptr, module, 7, 0));
    EXPECT_FALSE(dib.IsTopDown());
    EXPECT_EQ(bitmap.IsKindOf(&CBitmap::classCBitmap), bitmap.IsKindOf(&CTovBitmap::classCTovBitmap));
}

// A device of one row.
struct RowDevice : CDC {
    Row pixels{0x112233, 7, 0x11112233, 0x112233};
    int SetDIBitsToDevice(int x, int, int width, int height, std::uint32_t const* bits,
                          BITMAPINFOHEADER const&) override {
        std::copy_n(bits, width * height, pixels.begin() + x);
        return 1;
    }
    int GetDIBits(int x, int, CTovPixels& to) override {
        std::copy_n(pixels.begin() + x, to.GetCount(), to.GetBits());
        return 1;
    }
};

TEST(Bitmap, ChangesAColourOnADevice) {
    RowDevice device;
    BITMAP record{0, 3, 1, 12, 1, 32, nullptr};
    EXPECT_TRUE(CTovBitmap::ChangeBitmapColorDC(&device, &record, 0x332211, 0xFF));
    EXPECT_EQ(device.pixels, Row({0xFF0000, 7, 0x11FF0000, 0x112233}));
    record.bmBitsPixel = 1;
    EXPECT_FALSE(CTovBitmap::ChangeBitmapColorDC(&device, &record, 7, 8));
    EXPECT_FALSE(CTovBitmap::ChangeBitmapColorDC(nullptr, &record, 7, 8) ||
                 CTovBitmap::ChangeBitmapColorDC(&device, nullptr, 7, 8));
}

}  // namespace
}  // namespace tov::test
