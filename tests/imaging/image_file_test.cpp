// Image files from outside: what is written is read again, what is damaged is refused, and neither costs the
// program more than it was told.
#include "support/child.h"
#include "support/files.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <tov310/bitmap.h>
#include <tov310/dib.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <span>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

namespace tov::test {
namespace {

using namespace std::string_view_literals;

std::span<std::uint32_t> Pixels(HBITMAP const& bitmap) {
    return {bitmap->GetBits(), bitmap->GetCount()};
}

// Patches of colours, few enough for a palette; with alpha bytes of all kinds, or none that matter: 255 in
// rows that run top-down, 0 in the others.
HBITMAP Patches(bool hasAlpha, int rows, unsigned width, bool isGrey = false) {
    int const columns = static_cast<int>(width);
    HBITMAP const made = CTovPixels::Create(columns, -std::abs(rows));
    for (unsigned i = 0; std::uint32_t & pixel : Pixels(made)) {
        unsigned const patch = i % width / 8 + i / width / 8 * (width / 8), mixed = patch * 2654435761u;
        pixel = (isGrey ? mixed % 256 * 0x010101 : mixed & 0xFFFFFF) | (hasAlpha   ? patch * 5 % 256
                                                                        : rows < 0 ? 255u
                                                                                   : 0u)
                                                                           << 24;
        ++i;
    }
    HBITMAP const turned = CTovPixels::Create(columns, rows);
    turned->CopyFrom(*made);
    return turned;
}

struct Kind {
    enmImageFormat format;
    int depth, alphaDepth;  // as files tell them
    bool isExact;           // as far as it can hold a picture at all
};

constexpr Kind kinds[] = {
    {eImageFormatBmp, 24, 32, true},   {eImageFormatIco, 24, 32, true},  {eImageFormatPng, 24, 32, true},
    {eImageFormatTiff, 24, 32, true},  {eImageFormatPpm, 24, 24, true},  {eImageFormatPpmRaw, 24, 24, true},
    {eImageFormatJpeg, 24, 24, false}, {eImageFormatJ2k, 24, 32, false}, {eImageFormatJp2, 24, 32, false},
    {eImageFormatWebp, 24, 32, false}, {eImageFormatGif, 8, 8, true},    {eImageFormatPgm, 8, 8, true},
    {eImageFormatPgmRaw, 8, 8, true},  {eImageFormatPbm, 1, 1, false},   {eImageFormatPbmRaw, 1, 1, false},
};

constexpr int height = 64;

// One kind takes squares alone.
int WidthOf(Kind const& kind) {
    return kind.format == eImageFormatIco ? height : 96;
}

HBITMAP PatchesFor(Kind const& kind, bool hasAlpha, int rows = -height) {
    bool const isGrey = kind.depth <= 8 && kind.format != eImageFormatGif;
    return Patches(hasAlpha, rows, static_cast<unsigned>(WidthOf(kind)), isGrey);
}

struct ImageFile : testing::TestWithParam<Kind> {
    void SetUp() override {
        if (!std::filesystem::exists(TOV_TEST_LIBRARY_DIR "/Dorn200.so"))
            GTEST_SKIP() << "the library was built without FreeImage";
    }
    void TearDown() override { TovSetImageModule(nullptr); }

