#include <tov310/base64.h>

#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <memory>
#include <random>
#include <string_view>

namespace tov {
namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// Both ways work at an offset in a buffer that ends with the data, so that the address sanitizer sees a step
// behind it.
CString Encode(std::string_view bytes, unsigned long lineLength, std::size_t offset = 0) {
    auto const buffer = std::make_unique<unsigned char[]>(offset + bytes.size());
    std::copy(bytes.begin(), bytes.end(), &buffer[offset]);
    return TovEncodeBase64(&buffer[offset], bytes.size(), lineLength);
}

std::string Decode(std::string_view text, std::size_t offset = 0) {
    auto const buffer = std::make_unique<unsigned char[]>(offset + text.size() + 1);
    std::copy(text.begin(), text.end(), &buffer[offset]);
    unsigned long const count = TovDecodeBase64(&buffer[offset]);
    EXPECT_TRUE(std::all_of(&buffer[0], &buffer[offset], [](unsigned char c) { return c == 0; })) << offset;
    return {reinterpret_cast<char const*>(&buffer[offset]), count};
}

std::string RandomBytes(std::minstd_rand& random, std::size_t length) {
    std::string bytes(length, '\0');
    std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<char>(random() >> 8 & 0xFF); });
    return bytes;
}

// The definitions: bits are put in behind and taken out in front.
std::string EncodedBitByBit(std::string_view bytes, std::size_t lineLength) {
    std::string text;
    std::size_t characters = 0;
    auto const put = [&](unsigned digit) {
        text += alphabet[digit & 63];
        if (lineLength != 0 && ++characters % lineLength == 0) text += "\r\n";
    };
    unsigned bits = 0, count = 0;
    for (char const byte : bytes) {
        bits = bits << 8 | static_cast<unsigned char>(byte);
        for (count += 8; count >= 6; count -= 6)
            put(bits >> (count - 6));
    }
    put(bits << (6 - count));
    return text.append((4 - text.size() % 4) % 4, '=');
}

std::string DecodedBitByBit(std::string_view text) {
    std::string bytes;
    unsigned bits = 0, count = 0;
    for (char const c : text) {
        std::size_t const digit = alphabet.find(c);
        if (digit == alphabet.npos) continue;
        bits = bits << 6 | static_cast<unsigned>(digit);
        if ((count += 6) >= 8) bytes += static_cast<char>(bits >> (count -= 8) & 0xFF);
    }
    return bytes;
}

TEST(Base64, Examples) {
    struct {
        std::string_view bytes;
        unsigned long lineLength;
        char const* text;
    } const rows[] = {
        // clang-format off
        {"", 0, "A==="}, {"f", 0, "Zg=="}, {"fo", 0, "Zm8="}, {"foo", 0, "Zm9vA==="},
        {{"\0\0\0", 3}, 0, "AAAAA==="}, {"\xff\xff\xfe", 0, "///+A==="},
        // The line ends count for the padding and the closing character for the lines.
        {"foo", 4, "Zm9v\r\nA="}, {"foo", 5, "Zm9vA\r\n="}, {"f", 2, "Zg\r\n"}, {"", 1, "A\r\n="},
        // clang-format on
    };
    for (auto const& row : rows) {
        EXPECT_EQ(Encode(row.bytes, row.lineLength), row.text) << row.bytes << ' ' << row.lineLength;
        EXPECT_EQ(Decode(row.text), row.bytes) << row.text;
    }
    for (char const* const foo : {"Zm9v", "Zm9vZ", " Z m\t9\r\nv\n", "Z-m_9.v", "=Zm=9v", "\xff\x80Zm9v=="})
        EXPECT_EQ(Decode(foo), "foo") << foo;
    EXPECT_EQ(Decode({"Zm8\0Zm8", 7}), "fo") << "a text ends at its zero";
    EXPECT_EQ(TovEncodeBase64(nullptr, 3, 0), "");
    EXPECT_EQ(TovDecodeBase64(nullptr), 0u);
}

TEST(Base64, EveryLengthLineLengthAndAlignmentIsAsDefinedAndComesBack) {
    std::minstd_rand random(310);
    for (std::size_t length = 0; length <= 20'000; length += length < 300 ? 1 : 1231) {
        std::string const bytes = RandomBytes(random, length);
        for (unsigned long const lineLength : {0UL, 1UL, 2UL, 3UL, 4UL, 5UL, 7UL, 64UL, 76UL, 77UL, 1000UL}) {
            std::size_t const offset = random() % 64;
            std::string const text = Encode(bytes, lineLength, offset);
            ASSERT_EQ(text, EncodedBitByBit(bytes, lineLength)) << length << ' ' << lineLength;
            ASSERT_EQ(Decode(text, offset), bytes) << length << ' ' << lineLength;
        }
    }
}

TEST(Base64, EveryByteInEveryPlaceOfABlockCountsOrIsSkipped) {
    for (std::size_t i = 0; i < 64 * 255; ++i) {
        std::string text(alphabet);
        text[i / 255] = static_cast<char>(i % 255 + 1);
        ASSERT_EQ(Decode(text), DecodedBitByBit(text)) << i / 255 << ' ' << i % 255 + 1;
    }
}

TEST(Base64, WholeFilesAreEncodedInLinesOf76) {
    test::TemporaryFolder const folder;
    std::string const path = folder.File("file");
    std::minstd_rand random(312);
    for (std::size_t const length : {0UL, 58UL, 200'000UL}) {
        std::string const bytes = RandomBytes(random, length);
        std::ofstream(path, std::ios::binary) << bytes;
        EXPECT_EQ(TovEncodeBase64(path), Encode(bytes, 76)) << length;
    }
    for (std::string const& unreadable : {folder.File("missing"), folder.path().string(), std::string()})
        EXPECT_EQ(TovEncodeBase64(unreadable), "") << unreadable;
}

TEST(Iso8859, BytesOutsideItsRangeAndTheMarkItselfAreEscaped) {
    EXPECT_EQ(TovEncodeIso8859("a=b\x99\x9a\xc3\xa4\xff\r\n"), "a=3Db\x99=9A=C3=A4=FF\r\n");
    EXPECT_EQ(TovEncodeIso8859(nullptr), "");
}

}  // namespace
}  // namespace tov
