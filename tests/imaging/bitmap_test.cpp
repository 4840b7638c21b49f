// links: objects
// Bitmaps in memory, and the library's own readers held against files that were made by hand in every form.
#include "imaging/bitmap_readers.h"
#include "support/files.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <tov310/bitmap.h>
#include <tov310/dib.h>

#include <algorithm>
#include <charconv>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

namespace tov::test {
namespace {

// Rows run from the top; eight digits a pixel. In the file "z" and two digits are so many zeros.
struct MadeFile {
    char const* what;
    std::size_t width;
    std::string_view pixels, hex;
};

// Without the signature.
constexpr MadeFile pngFiles[] = {
    {"grey, 1 bit, interlaced", 5,
     "ffffffffffffffffffffffffff000000ff000000ffffffffff000000ff000000ffffffffffffffffff000000ff000000ff0000"
     "00ffffffffffffffffff000000ff000000ff000000ff000000ff000000ff000000ff000000ff000000ffffffffffffffff",
     "0000000d4948445200000005000000050100000001d2132bde00000021494441547801011600e9ff0080010002400380048000"
     "20018002c00320049800002b3a03ed73dc3f2dz0449454e44ae426082"},
    {"grey, 2 bits", 5, "ffffffffff555555ff555555ffaaaaaaffffffffff000000ff000000ffffffffffaaaaaaffffffff",
     "0000000d49484452000000050000000202z04ffb151200000000e4944415478da63b87680916f1300080502586d48a74az0449"
     "454e44ae426082"},
    {"grey, 4 bits, key", 3, "00222222ff888888ffaaaaaaff777777ff99999900222222",
     "0000000d49484452000000030000000204z047defd4c70000000274524e530002989dac140000000e4944415478da63d058c05"
     "8b91c0004ea01eab2df91a3z0449454e44ae426082"},
    {"grey, 8 bits, interlaced", 5,
     "ff232323ff373737ffcdcdcdff373737ff949494ffc5c5c5ff222222ff080808ff000000ff6d6d6dff6b6b6bff1a1a1afff0f0"
     "f0ffc0c0c0ffcbcbcbffd6d6d6ff252525ff656565ff8a8a8affacacacff2c2c2cff9f9f9fffaaaaaaff070707ffd1d1d1",
     "0000000d4948445200000005000000050800000001df0349af0000002d4944415478da6350669cc2a47391f92ccb5d86ec0fa7"
     "19cd19981e77324f8a60391afbec472ec335d5d4ae3500e4740e2936f46f73z0449454e44ae426082"},
    {"grey, 16 bits, key", 2, "003c3c3cff444444ff7e7e7eff333333ff050505003c3c3c",
     "0000000d49484452000000020000000310z04cc115d1e0000000274524e533c69310e6d3b000000174944415478da63b0c9747"
     "9c958a7b6751a537b29e75a0028420577144d2a74z0449454e44ae426082"},
    {"colours, 8 bits, all filters", 3,
     "ffeef95aff60e561ff43d6c4ff3bcad7ff6c008aff9b0a6bff5fc933ff154a6dffe28404ffa897c5ff25262eff6a7c07ffbcbe"
     "e8ff41f745ffc55d4e",
     "0000000d49484452000000030000000508020000000f13c1f5000000054944415478da0132002075957c0000003849444154cd"
     "ff00eef95a60e56143d6c4013bcad73136b32f0ae10224ff5ca94ae3477a99037933acc7b695e727ee041427231cd1175b6620"
     "622f1637f0e92330z0449454e44ae426082"},
    {"colours, 8 bits, key", 2, "009f747fff615164ffc6f728009f747f",
     "0000000d4948445200000002000000020802000000fdd49a730000000674524e53009f0074007faeb21b710000001949444154"
     "7801010e00f1ff009f747f61516401c6f728d97d572ac3063c0ba0c252z0449454e44ae426082"},
    {"colours, 16 bits, key", 2, "00371382ff7ac883ffd7fb9600371382",
     "0000000d4948445200000002000000021002000000ad4446300000000674524e5337d513d082a6cfe9f1f80000002349444154"
     "78da6330bf2a7ca1695995c089c6e6c98cd74b7fa74cb34d4890c8799309009ebf0c19de0df8d2z0449454e44ae426082"},
    {"palette, 1 bit", 9,
     "ff45f132ff2515d0ff45f132ff2515d0ff2515d0ff45f132ff45f132ff45f132ff2515d0ff2515d0ff2515d0ff45f132ff45f1"
     "32ff45f132ff2515d0ff45f132ff2515d0ff2515d0",
     "0000000d4948445200000009000000020103000000b098649000000006504c544545f1322515d05a64db1c0000000e49444154"
     "78da638868603cba1b000606025a6e042872z0449454e44ae426082"},
    {"palette, 2 bits, alphas", 5,
     "ffa90967c63b2d58ffa90967c63b2d58ffa90967ffa90967c63b2d58c63b2d58c63b2d58c63b2d58",
     "0000000d4948445200000005000000020203000000ed04fece0000000c504c54453b2d5883b025d51e3ba90967cd86af640000"
     "000374524e53c6eae11cc8e7a40000000e4944415478da63387380f180030008c5028e244acceez0449454e44ae426082"},
    {"palette, 4 bits", 3, "ffe244f9ffff229fffe244f9ffaf5f57ff67b7d5ffaf5f57ffaf5f57ff56d6bfffff229f",
     "0000000d4948445200000003000000030403000000a406a88c0000000f504c544567b7d556d6bfaf5f57e244f9ff229f01a59a"
     "6c000000114944415478da633031605460606254000003c700a9b0c78679z0449454e44ae426082"},
    {"palette, 8 bits, alphas, interlaced", 3,
     "8c8db834ffe6bb866d5698108c8db8348c8db8348c8db834d339c4c56d569810f120d6d4",
     "0000000d494844520000000300000003080300000116f1751b0000000f504c544520d6d48db83456981039c4c5e6bb86c215ed"
     "e80000000474524e53f18c6dd3aaef6338000000174944415478da63606464626266606661f9c7c0c8c8080005be0116a740e3"
     "57z0449454e44ae426082"},
    {"grey and alpha, 8 bits", 2,
     "fcc3c3c3e7a1a1a126a4a4a48e1010108f1515159eb5b5b545090909e8cfcfcf0c61616179888888",
     "0000000d4948445200000002000000050804000000c5baf517000000224944415478da6338fc67e173c6256a39194c85994b05"
     "98ffff2b28678938be732200971e0bccb6a3ff38z0449454e44ae426082"},
    {"grey and alpha, 16 bits", 2, "18484848e43b3b3bbc37373765272727",
     "0000000d4948445200000002000000021004000000882f19ec0000001b4944415478da63f05090e0b0e67c3293d1fce29e231f"
     "a4562e020031990728dc87da7ez0449454e44ae426082"},
    {"colours and alpha, 8 bits, interlaced", 3,
     "5b66f3835b05f11251738bb1d2c9722ce8c642e6af6403c032eda768c73f6d7c862c9ea4",
     "0000000d4948445200000003000000030806000001212f8529000000334944415478da6348fbdc1ccd58dcbd3190e9edf20c23"
     "9d794bda98593f0a45b358d564e5309c2cd2b974cce9d98b14e603eb01720b1238d19eea9ez0449454e44ae426082"},
    {"colours and alpha, 16 bits", 2, "1308b22a8ce1afd720f90e6fabdb1158",
     "0000000d49484452000000020000000210060000002226d1670000002d4944415478da012200ddff000803b26f2a611303e1bd"
     "af21d7c38cee01f9920e8b6fc420cce20b036ee9c18bb9f35f0fe03e996603z0449454e44ae426082"},
};

constexpr MadeFile bmpFiles[] = {
    {"1 bit", 3, "ff102030fffedcbafffedcbafffedcbaff102030fffedcba",
     "424d46z073e000000280000000300000002000000010001z1930201000badcfe00a000000060000000"},
    {"4 bits, few colours", 3, "ff7f0001ff102030fffedcbaff00ff80ff00ff80fffedcba",
     "424d4ez0746000000280000000300000002000000010004z1104z0730201000badcfe0080ff000001007f00221000003010000"
     "0"},
    {"8 bits, few colours, top-down", 3, "ff7f0001ff102030fffedcbaff00ff80ff00ff80fffedcba",
     "424d4ez07460000002800000003000000feffffff010008z1104z0730201000badcfe0080ff000001007f00030001000202010"
     "0"},
    {"1 bit, old head", 3, "ff102030fffedcbafffedcbafffedcbaff102030fffedcba",
     "424d28z07200000000c0000000300020001000100302010badcfea000000060000000"},
    {"24 bits, old head", 2, "ff123456ffabcdefff0000ffff00ff00",
     "424d2az071a0000000c0000000200020001001800ff000000ff000000563412efcdab0000"},
    {"24 bits", 2, "ff123456ffabcdefff0000ffff00ff00",
     "424d46z0736000000280000000200000002000000010018z19ff000000ff000000563412efcdab0000"},
    {"32 bits, no alpha at all", 2, "ff123456ffabcdefff0000ffff00ff00",
     "424d46z0736000000280000000200000002000000010020z19ffz04ff000056341200efcdab00"},
    {"32 bits with alpha, top-down", 2, "8012345600abcdef",
     "424d3ez07360000002800000002000000ffffffff010020z1956341280efcdab00"},
    {"16 bits", 2, "ff218ca5ffffb5e6", "424d3az0736000000280000000200000001000000010010z193412dcfe"},
    {"16 bits, masks", 2, "ff1045a5ffffdbe6",
     "424d46z07420000002800000002000000010000000100100003z18f80000e00700001f0000003412dcfe"},
    {"16 bits, masks with alpha in the head", 2, "11223344ffeeddcc",
     "424d7ez077a0000006c00000002000000010000000100100003z180f0000f00000000fz04f0z363412dcfe"},
    {"32 bits, masks in the head", 2, "12785634fe98badc",
     "424d4ez07460000003800000002000000010000000100200003z17ffz04ffz04ffz04ff7856341298badcfe"},
    {"32 bits, alpha mask behind the head", 2, "0049459efffbcba6",
     "424d4ez07460000002800000002000000010000000100200006z19f03f00fc0f00ff03z05c07856341298badcfe"},
    {"8 bits, packed", 6,
     "fffedcbaff102030ff102030ff102030ff102030ff102030ff7f0001ff102030fffedcbaff102030ff7f0001ff7f0001ff00ff"
     "80ff00ff80ff00ff80ff00ff80fffedcbafffedcba",
     "424d5ez07460000002800000006000000030000000100080001z0f04z0730201000badcfe0080ff000001007f0004020201000"
     "0000303000100000201000203000001010001"},
    {"4 bits, packed", 6,
     "ff102030ff7f0001ff102030fffedcbaff00ff80ff7f0001ff102030ff102030ff102030ff102030ff102030ff102030fffedc"
     "baff00ff80fffedcbaff00ff80fffedcbaff00ff80",
     "424d56z07460000002800000006000000030000000100040002z0f04z0730201000badcfe0080ff000001007f0006120000000"
     "201010005301230000001"},
};

constexpr struct {
    char const* what;
    std::string_view hex;
} refusedFiles[] = {
    {"another sum of the bytes",
     "89504e470d0a1a0a0000000d49484452000000020000000208z0457dd52f80000000e4944415478da6370ffc0e833150006590"
     "21b593f111bz0449454e44ae426082"},
    {"no sum of the bytes",
     "89504e470d0a1a0a0000000d49484452000000020000000208z0457dd52f80000000a4944415478da63f8a3c358980f00069f2"
     "1dez0449454e44ae426082"},
    {"a byte too many",
     "89504e470d0a1a0a0000000d49484452000000020000000208z0457dd52f80000000f4944415478da639812c2d82cc3000006e"
     "801892158f9acz0449454e44ae426082"},
    {"a byte too few",
     "89504e470d0a1a0a0000000d49484452000000020000000208z0457dd52f80000000d4944415478da63389cc5381b0004ec01c"
     "a07d34b03z0449454e44ae426082"},
    {"a picture of 1 GiB in few bytes",
     "89504e470d0a1a0a0000000d49484452000040000000400008z048ca34f580000000e4944415478da63e8fec79896030007f00"
     "25d2cae6e0dz0449454e44ae426082"},
    {"an unknown filter",
     "89504e470d0a1a0a0000000d49484452000000020000000208z0457dd52f80000000e4944415478da63b562623dc8070002ed0"
     "11609f56334z0449454e44ae426082"},
    {"a necessary chunk that nobody knows",
     "89504e470d0a1a0a0000000d49484452000000020000000208z0457dd52f8z0441424344db1720a50000000e4944415478da63"
     "103bcb68b7170004e401e0fe8d808az0449454e44ae426082"},
    {"no palette",
     "89504e470d0a1a0a0000000d49484452000000020000000208030000004568fd160000000e4944415478da6360666664fa0f00"
     "01270109b9b9b9cdz0449454e44ae426082"},
    {"1 GiB of pixels in an end mark",
     "424d40z073e00000028z04400000004000000100080001z0f02z0730201000badcfe000001"},
    {"1 GiB of half bytes in an end mark",
     "424d40z073e00000028z04400000004000000100040002z0f02z0730201000badcfe000001"},
    {"a run beyond the row",
     "424d42z073e0000002800000004000000040000000100080001z0f02z0730201000badcfe0005010001"},
    {"a run beyond the picture",
     "424d46z073e0000002800000004000000040000000100080001z0f02z0730201000badcfe000002000401010001"},
    {"a move beyond the picture",
     "424d44z073e0000002800000004000000040000000100080001z0f02z0730201000badcfe00000200050001"},
    {"no end", "424d42z073e0000002800000004000000040000000100080001z0f02z0730201000badcfe0004010000"},
    {"stored pixels that end",
     "424d42z073e0000002800000004000000040000000100080001z0f02z0730201000badcfe0000040101"},
    {"an unknown depth", "424d7ez073e000000280000000400000004000000010002z1102z0730201000badcfez41"},
    {"a packing for another depth",
     "424d7ez073e0000002800000004000000040000000100040001z0f02z0730201000badcfez41"},
    {"a size beyond all numbers", "424d7ez073e00000028z068001000000010008z1102z0730201000badcfez41"},
    {"pixels behind the end", "424d7ez0740420f00280000000400000004000000010008z1102z0730201000badcfez41"},
};

std::uint32_t HexNumber(std::string_view digits) {
    std::uint32_t number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number, 16);
    return number;
}

std::string FromHex(std::string_view hex) {
    std::string bytes;
    for (std::size_t i = 0; i < hex.size(); i += 2) {
        if (hex[i] == 'z') {
            bytes.append(HexNumber(hex.substr(++i, 2)), '\0');
        } else {
            bytes += static_cast<char>(HexNumber(hex.substr(i, 2)));
        }
    }
    return bytes;
}

void ExpectPicture(HBITMAP const& found, MadeFile const& made) {
    SCOPED_TRACE(made.what);
    ASSERT_TRUE(found);
    EXPECT_TRUE(found->IsTopDown());
    ASSERT_EQ(static_cast<std::size_t>(found->GetWidth()), made.width);
    ASSERT_EQ(found->GetCount() * 8, made.pixels.size());
    for (std::size_t i = 0; i < found->GetCount(); ++i)
        EXPECT_EQ(found->GetBits()[i], HexNumber(made.pixels.substr(i * 8, 8))) << "pixel " << i;
}

TEST(BitmapPng, EveryKindIsReadAndNoFaultIsOverlooked) {
    for (MadeFile const& made : pngFiles) {
        std::string file = std::string(pngSignature) + FromHex(made.hex);
        ExpectPicture(ReadPng(file), made);
        EXPECT_EQ(PngExtent(std::string_view(file).substr(0, bitmapHeadSize), 5000), 5000u) << made.what;
        for (std::size_t size = 0; size < file.size(); ++size)
            EXPECT_FALSE(ReadPng(std::string_view(file).substr(0, size))) << made.what << ' ' << size;
        for (std::size_t bit = 0; bit < file.size() * 8; ++bit) {
            auto const flip = static_cast<char>(1 << bit % 8);
            file[bit / 8] ^= flip;
            EXPECT_FALSE(ReadPng(file)) << made.what << " bit " << bit;
            file[bit / 8] ^= flip;
        }
    }
}

TEST(BitmapBmp, EveryKindIsReadAndNoMoreThanItsExtent) {
    for (MadeFile const& made : bmpFiles) {
        std::string file = FromHex(made.hex);
        ExpectPicture(ReadBmp(file), made);
        constexpr std::size_t padding = 3;  // which need not be there
        for (std::size_t size = 0; size + padding < file.size(); ++size)
            EXPECT_FALSE(ReadBmp(std::string_view(file).substr(0, size))) << made.what << ' ' << size;
        // A file that goes on and on.
        file.resize(1000, '?');
        auto const extent =
            BmpExtent(std::string_view(file).substr(0, bitmapHeadSize), std::uint64_t{1} << 31);
        ASSERT_LT(extent, file.size()) << made.what;
        ExpectPicture(ReadBmp(std::string_view(file).substr(0, extent)), made);
    }
}

TEST(BitmapFiles, DamageAndLiesAreRefused) {
    for (auto const& [what, hex] : refusedFiles) {
        std::string const file = FromHex(hex);
        EXPECT_FALSE(ReadPng(file) || ReadBmp(file)) << what;
        bool const isLarge = std::string_view(what).find("GiB") != std::string_view::npos;
        bool const isRead = BmpExtent(file, file.size()) + PngExtent(file, file.size()) > 0;
        EXPECT_FALSE(isLarge && isRead) << what;
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
    EXPECT_EQ(std::tuple(record.bmType, record.bmWidth, record.bmHeight, record.bmWidthBytes, record.bmPlanes,
                         record.bmBitsPixel),
              std::tuple(0, 3, 2, 12, 1, 32));
    EXPECT_EQ(record.bmBits, bitmap.GetSafeHandle()->GetBits());
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
    PutFile(folder.File("bitmaps/7.bmp"), FromHex(bmpFiles[5].hex));
    PutFile(folder.File("bitmaps/8.png"), "no picture");
    HINSTANCE const module = TovLoadResourceModule(folder.path().c_str());
    ASSERT_TRUE(module);
    EXPECT_TRUE(bitmap.LoadBitmap(module, 7));
    EXPECT_EQ(bitmap.GetSafeHandle()->GetBits()[0], 0xFF123456u);
    EXPECT_FALSE(bitmap.LoadBitmap(module, 8));
    EXPECT_FALSE(bitmap.GetSafeHandle());
    EXPECT_FALSE(bitmap.LoadBitmap(nullptr, 7));
    CTovDib dib;
    EXPECT_TRUE(dib.Create(nullptr, module, 7, 0));
    EXPECT_FALSE(dib.IsTopDown());
    EXPECT_EQ(bitmap.IsKindOf(&CBitmap::classCBitmap), 1);
    EXPECT_EQ(bitmap.IsKindOf(&CTovBitmap::classCTovBitmap), 1);
}

// A device of one row.
struct RowDevice : CDC {
    std::vector<std::uint32_t> pixels{0x112233, 7, 0x11112233, 0x112233};
    int StretchDIBits(int x, int, int width, int, int, int, int, int, std::uint32_t const* bits,
                      BITMAPINFOHEADER const&, std::uint32_t) override {
        std::copy_n(bits, width, pixels.begin() + x);
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
    EXPECT_EQ(device.pixels, std::vector<std::uint32_t>({0xFF0000, 7, 0x11FF0000, 0x112233}));
    record.bmBitsPixel = 1;
    EXPECT_FALSE(CTovBitmap::ChangeBitmapColorDC(&device, &record, 7, 8));
    EXPECT_FALSE(CTovBitmap::ChangeBitmapColorDC(nullptr, &record, 7, 8) ||
                 CTovBitmap::ChangeBitmapColorDC(&device, nullptr, 7, 8));
}

}  // namespace
}  // namespace tov::test