    TemporaryFolder m_folder;
    std::string const m_path = m_folder.File("picture \xE5\xAD\x97");
};

// One colour over white; the alpha itself where a file of the kind holds it.
int Seen(Kind const& kind, std::uint32_t pixel, int shift) {
    int alpha = static_cast<int>(pixel >> 24);
    if (kind.format == eImageFormatGif) alpha = alpha < 128 ? 0 : 255;
    if (shift == 24) return kind.alphaDepth == 32 || kind.format == eImageFormatGif ? alpha : 255;
    return (static_cast<int>(pixel >> shift & 255) * alpha + 255 * (255 - alpha)) / 255;
}

// The greatest difference of the means in squares; of single pixels where the kind is exact.
double Difference(Kind const& kind, HBITMAP const& expected, HBITMAP const& found) {
    int const side = kind.isExact ? 1 : 32;
    double most = 0;
    for (int y = 0; y < height; y += side) {
        for (int x = 0; x < WidthOf(kind); x += side) {
            for (int shift = 0; shift < 32; shift += 8) {
                int sum = 0;
                for (int i = 0; i < side * side; ++i) {
                    int const column = x + i % side, row = y + i / side;
                    sum += Seen(kind, expected->GetRow(row)[column], shift) -
                           Seen(kind, found->GetRow(row)[column], shift);
                }
                most = std::max(most, std::abs(sum / double(side * side)));
            }
        }
    }
    return most;
}

TEST_P(ImageFile, HoldsWhatItsKindCan) {
    Kind const kind = GetParam();
    for (bool const hasAlpha : {false, true}) {
        HBITMAP const picture = PatchesFor(kind, hasAlpha);
        for (int const rows : {-height, height}) {
            ASSERT_TRUE(
                CTovBitmap::SaveBitmap(PatchesFor(kind, hasAlpha, rows), kind.format, m_path.c_str()));
            int size[3] = {};
            EXPECT_TRUE(CTovBitmap::GetImageSize(m_path.c_str(), &size[0], &size[1], &size[2]));
            EXPECT_TRUE(size[0] == WidthOf(kind) && size[1] == height &&
                        size[2] == (hasAlpha ? kind.alphaDepth : kind.depth))
                << size[0] << 'x' << size[1] << 'x' << size[2];
            CTovBitmap loaded;
            ASSERT_TRUE(loaded.LoadBitmap(m_path.c_str()));
            ASSERT_TRUE(loaded.GetWidth() == WidthOf(kind) && loaded.GetHeight() == height &&
                        loaded.GetXOffset() == WidthOf(kind) * 4);
            EXPECT_TRUE(loaded.GetSafeHandle()->IsTopDown());
            EXPECT_LE(Difference(kind, picture, loaded), kind.isExact ? 1 : 12);
        }
    }
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(m_folder.path()), {}), 1);
}

TEST_P(ImageFile, CutShortIsRefused) {
    HBITMAP const picture = PatchesFor(GetParam(), false);
    std::mt19937 random(1);
    for (std::uint32_t& pixel : Pixels(picture))
        pixel ^= static_cast<std::uint32_t>(random()) & 0x1F1F1F;
    ASSERT_TRUE(CTovBitmap::SaveBitmap(picture, GetParam().format, m_path.c_str()));
    std::string const whole = GetFile(m_path);
    // Behind the pixels of an icon stands a mask, which nobody needs.
    std::size_t const mask = GetParam().format == eImageFormatIco ? height * height / 8 : 0;
    for (std::size_t size = whole.size() - mask - 1; size > 0; size = (size - 1) / 1024 * 1024) {
        PutFile(m_path, std::string_view(whole).substr(0, size));
        EXPECT_FALSE(CTovBitmap().LoadBitmap(m_path.c_str())) << size << " of " << whole.size();
    }
}

std::string FromHex(std::string_view hex) {
    std::string bytes;
    for (std::size_t i = 0; i < hex.size(); i += 2)
        bytes += static_cast<char>(std::stoi(std::string(hex.substr(i, 2)), nullptr, 16));
    return bytes;
}

struct ImageModule : ImageFile {};

