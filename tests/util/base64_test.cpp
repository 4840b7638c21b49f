#include <tov310/base64.h>

#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <memory>
#include <random>
#include <string_view>
#include <vector>

namespace tov {
namespace {

unsigned char const* Bytes(std::string_view text) {
    return reinterpret_cast<unsigned char const*>(text.data());
}

CString Encode(std::string_view bytes, unsigned long lineLength = 0) {
    return TovEncodeBase64(Bytes(bytes), bytes.size(), lineLength);
}

// Decodes in a buffer of exactly the text's size, so that the address sanitizer sees a step outside it.
std::string Decode(std::string_view text) {
    auto const buffer = std::make_unique<unsigned char[]>(text.size() + 1);
    std::copy(text.begin(), text.end(), buffer.get());
    unsigned long const count = TovDecodeBase64(buffer.get());
    EXPECT_LE(count, text.size());
    return {reinterpret_cast<char const*>(buffer.get()), count};
}

std::string RandomBytes(std::mt19937& random, std::size_t length) {
    std::string bytes(length, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random() & 0xFF);
    return bytes;
}

// The bits of the bytes in sixes, straight from the definition.
std::string BitByBit(std::string_view bytes, std::size_t lineLength) {
    constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    std::size_t characters = 0;
    std::size_t const steps = bytes.size() * 8 / 6 + 1;
    for (std::size_t step = 0; step < steps; ++step) {
        unsigned digit = 0;
        for (std::size_t bit = step * 6; bit < step * 6 + 6; ++bit) {
            unsigned const byte = bit / 8 < bytes.size() ? static_cast<unsigned char>(bytes[bit / 8]) : 0;
            digit = digit << 1 | (byte >> (7 - bit % 8) & 1);
        }
        text += alphabet[digit];
        if (lineLength != 0 && ++characters % lineLength == 0) text += "\r\n";
    }
    while (text.size() % 4 != 0)
        text += '=';
    return text;
}

TEST(Base64, EncodesWithItsOwnTail) {
    struct {
        std::string_view bytes;
        unsigned long lineLength;
        char const* text;
    } const rows[] = {
        {"", 0, "A==="},
        {"f", 0, "Zg=="},
        {"fo", 0, "Zm8="},
        {"foo", 0, "Zm9vA==="},
        {"foob", 0, "Zm9vYg=="},
        {"fooba", 0, "Zm9vYmE="},
        {"foobar", 0, "Zm9vYmFyA==="},
        {std::string_view("\0\0\0", 3), 0, "AAAAA==="},
        {"\xff\xff\xfe", 0, "///+A==="},
        // The line ends count for the padding and the closing character for the lines.
        {"foo", 4, "Zm9v\r\nA="},
        {"foo", 5, "Zm9vA\r\n="},
        {"fo", 3, "Zm8\r\n==="},
        {"f", 2, "Zg\r\n"},
        {"f", 1, "Z\r\ng\r\n=="},
        {"", 1, "A\r\n="},
    };
    for (auto const& row : rows) {
        EXPECT_EQ(Encode(row.bytes, row.lineLength), row.text) << row.bytes << ' ' << row.lineLength;
        EXPECT_EQ(Decode(row.text), row.bytes) << row.text;
    }
    EXPECT_EQ(TovEncodeBase64(nullptr, 3, 0), "");
}

TEST(Base64, EveryLengthAndLineLengthIsAsDefinedAndComesBack) {
    std::mt19937 random(310);
    for (std::size_t length = 0; length <= 300; ++length) {
        std::string const bytes = RandomBytes(random, length);
        for (unsigned long const lineLength :
             {0UL, 1UL, 2UL, 3UL, 4UL, 5UL, 7UL, 64UL, 75UL, 76UL, 77UL, 1000UL}) {
            std::string const text = Encode(bytes, lineLength);
            ASSERT_EQ(text, BitByBit(bytes, lineLength)) << length << ' ' << lineLength;
            ASSERT_EQ(Decode(text), bytes) << length << ' ' << lineLength;
        }
    }
}

TEST(Base64, NoAlignmentOfDataOrTextCounts) {
    std::mt19937 random(313);
    std::string const bytes = RandomBytes(random, 100);
    std::string const text = BitByBit(bytes, 0);
    for (std::size_t offset = 0; offset < 64; ++offset) {
        // The data ends with its buffer, so that the address sanitizer sees a step behind it.
        auto const data = std::make_unique<unsigned char[]>(offset + bytes.size());
        std::copy(bytes.begin(), bytes.end(), data.get() + offset);
        ASSERT_EQ(TovEncodeBase64(data.get() + offset, bytes.size(), 0), text) << offset;
        auto const copy = std::make_unique<unsigned char[]>(offset + text.size() + 1);
        std::copy(text.begin(), text.end(), copy.get() + offset);
        ASSERT_EQ(TovDecodeBase64(copy.get() + offset), bytes.size()) << offset;
        ASSERT_TRUE(std::equal(bytes.begin(), bytes.end(), reinterpret_cast<char*>(copy.get() + offset)));
        ASSERT_TRUE(std::all_of(copy.get(), copy.get() + offset, [](unsigned char c) { return c == 0; }));
    }
}

TEST(Base64, EveryByteInEveryPlaceOfABlockCountsOrIsSkipped) {
    constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    for (std::size_t place = 0; place < 64; ++place) {
        for (int byte = 1; byte < 256; ++byte) {
            std::string text(alphabet);
            text[place] = static_cast<char>(byte);
            std::string digits = text;
            std::erase_if(digits, [&](char c) { return alphabet.find(c) == alphabet.npos; });
            std::string const decoded = Decode(text);
            ASSERT_EQ(decoded.size(), digits.size() * 6 / 8) << place << ' ' << byte;
            for (std::size_t i = 0; i < decoded.size() * 8; ++i) {
                std::size_t const digit = alphabet.find(digits[i / 6]);
                std::size_t const whole = static_cast<unsigned char>(decoded[i / 8]);
                ASSERT_EQ(whole >> (7 - i % 8) & 1, digit >> (5 - i % 6) & 1) << place << ' ' << byte;
            }
        }
    }
}

TEST(Base64, AGreatLengthComesBack) {
    std::mt19937 random(311);
    std::string const bytes = RandomBytes(random, 1 << 20);
    EXPECT_EQ(Decode(Encode(bytes, 76)), bytes);
}

TEST(Base64, DecoderTakesTheOrdinaryFormAndSkipsWhatIsNone) {
    struct {
        std::string_view text;
        std::string_view bytes;
    } const rows[] = {
        {"", ""},
        {"Zm9v", "foo"},
        {"Zm9vYg==", "foob"},
        {"Zm9vYg", "foob"},
        {" Z m\t9\r\nv\n", "foo"},
        {"Zm9v\r\nYmFy\r\n", "foobar"},
        {"Z-m_9.v", "foo"},
        {"=", ""},
        {"====", ""},
        {"A", ""},
        {"Zm9vA===", "foo"},
        {"Zm9vZ", "foo"},
        {"=Zm9v", "foo"},
        {"Zm=9v", "foo"},
        {"\xff\x80Zm9v", "foo"},
        {"////", "\xff\xff\xff"},
    };
    for (auto const& row : rows)
        EXPECT_EQ(Decode(row.text), row.bytes) << row.text;
    EXPECT_EQ(TovDecodeBase64(nullptr), 0u);
}

TEST(Base64, DecoderTouchesNothingBehindItsText) {
    unsigned char buffer[] = "Zm9vYmFy\0behind";
    EXPECT_EQ(TovDecodeBase64(buffer), 6u);
    EXPECT_EQ(std::string_view(reinterpret_cast<char const*>(buffer) + 8, 8),
              std::string_view("\0behind\0", 8));
}

TEST(Iso8859, BytesOutsideItsRangeAndTheMarkItselfAreEscaped) {
    EXPECT_EQ(TovEncodeIso8859("a=b\x99\x9a\xc3\xa4\xff\r\n"), "a=3Db\x99=9A=C3=A4=FF\r\n");
    EXPECT_EQ(TovEncodeIso8859(""), "");
    EXPECT_EQ(TovEncodeIso8859(nullptr), "");
}

TEST(Base64, WholeFilesAreEncodedInLinesOf76) {
    test::TemporaryFolder const folder;
    std::mt19937 random(312);
    for (std::size_t const length :
         {std::size_t{0}, std::size_t{57}, std::size_t{58}, std::size_t{200'000}}) {
        std::string const path = folder.File("file");
        std::string const bytes = RandomBytes(random, length);
        std::ofstream(path, std::ios::binary) << bytes;
        EXPECT_EQ(TovEncodeBase64(path), Encode(bytes, 76)) << length;
    }
}

TEST(Base64, WhatIsNoReadableFileGivesAnEmptyText) {
    test::TemporaryFolder const folder;
    EXPECT_EQ(TovEncodeBase64(folder.File("missing")), "");
    EXPECT_EQ(TovEncodeBase64(folder.path().string()), "");
    EXPECT_EQ(TovEncodeBase64(CString()), "");
}

}  // namespace
}  // namespace tov
