// Image lists, and toolbars out of resource modules.
#include "support/fake_device.h"
#include "support/faults.h"
#include "support/files.h"
#include "support/temporary_folder.h"

#include <tov310/toolbar_bmp.h>

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace tov {
namespace {

// A picture by letters: r, g, b, k (black), w (white); rows of one length divided by '/'.
std::uint32_t PixelOf(char c) {
    return std::map<char, std::uint32_t>{
        {'r', 0xFF0000}, {'g', 0x00FF00}, {'b', 0x0000FF}, {'k', 0}, {'w', 0xFFFFFF}}
        .at(c);
}

HBITMAP Block(std::string const& letters) {
    int const width = static_cast<int>(std::min(letters.find('/'), letters.size()));
    int const height = static_cast<int>(std::ranges::count(letters, '/')) + 1;
    HBITMAP block = CTovPixels::Create(width, -height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            block->GetRow(y)[x] = PixelOf(letters[static_cast<std::size_t>(y * (width + 1) + x)]);
    return block;
}

struct Picture : CBitmap {
    explicit Picture(std::string const& letters) { Attach(Block(letters)); }
};

std::string BmpFile(std::string const& letters) {
    HBITMAP const block = Block(letters);
    std::string file = "BM";
    auto const put = [&](std::size_t value, int bytes) {
        for (int i = 0; i < bytes; ++i)
            file += static_cast<char>(value >> 8 * i & 0xFF);
    };
    for (std::size_t const value :
         {54 + 4 * block->GetCount(), std::size_t{0}, std::size_t{54}, std::size_t{40}})
        put(value, 4);
    put(static_cast<std::size_t>(block->GetWidth()), 4);
    put(static_cast<std::size_t>(block->GetHeight()), 4);
    put(1 | 32 << 16, 4);
    for (int i = 0; i < 6; ++i)
        put(0, 4);
    for (int y = block->GetHeight(); y-- > 0;)
        for (int x = 0; x < block->GetWidth(); ++x)
            put(block->GetRow(y)[x], 4);
    return file;
}

// A module on disk.
class Resources {
 public:
    explicit Resources(std::map<std::string, std::string> const& files) {
        for (auto const& [name, bytes] : files) {
            std::filesystem::create_directories((m_folder.path() / name).parent_path());
            test::PutFile(m_folder.path() / name, bytes);
        }
        test::PutFile(m_folder.path() / "strings.json", "{}");
        module = TovLoadResourceModule(m_folder.path().c_str());
    }
    HINSTANCE module = nullptr;

 private:
    test::TemporaryFolder m_folder;
};

// How an image looks on a device that is filled with a colour, by letters; '.' is what was there and '?'
// anything else. `dots` are those of a pixel.
std::string Shown(CImageList const& list, int index, unsigned style = ILD_NORMAL, int dots = 1) {
    struct FineDevice : test::FakeDevice {
        using FakeDevice::FakeDevice;
        double GetPixelRatio() const override { return ratio; }
        HBITMAP Read(CRect const&) override {
            HBITMAP block = CTovPixels::Create(width, -height);
            return GetDIBits(0, 0, *block) ? block : nullptr;
        }
        int StretchDIBits(int, int, int, int, int xs, int ys, int ws, int hs, std::uint32_t const* bits,
                          BITMAPINFOHEADER const& header, std::uint32_t rop) override {
            return FakeDevice::StretchDIBits(0, 0, width, height, xs, ys, ws, hs, bits, header, rop);
        }
        int ratio = 1;
    };
    CSize const size = list.GetImageSize();
    FineDevice dc(size.cx * dots, size.cy * dots);
    dc.ratio = dots;
    std::ranges::fill(dc.pixels, 0x123456U);
    if (!list.Draw(&dc, index, {0, 0}, style)) return "none";
    std::string letters;
    for (int i = 0; i < dc.width * dc.height; ++i) {
        if (i > 0 && i % dc.width == 0) letters += '/';
        std::uint32_t const pixel = dc.pixels[static_cast<std::size_t>(i)] & 0xFFFFFF;
        char letter = pixel == 0x123456 ? '.' : '?';
        for (char const known : {'r', 'g', 'b', 'k', 'w'})
            if (PixelOf(known) == pixel) letter = known;
        letters += letter;
    }
    return letters;
}

TEST(ImageListTest, MasksSayWhatCovers) {
    Picture const row("rgwkbb/gggwwr");
    CTovImageList list;
    CBitmap const empty;
    EXPECT_TRUE(list.Add(&row, CLR_NONE) == -1 && list.Create(2, 2, ILC_MASK, 0, 1));
    EXPECT_EQ(CTovImageList().Create(nullptr, 12345u, 16, 0, CLR_NONE), 0);
    EXPECT_TRUE(list.Create(2, 2, ILC_MASK, 0, 1) == 0 && list.GetImageDimension(0) == CSize{});
    EXPECT_EQ(list.Add(&row, CLR_NONE), 0);
    EXPECT_EQ(list.Add(&row, TovRgb(0, 255, 0)), 3);
    EXPECT_EQ(list.Add(&row, CLR_DEFAULT), 6);
    Picture const mask("kwwwkk/kkwrkw");
    EXPECT_EQ(list.Add(&row, &mask), 9);
    Picture const high("rb/rb/gg"), low("w"), narrow("r"), flat("rg");
    EXPECT_TRUE(list.Add(&high, CLR_NONE) == 12 && list.Add(&flat, CLR_NONE) == 13);
    EXPECT_TRUE(list.Add(&narrow, CLR_NONE) == -1 && list.Add(&empty, CLR_NONE) == -1 &&
                list.Add(HICON()) == -1);
    char const* const shown[] = {"rg/gg", "wk/gw", "bb/wr", "r./..", "wk/.w", "bb/wr", ".g/gg",
                                 "wk/gw", "bb/w.", "r./gg", "../.w", "bb/w.", "rb/rb", "rg/.."};
    for (int i = 0; i < list.GetImageCount(); ++i)
        EXPECT_EQ(Shown(list, i), shown[i]) << i;
    EXPECT_TRUE(Shown(list, -1) == "none" && Shown(list, 14) == "none" && list.Draw(nullptr, 0, {}, 0) == 0);
    EXPECT_EQ(list.GetImageDimension(13), (CSize{2, 2}));

    EXPECT_EQ(list.SetBkColor(TovRgb(0, 0, 255)), CLR_NONE);
    EXPECT_EQ(Shown(list, 3), "rb/bb");
    EXPECT_EQ(Shown(list, 3, ILD_TRANSPARENT), "r./..");
    EXPECT_EQ(Shown(list, 3, ILD_MASK), "kw/ww");
    EXPECT_EQ(Shown(list, 3, ILD_TRANSPARENT | ILD_BLEND50), "?./..");  // the colour of selections is black

    CTovImageList merged, copy, single;
    EXPECT_TRUE(merged.Create(list, 12, list, 3, 1, 1) == 1 && merged.GetImageCount() == 1);
    EXPECT_EQ(Shown(merged, 0), "rb/rr");
    EXPECT_TRUE(copy.Create(&list) == 1 && copy.GetImageCount() == 14 &&
                copy.GetBkColor() == list.GetBkColor());
    EXPECT_TRUE(list.Remove(0) && !list.Remove(13) && Shown(list, 0) == "wk/gw" && Shown(copy, 0) == "rg/gg");
    EXPECT_TRUE(list.Remove(-1) && list.GetImageCount() == 0 && list.DeleteImageList() &&
                !list.DeleteImageList());
    EXPECT_TRUE(single.Create(&high, ILC_MASK, 1, 1, TovRgb(255, 0, 0)) && Shown(single, 0) == ".b/.b/gg");
    EXPECT_TRUE(!single.Create(&high, 0, 1, 1, CLR_NONE) &&
                !CTovImageList().Create(&empty, 0, 1, 1, CLR_NONE) &&
                !CTovImageList().Create(list, 0, copy, 0, 0, 0) && !CTovImageList().Create(-1, 2, 0U, 1, 1));
}

TEST(ImageListTest, ResourcesComeOneByOneAndByTheDozen) {
    Resources const resources({{"bitmaps/7.bmp", BmpFile("rg")},
                               {"bitmaps/8.bmp", BmpFile("bk")},
                               {"bitmaps/8@2x.bmp", BmpFile("bwkr/gbkk")},
                               {"bitmaps/9.bmp", BmpFile("kw")},
                               {"bitmaps/9@2x.bmp", BmpFile("kkwww/kkwww")}});
    HINSTANCE const module = resources.module;
    ASSERT_NE(module, nullptr);
    CTovImageList list;
    ASSERT_TRUE(list.Create(module, 7, 1, 1, TovRgb(255, 0, 0)));
    EXPECT_EQ(list.Add(module, 8), 2);
    EXPECT_EQ(list.Add(module, 8, CTovMaskId{9}), 4);
    EXPECT_EQ(list.Add(module, 7, TovRgb(0, 0, 255), TovRgb(0, 255, 0), TovRgb(0, 0, 255)), 6);
    Picture const mask("wk");
    EXPECT_EQ(list.Add(module, 7, &mask), 8);
    unsigned const ids[] = {7, 9, 8}, faulty[] = {7, 10, 8};
    EXPECT_EQ(list.Add(3, module, ids, TovRgb(0, 0, 0)), 10);
    EXPECT_EQ(list.Add(3, module, faulty), -1);
    EXPECT_EQ(list.GetImageCount(), 18);
    EXPECT_TRUE(list.Add(0, module, ids) == -1 && list.Add(1, module, nullptr) == -1 &&
                list.Add(module, 10) == -1 && list.Add(module, 7, CTovMaskId{10}) == -1 &&
                !CTovImageList().Create(module, 10, 1, 1, CLR_NONE));
    std::string shown;
    for (int i = 0; i < list.GetImageCount(); ++i)
        shown += Shown(list, i);
    EXPECT_EQ(shown, ".gbkb.r..grg.wb.rg");
    // Fine dots where there are some for the picture; those of the wrong size are none.
    EXPECT_EQ(Shown(list, 2, ILD_NORMAL, 2), "bw/gb");
    EXPECT_EQ(Shown(list, 3, ILD_NORMAL, 2), "kr/kk");
    EXPECT_EQ(Shown(list, 13, ILD_NORMAL, 2), "ww/ww");
}

TEST(ToolbarBmpTest, ButtonsHavePictures) {
    Resources const resources(
        {{"toolbars/1.json", R"({"width": 1, "height": 2, "items": [100, 0, 65535, 102]})"},
         {"bitmaps/1.bmp", BmpFile("rgb/bgr")},
         {"toolbars/2.json", R"({"items": [0, 5, 0, 6], "height": 1, "width": 1})"},
         {"bitmaps/2.bmp", BmpFile("wrwg")},
         {"toolbars/3.json", R"({"width": 16, "height": 16, "items": []})"}});
    HINSTANCE const module = resources.module;
    CTovToolbarBmp toolbar(module, 1);
    EXPECT_EQ(toolbar.IdVector(), (std::vector<unsigned>{100, 0, 65535, 102}));
    EXPECT_TRUE(toolbar.IdCount() == 4 && toolbar.ButtonCount() == 3 &&
                toolbar.ImageSize() == (CSize{1, 2}) && toolbar.ButtonSize() == (CSize{8, 9}) &&
                toolbar.Bitmap().GetWidth() == 3);
    EXPECT_TRUE(toolbar.ImageIndex(102) == 3 && toolbar.ImageIndex(101) == -1 && toolbar.ImageIndex(0) == 1);
    auto const first = [](HICON const& icon) {
        return icon ? *icon->GetPixels(icon->GetSize())->GetBits() : 1;
    };
    EXPECT_TRUE(first(toolbar.ExtractIcon(102U)) == 0xFF0000FF &&
                first(toolbar.ExtractIcon(1)) == 0xFF00FF00 && first(toolbar.ExtractIcon(3)) == 1 &&
                first(toolbar.ExtractIcon(0U)) == 1);
    EXPECT_TRUE(toolbar.CreateImageList(ILC_MASK, TovRgb(255, 0, 0)) && first(toolbar.ExtractIcon(0)) == 0);
    EXPECT_EQ(Shown(toolbar.ImageList(), 2), "b/.");

    ASSERT_TRUE(toolbar.LoadBitmap(module, 2));
    EXPECT_TRUE(toolbar.ImageList().GetImageCount() == 0 && first(toolbar.ExtractIcon(5U)) == 0xFFFF0000 &&
                first(toolbar.ExtractIcon(6U)) == 0xFF00FF00);
    EXPECT_TRUE(toolbar.LoadBitmap(module, 3) == 1 && toolbar.IdCount() == 0 &&
                toolbar.CreateImageList(0, CLR_NONE) == 0 && !toolbar.Bitmap().GetSafeHandle());
    EXPECT_TRUE(toolbar.LoadBitmap(module, 4) == 0 && toolbar.ButtonSize() == CSize{} &&
                toolbar.CreateImageList(0, CLR_NONE) == 0);
    std::vector<unsigned> ids{1};
    EXPECT_TRUE(CTovToolbarBmp::LoadVectorOfIDs(module, 4, ids) == 0 && ids.empty());
    EXPECT_TRUE(CTovToolbarBmp::LoadVectorOfIDs(module, 2, ids) == 1 && ids.size() == 4);
}

TEST(ToolbarBmpTest, FaultyResourcesAreNone) {
    std::map<std::string, std::string> files;
    for (std::string const text :
         {"", "[]", "{", "{}", R"({"width": 1, "height": 1})", R"({"width": 0, "height": 1, "items": []})",
          R"({"width": 1, "height": 1025, "items": []})", R"({"width": 1.5, "height": 1, "items": []})",
          R"({"width": 1, "height": 1, "items": [65536]})", R"({"width": 1, "height": 1, "items": [-1]})",
          R"({"width": 1, "height": 1, "items": ["1"]})", R"({"width": 1, "height": 1, "items": [[1]]})",
          R"({"width": 1, "height": 1, "items": {}})", R"({"width": 1, "height": 1, "items": [], "x": 1})",
          R"({"width": 1, "width": 2, "height": 1, "items": []})",
          R"({"width": 1, "height": 1, "items": []} x)"})
        files["toolbars/" + std::to_string(files.size() + 1) + ".json"] = text;
    Resources const resources(files);
    for (unsigned id = 1; id <= files.size(); ++id) {
        std::vector<unsigned> ids{1};
        EXPECT_TRUE(CTovToolbarBmp::LoadVectorOfIDs(resources.module, id, ids) == 0 && ids.empty()) << id;
        EXPECT_FALSE(test::TakeFaults().empty()) << id;
        EXPECT_EQ(CTovToolbarBmp(resources.module, id).LoadBitmap(resources.module, id), 0) << id;
        EXPECT_TRUE(test::TakeFaults().at(0).starts_with("toolbars/" + std::to_string(id) + ".json: ")) << id;
    }
}

}  // namespace
}  // namespace tov