// Square pictures that would take gigabytes, of which the files hold nothing.
constexpr struct {
    char const* what;
    std::string_view hex;
    int width;
} hugeFiles[] = {
    {"bmp, 60000 x 60000",
     "424d4600000000000000360000002800000060ea000060ea00000100180000000000000000000000000000000000000"
     "000000000000000000000000000000000000000000000",
     60000},
    {"png, 60000 x 60000",
     "89504e470d0a1a0a0000000d494844520000ea600000ea6008020000000fb0e2150000000c49444154789c6360a03d0"
     "0000064000186643c350000000049454e44ae426082",
     60000},
    {"gif, 60000 x 60000", "47494638396160ea60ea8000000000000000002c0000000060ea60ea0002024401003b", 60000},
    {"tiff, 60000 x 60000",
     "49492a000a00000000000900000104000100000060ea0000010104000100000060ea000002010300010000000800000"
     "00301030001000000010000000601030001000000010000001101040001000000080000001501030001000000010000"
     "00160104000100000060ea000017010400010000000100000000000000",
     60000},
    {"jpeg, 60000 x 60000",
     "ffd8ffdb004300010101010101010101010101010101010101010101010101010101010101010101010101010101010"
     "10101010101010101010101010101010101010101010101ffc0000b08ea60ea6001011100ffc4001400010000000000"
     "0000000000000000000000ffc40014100100000000000000000000000000000000ffda0008010100003f0000000000f"
     "fd9",
     60000},
    {"bmp, 16384 x 16384 in an end mark",
     "424d3c000000000000003a0000002800000000400000004000000100080001000000000000000000000000000000010"
     "0000000000000000000000001",
     16384},
};

// The thread sanitizer keeps some notes on every byte, which count as the process's.
#ifdef __SANITIZE_THREAD__
constexpr long withNotes = 8;
#else
constexpr long withNotes = 1;
#endif

// In a process of its own, whose memory and that of its children nobody else has used.
void ExpectCheapRefusal(std::string const& path, long mostOwn, long mostApart) {
    pid_t const child = StartChild([&] {
        rusage before{}, own{}, apart{};
        ::getrusage(RUSAGE_SELF, &before);
        bool const isLoaded = CTovBitmap().LoadBitmap(path.c_str());
        ::getrusage(RUSAGE_SELF, &own);
        ::getrusage(RUSAGE_CHILDREN, &apart);
        return !isLoaded && own.ru_maxrss - before.ru_maxrss < withNotes * mostOwn &&
               apart.ru_maxrss - before.ru_maxrss < withNotes * mostApart;
    });
    EXPECT_EQ(EndChild(child), 0);
}

TEST_F(ImageModule, HugePicturesInSmallFilesCostNothing) {
    constexpr long most = 64 * 1024;  // KiB
    for (auto const& [what, hex, width] : hugeFiles) {
        SCOPED_TRACE(what);
        PutFile(m_path, FromHex(hex));
        int told = 0;
        EXPECT_TRUE(CTovBitmap::GetImageSize(m_path.c_str(), &told, nullptr, nullptr));
        EXPECT_EQ(told, width);
        ExpectCheapRefusal(m_path, most, most);
    }
    // 4096 x 4096 bits in one shade, and only the sum over all of them is wrong.
    std::string const damaged =
        FromHex(
            "89504e470d0a1a0a0000000d4948445200001000000010000100000000dad819ba0000080b49444154"
            "78daedc13101000000c2a0f54f6d0a3fa0") +
        std::string(2036, '\0') + FromHex("be0611e0000037b0b8470000000049454e44ae426082");
    PutFile(m_path, damaged);
    TovSetImageModule("/nowhere/Dorn200.so");
    ExpectCheapRefusal(m_path, 16 * 1024, 256 * 1024);
}

TEST_F(ImageModule, JpegFilesMayBePaddedButNotBroken) {
    ASSERT_TRUE(CTovBitmap::SaveBitmap(Patches(false, -64, 64), eImageFormatJpeg, m_path.c_str()));
    std::string const whole = GetFile(m_path);
    std::size_t const end = whole.size() - 2;
    for (auto const& [at, inserted, isGood] : {std::tuple(end, "\1\2\3"sv, true),
                                               {whole.size(), "\1\2\3"sv, true},
                                               {end / 2, "\xFF\xD3"sv, false},
                                               {std::size_t{2}, "\1\2\3"sv, false}}) {
        PutFile(m_path, whole.substr(0, at) + std::string(inserted) + whole.substr(at));
        EXPECT_EQ(CTovBitmap().LoadBitmap(m_path.c_str()), isGood) << at << " of " << end;
    }
}

