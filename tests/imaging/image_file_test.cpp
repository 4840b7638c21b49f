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
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <random>
#include <span>
#include <string>
#include <vector>

namespace tov::test {
namespace {

using namespace std::string_view_literals;

std::span<std::uint32_t> Pixels(HBITMAP const& bitmap) {
    return {bitmap->GetBits(), bitmap->GetCount()};
}

int Part(std::uint32_t pixel, int shift) {
    return static_cast<int>(pixel >> shift & 255);
}

// Patches of colours, few enough for a palette; with alpha bytes of all kinds, or none that matter: 255 in
// rows that run top-down, 0 in the others.
HBITMAP Patches(bool hasAlpha, int rows, unsigned width) {
    int const columns = static_cast<int>(width);
    HBITMAP const made = CTovPixels::Create(columns, -std::abs(rows));
    for (unsigned i = 0; std::uint32_t & pixel : Pixels(made)) {
        unsigned const patch = i % width / 8 + i / width / 8 * (width / 8);
        pixel = (patch * 2654435761u & 0xFFFFFF) | (hasAlpha ? patch * 5 % 256 : rows < 0 ? 255u : 0u) << 24;
        ++i;
    }
    HBITMAP const turned = CTovPixels::Create(columns, rows);
    turned->CopyFrom(*made);
    return turned;
}

struct Kind {
    enmImageFormat format;
    int depth, alphaDepth;  // as files tell them
    double error;           // the mean of all differences
};

constexpr Kind kinds[] = {
    {eImageFormatBmp, 24, 32, 0},   {eImageFormatIco, 24, 32, 0},  {eImageFormatPng, 24, 32, 0},
    {eImageFormatTiff, 24, 32, 0},  {eImageFormatPpm, 24, 24, 1},  {eImageFormatPpmRaw, 24, 24, 1},
    {eImageFormatJpeg, 24, 24, 9},  {eImageFormatJ2k, 24, 32, 16}, {eImageFormatJp2, 24, 32, 16},
    {eImageFormatWebp, 24, 32, 14}, {eImageFormatGif, 8, 8, 0},    {eImageFormatPgm, 8, 8, 1},
    {eImageFormatPgmRaw, 8, 8, 1},  {eImageFormatPbm, 1, 1, 90},   {eImageFormatPbmRaw, 1, 1, 90},
};

constexpr int height = 64;

// One kind takes squares alone.
int WidthOf(Kind const& kind) {
    return kind.format == eImageFormatIco ? height : 96;
}

HBITMAP PatchesFor(Kind const& kind, bool hasAlpha, int rows = -height) {
    return Patches(hasAlpha, rows, static_cast<unsigned>(WidthOf(kind)));
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

// What a file of a kind can hold of a picture.
std::uint32_t Held(Kind const& kind, std::uint32_t pixel) {
    int const alpha = Part(pixel, 24);
    if (kind.alphaDepth == 32) return pixel;
    if (kind.format == eImageFormatGif) return alpha < 128 ? 0u : pixel | 0xFF000000;
    int parts[3];
    for (int i = 0; i < 3; ++i)
        parts[i] = (Part(pixel, i * 8) * alpha + 255 * (255 - alpha)) / 255;
    double const grey = 0.0722 * parts[0] + 0.7152 * parts[1] + 0.2126 * parts[2];
    for (int i = 0; i < 3 && kind.depth <= 8; ++i)
        parts[i] = static_cast<int>(grey + 0.5);
    return 0xFF000000 | static_cast<std::uint32_t>(parts[2] << 16 | parts[1] << 8 | parts[0]);
}

double MeanError(Kind const& kind, HBITMAP const& expected, HBITMAP const& found) {
    double sum = 0;
    for (std::size_t i = 0; i < expected->GetCount(); ++i) {
        std::uint32_t const a = Held(kind, Pixels(expected)[i]), b = Pixels(found)[i];
        // What cannot be seen has no colour.
        for (int shift = a >> 24 == 0 ? 24 : 0; shift < 32; shift += 8)
            sum += std::abs(Part(a, shift) - Part(b, shift));
    }
    return sum / 4 / static_cast<double>(expected->GetCount());
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
            EXPECT_LE(MeanError(kind, picture, loaded), kind.error);
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

std::string Number(int value, int bytes, bool isBigEndian) {
    std::string text;
    for (int i = 0; i < bytes; ++i)
        text += static_cast<char>(value >> 8 * (isBigEndian ? bytes - 1 - i : i));
    return text;
}

// Puts another size in the place of every pair of numbers that tells the true one.
std::string Lie(std::string bytes, int width, int wanted) {
    auto const replace = [&](std::string const& from, std::string const& to) {
        for (std::size_t at = bytes.find(from); at != bytes.npos; at = bytes.find(from, at + to.size()))
            bytes = bytes.substr(0, at) + to + bytes.substr(at + from.size());
    };
    auto const text = [](int w, int h) { return std::to_string(w) + ' ' + std::to_string(h); };
    replace(text(width, height), text(wanted, wanted));
    for (bool const isBig : {false, true}) {
        for (int const size : {2, 4}) {
            std::string const w = Number(width, size, isBig), h = Number(height, size, isBig);
            std::string const more = Number(wanted, size, isBig);
            replace(w + h, more + more);
            replace(h + w, more + more);
        }
    }
    // The picture of an icon, with its mask below.
    replace(Number(width, 4, false) + Number(height * 2, 4, false),
            Number(wanted, 4, false) + Number(wanted * 2, 4, false));
    // The entries of a directory: tag, type 3 or 4, one number.
    for (auto const& [tag, value] : {std::pair(0x100, width), {0x101, height}}) {
        for (int const type : {3, 4}) {
            std::string const entry = Number(tag, 2, false) + Number(type, 2, false) + Number(1, 4, false);
            replace(entry + Number(value, 4, false), entry + Number(wanted, 4, false));
        }
    }
    return bytes;
}

TEST_P(ImageFile, LiesAboutTheSizeCostNothing) {
    Kind const kind = GetParam();
    ASSERT_TRUE(CTovBitmap::SaveBitmap(PatchesFor(kind, false), kind.format, m_path.c_str()));
    std::string const whole = GetFile(m_path);
    for (int const wanted : {1500, 60000}) {
        std::string const lie = Lie(whole, WidthOf(kind), wanted);
        ASSERT_FALSE(lie == whole);
        PutFile(m_path, lie);
        // In a process of its own, whose memory and that of its children nobody else has used.
        EXPECT_EQ(EndChild(StartChild([&] {
                      rusage own{}, children{};
                      bool const isLoaded = CTovBitmap().LoadBitmap(m_path.c_str());
                      ::getrusage(RUSAGE_SELF, &own);
                      ::getrusage(RUSAGE_CHILDREN, &children);
                      constexpr long most = 1536 * 1024;  // KiB; the larger picture has 10 GiB
                      return !isLoaded && own.ru_maxrss < most && children.ru_maxrss < most;
                  })),
                  0)
            << wanted;
    }
}

struct ImageModule : ImageFile {};

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
    EXPECT_TRUE(CTovBitmap::SaveBitmap(&device, CTovPixels::Create(1, 1), eImageFormatPng, m_path.c_str()));
    EXPECT_FALSE(CTovBitmap::SaveBitmap(&device, nullptr, eImageFormatPng, m_path.c_str()));
    EXPECT_FALSE(CTovBitmap::SaveBitmap(nullptr, CTovPixels::Create(1, 1), eImageFormatPng, m_path.c_str()));
    for (char const* const path : {"", static_cast<char const*>(nullptr), "/proc/none/x"})
        EXPECT_FALSE(CTovBitmap::SaveBitmap(Patches(false, 8, 8), eImageFormatPng, path));
}

TEST_F(ImageModule, MayCrashAndLieWithoutHarm) {
    TovSetImageModule(Fake().c_str());
    std::signal(SIGABRT, [](int) { std::ofstream("/dev/stdout") << "the handler of the host ran\n"; });
    for (char const* const order : {"crash", "lie", "huge", "short", "none", "scribble", "fine"}) {
        PutFile(m_path, order);
        bool const isFine = order == "fine"sv;
        CTovBitmap bitmap;
        bitmap.CreateBitmap(1, 1);
        EXPECT_EQ(bitmap.LoadBitmap(m_path.c_str()), isFine) << order;
        EXPECT_EQ(bitmap.GetWidth(), bitmap.GetSafeHandle() ? 2 : 0) << order;
        int size[3] = {9, 9, 9};
        EXPECT_EQ(CTovBitmap::GetImageSize(m_path.c_str(), &size[0], &size[1], &size[2]), isFine) << order;
        EXPECT_TRUE(size[0] == 3 * isFine && size[1] == 4 * isFine && size[2] == 5 * isFine) << order;
    }
    std::signal(SIGABRT, SIG_DFL);
    EXPECT_FALSE(std::filesystem::file_size(m_path + ".scribble"));
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
    for (std::string const& path : {std::string(), m_folder.path().string(), m_folder.File("none")}) {
        CTovBitmap bitmap;
        EXPECT_TRUE(bitmap.CreateBitmap(1, 1));
        EXPECT_FALSE(bitmap.LoadBitmap(path.c_str()));
        EXPECT_FALSE(bitmap.GetSafeHandle());
    }
    EXPECT_FALSE(CTovBitmap().LoadBitmap(nullptr));
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