TEST_F(ImageModule, SeveralFilesAreReadAtOnce) {
    std::vector<std::jthread> threads;
    for (int const size : {8, 16, 24, 32}) {
        std::string const path = m_path + std::to_string(size);
        auto const format = size % 16 == 0 ? eImageFormatBmp : eImageFormatPng;
        ASSERT_TRUE(
            CTovBitmap::SaveBitmap(Patches(true, -size, static_cast<unsigned>(size)), format, path.c_str()));
        threads.emplace_back([path, size] {
            for (int i = 0; i < 20; ++i) {
                CTovBitmap bitmap;
                EXPECT_TRUE(bitmap.LoadBitmap(path.c_str()));
                EXPECT_TRUE(bitmap.GetWidth() == size && bitmap.GetHeight() == size);
            }
        });
    }
}

std::string Fake() {
    return TOV_TEST_LIBRARY_DIR "/fake_dorn200.so";
}

TEST_F(ImageModule, IsAskedInTheToldOrderAndSavesWholeOrNot) {
    TovSetImageModule(Fake().c_str());
    std::string const link = m_folder.File("link");
    std::filesystem::create_symlink(m_path, link);
    auto const save = [&](int width, int rows, int format) {
        HBITMAP const picture = CTovPixels::Create(width, rows);
        for (std::uint32_t next = 0; std::uint32_t & pixel : Pixels(picture))
            pixel = next++;
        return CTovBitmap::SaveBitmap(picture, static_cast<enmImageFormat>(format), link.c_str());
    };
    EXPECT_TRUE(save(2, 2, 13));
    EXPECT_EQ(GetFile(m_path), "2x2:2,3,0,1, widen unload16 save32 as 13 0");
    EXPECT_TRUE(save(1, -2, 2));
    EXPECT_EQ(GetFile(m_path), "1x2:0,1, save32 as 2 0");
    EXPECT_FALSE(save(1, 2, 99));
    EXPECT_EQ(GetFile(m_path), "1x2:0,1, save32 as 2 0");
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(m_folder.path()), {}), 2);
    CDC device;
    HBITMAP const picture = CTovPixels::Create(1, 1);
    struct {
        HDC dc;
        HBITMAP bitmap;
        char const* path;
        bool isGood;
    } const rows[] = {{&device, picture, m_path.c_str(), true},
                      {nullptr, picture, m_path.c_str(), false},
                      {&device, nullptr, m_path.c_str(), false},
                      {&device, picture, nullptr, false},
                      {&device, picture, "", false},
                      {&device, picture, "/proc/none/x", false}};
    for (auto const& row : rows)
        EXPECT_EQ(CTovBitmap::SaveBitmap(row.dc, row.bitmap, eImageFormatPng, row.path), row.isGood)
            << &row - rows;
}

TEST_F(ImageModule, MayLieWithoutHarm) {
    TovSetImageModule(Fake().c_str());
    for (char const* const order : {"lie", "huge", "none", "fine"}) {
        PutFile(m_path, order);
        bool const isFine = order == "fine"sv;
        CTovBitmap bitmap;
        bitmap.CreateBitmap(1, 1);
        EXPECT_EQ(bitmap.LoadBitmap(m_path.c_str()), isFine) << order;
        EXPECT_EQ(bitmap.GetWidth(), isFine ? 2 : 0) << order;
        int size[3] = {9, 9, 9};
        EXPECT_EQ(CTovBitmap::GetImageSize(m_path.c_str(), &size[0], &size[1], &size[2]), isFine) << order;
        EXPECT_TRUE(size[0] == 3 * isFine && size[1] == 4 * isFine && size[2] == 5 * isFine) << order;
    }
}

TEST_F(ImageModule, IsNotMissedForBmpAndPng) {
    for (enmImageFormat const format : {eImageFormatBmp, eImageFormatPng, eImageFormatJpeg}) {
        TovSetImageModule(nullptr);
        ASSERT_TRUE(CTovBitmap::SaveBitmap(Patches(true, -8, 16), format, m_path.c_str()));
        TovSetImageModule("/nowhere/Dorn200.so");
        CTovBitmap bitmap;
        EXPECT_EQ(bitmap.LoadBitmap(m_path.c_str()), format != eImageFormatJpeg);
        int size[3] = {9, 9, 9};
        EXPECT_FALSE(CTovBitmap::GetImageSize(m_path.c_str(), &size[0], &size[1], &size[2]));
        EXPECT_TRUE(size[0] == 0 && size[1] == 0 && size[2] == 0);
        std::string const before = GetFile(m_path);
        EXPECT_FALSE(CTovBitmap::SaveBitmap(Patches(false, 8, 8), format, m_path.c_str()));
        EXPECT_EQ(GetFile(m_path), before);
    }
    std::string const folder = m_folder.path().string(), none = m_folder.File("none");
    for (char const* const path :
         {"", folder.c_str(), none.c_str(), "/dev/zero", static_cast<char const*>(nullptr)}) {
        CTovBitmap bitmap;
        EXPECT_TRUE(bitmap.CreateBitmap(1, 1));
        EXPECT_FALSE(bitmap.LoadBitmap(path));
        EXPECT_FALSE(bitmap.GetSafeHandle());
    }
}

TEST_F(ImageModule, RealPicturesGoThroughAllThatCanBeDone) {
    std::filesystem::path const folder = "/usr/share/xplanet/images";
    if (!exists(folder)) GTEST_SKIP() << "the package xplanet-images is not installed";
    int count = 0;
    for (auto const& file : std::filesystem::directory_iterator(folder)) {
        std::string const path = file.path().string();
        int size[3] = {};
        if (!CTovBitmap::GetImageSize(path.c_str(), &size[0], &size[1], &size[2])) continue;
        CTovDib picture, turned, again;
        ASSERT_TRUE(picture.Create(nullptr, path.c_str(), count % 2)) << path;
        ASSERT_TRUE(picture.IsEqualSize(size[0], size[1])) << path;
        ASSERT_TRUE(turned.CopyFromDibStretch(&picture, 0.3F, 1.0F, 1, 1, 0x00FF00));
        ASSERT_TRUE(turned.Blend(&picture, 100)) << path;
        ASSERT_TRUE(CTovBitmap::SaveBitmap(turned.GetBitmap(), eImageFormatTiff, m_path.c_str()));
        ASSERT_TRUE(again.Create(nullptr, m_path.c_str(), turned.IsTopDown()));
        ASSERT_TRUE(again.IsEqualSize(&turned));
        std::uint32_t const* const a = turned.GetCrBits();
        bool const isSame = std::equal(a, a + turned.GetBitmap()->GetCount(), again.GetCrBits(),
                                       [](auto p, auto q) { return ((p ^ q) & 0xFFFFFF) == 0; });
        EXPECT_TRUE(isSame) << path;
        // The library's own reader, for files as they came and as FreeImage packs them.
        ASSERT_TRUE(CTovBitmap::SaveBitmap(picture.GetBitmap(), eImageFormatPng, m_path.c_str()));
        for (std::string const& png : {path, m_path}) {
            if (png == path && !path.ends_with(".png")) continue;
            CTovBitmap ours, theirs;
            ASSERT_TRUE(theirs.LoadBitmap(png.c_str()));
            TovSetImageModule("/nowhere/Dorn200.so");
            ASSERT_TRUE(ours.LoadBitmap(png.c_str())) << png;
            TovSetImageModule(nullptr);
            EXPECT_TRUE(std::ranges::equal(Pixels(ours), Pixels(theirs))) << png;
        }
        ++count;
    }
    EXPECT_GT(count, 5);
}

INSTANTIATE_TEST_SUITE_P(Kinds, ImageFile, testing::ValuesIn(kinds),
                         [](auto const& kind) { return std::to_string(kind.param.format); });

}  // namespace
}  // namespace tov::test
