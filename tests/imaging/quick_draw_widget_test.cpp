// Windows that are painted in memory first.
#include "support/widgets.h"

#include <tov310/qt_values.h>
#include <tov310/quick_draw.h>
#include <tov310/system.h>
#include <tov310/view.h>
#include <tov310/window_messages.h>
#include <tov310/wnd_on.h>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace tov {
namespace {

constexpr QRgb red = 0xFFFF0000, green = 0xFF00FF00, blue = 0xFF0000FF, white = 0xFFFFFFFF;

// Fills its upper half with a colour: on the device that it is told of, or as widgets do.
class Window : public CWndOn<QWidget, CView> {
 public:
    explicit Window(bool asToolkit = false) : m_asToolkit(asToolkit) {
        resize(40, 30);
        QPalette palette;
        palette.setColor(QPalette::Window, Qt::white);
        setPalette(palette);
    }

    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
        if (message != WM_PAINT) return CView::WindowProc(message, wParam, lParam);
        ++paints;
        if (inPaint) inPaint();
        auto* const dc = reinterpret_cast<CDC*>(wParam);
        if (m_asToolkit || dc == nullptr) return CView::WindowProc(message, wParam, lParam);
        dc->GetClipBox(&box);
        dc->FillSolidRect({0, 0, 40, 15}, TovColorRef(QColor(colour)));
        return 0;
    }
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(0, 0, 40, 15, QColor(colour)); }

    void OnPrepareDC(CDC* dc, CPrintInfo* job) override { prepared = job == nullptr ? dc : nullptr; }
    void OnDraw(CDC* dc) override {
        ++paints;
        EXPECT_EQ(prepared, dc);
        dc->FillSolidRect({0, 0, 40, 15}, TovRgb(0, 0, 255));
    }

    // What the user sees.
    QRgb At(int x, int y) const {
        auto const& shown = dynamic_cast<QImage const&>(*backingStore()->paintDevice());
        return shown.pixel(x * shown.width() / width(), y * shown.height() / height());
    }
    // How often it was painted since the last call, what it owes included.
    int Paints() {
        QCoreApplication::processEvents();
        return std::exchange(paints, 0);
    }
    void Show() {
        show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(this));
        Paints();
    }

    QRgb colour = red;
    CRect box;
    int paints = 0;
    CDC* prepared = nullptr;
    std::function<void()> inPaint;

 private:
    bool const m_asToolkit;
};

TEST(QuickDrawTest, PaintsInMemoryAndHoldsBack) {
    for (bool const asToolkit : {false, true}) {
        Window window(asToolkit);
        window.Show();
        CTovQuickDraw quick;
        ASSERT_TRUE(quick.Install(&window));
        window.repaint();
        EXPECT_EQ(window.Paints(), 1);
        EXPECT_TRUE(window.At(3, 3) == red && window.At(3, 20) == white);
        HBITMAP const memory = quick.GetCompDC(&window)->Read({3, 3, 4, 4});
        EXPECT_TRUE(memory && *memory->GetBits() == red);

        int const first = quick.StopWindowUpdate();
        int const second = quick.StopWindowUpdate();
        EXPECT_TRUE(first == 0 && second == 1 && quick.EraseBkgnd(&window) == 1);
        window.colour = green;
        window.repaint();
        EXPECT_EQ(window.Paints(), 0);
        EXPECT_TRUE(window.At(3, 3) == red && window.At(3, 20) == white);
        quick.ContinueWindowUpdate(second);
        EXPECT_EQ(window.Paints(), 0);
        quick.ContinueWindowUpdate(first);
        EXPECT_EQ(window.Paints(), 1);
        EXPECT_EQ(window.At(3, 3), green);

        // Only what is to be painted.
        window.colour = blue;
        window.repaint(5, 5, 10, 10);
        EXPECT_TRUE(window.At(4, 5) == green && window.At(5, 5) == blue && window.At(15, 5) == green);
        EXPECT_TRUE(asToolkit || window.box == (CRect{5, 5, 15, 15}));
        EXPECT_EQ(window.Paints(), 1);
        window.resize(60, 50);
        EXPECT_EQ(window.Paints(), 1);
        EXPECT_TRUE(window.At(3, 3) == blue && window.At(50, 40) == white);
        quick.SetSize({-1, 5});
        EXPECT_TRUE(quick.GetCompDC(&window)->Read({59, 49, 60, 50}) != nullptr);
        EXPECT_TRUE(quick.Uninstall() == 1 && quick.Uninstall() == 0);
        window.colour = red;
        window.repaint();
        EXPECT_EQ(window.At(3, 3), red);  // by the toolkit, since there is no device
    }
}

TEST(QuickDrawTest, BackgroundAndRowsThatAreLeftOut) {
    Window window;
    window.Show();
    CTovQuickDraw quick;
    quick.SetCustomBkColor(TovRgb(0, 255, 0));
    EXPECT_EQ(quick.GetExcludeFromTop(), 0U);
    ASSERT_TRUE(quick.Install(&window));
    window.repaint();
    EXPECT_TRUE(window.At(3, 20) == green && window.At(3, 3) == red);
    quick.SetExcludeFromTop(10);
    window.colour = blue;
    window.repaint();
    EXPECT_TRUE(window.At(3, 9) == green && window.At(3, 10) == blue && quick.GetExcludeFromTop() == 10);
    EXPECT_EQ(window.Paints(), 2);
    QPalette dark = window.palette();
    dark.setColor(QPalette::Window, Qt::red);
    window.setPalette(dark);
    EXPECT_EQ(window.Paints(), 1);
    EXPECT_EQ(window.At(3, 20), green);
}

TEST(QuickDrawTest, ViewsAreAskedToDraw) {
    Window window;
    window.Show();
    CTovQuickDraw quick;
    quick.SetNotifyWnd(&window);
    EXPECT_EQ(quick.GetNotifyWnd(), &window);
    ASSERT_TRUE(quick.Install(&window));
    window.repaint();
    EXPECT_EQ(window.Paints(), 1);
    EXPECT_TRUE(window.At(3, 3) == blue && window.At(3, 20) == white);
    quick.SetNotifyWnd(nullptr);
    window.repaint();
    EXPECT_EQ(window.At(3, 3), red);
}

TEST(QuickDrawTest, ForeignWidgetsAndScrollAreasLookAsBefore) {
    QLabel label("测量点 12");
    QListWidget list;
    list.addItems({"一", "二", "三"});
    list.resize(120, 90);
    for (QWidget* const widget : {static_cast<QWidget*>(&label), static_cast<QWidget*>(&list)}) {
        widget->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(widget));
        QImage const before = widget->grab().toImage();
        CTovQuickDraw quick;
        ASSERT_TRUE(quick.Install(TovWnd(widget)));
        EXPECT_EQ(widget->grab().toImage(), before);
        quick.StopWindowUpdate();
        label.setText("anything else");
        list.item(1)->setText("ABC");
        EXPECT_EQ(widget->grab().toImage(), before);
    }
}

TEST(QuickDrawTest, WhoPaintsMayEndEverything) {
    auto window = std::make_unique<Window>();
    window->Show();
    auto quick = std::make_unique<CTovQuickDraw>();
    ASSERT_TRUE(quick->Install(window.get()));
    window->inPaint = [&] { quick->SetSize({7, 7}); };
    window->repaint();
    window->inPaint = [&] { quick.reset(); };
    window->repaint();
    EXPECT_EQ(quick, nullptr);
    quick = std::make_unique<CTovQuickDraw>();
    ASSERT_TRUE(quick->Install(window.get()));
    window->inPaint = [&] { window->DestroyWindow(); };
    window->repaint();
    EXPECT_FALSE(quick->IsHooked());
    EXPECT_TRUE(quick->Install(nullptr) == 0 && quick->Install(window.get()) == 0 &&
                !quick->GetCompDC(nullptr));
}

// Devices that only count.
struct CountingScreen : ITovSystem {
    struct Device : CDC {
        explicit Device(CountingScreen& counting) : screen(counting) {}
        int BitBlt(int x, int y, int w, int h, CDC*, int, int, std::uint32_t) override {
            screen.copied.push_back({x, y, x + w, y + h});
            return 1;
        }
        CountingScreen& screen;
    };
    CountingScreen() : before(TovSetSystem(this)) {}
    ~CountingScreen() override { TovSetSystem(before); }
    std::unique_ptr<CDC> CreateMemoryDC(HWND, CSize const&) override {
        ++memories;
        return std::make_unique<Device>(*this);
    }
    std::unique_ptr<CDC> CreatePaintDC(HWND, CRect* part) override {
        *part = wanted;
        return std::make_unique<Device>(*this);
    }
    ITovSystem* before;
    CRect wanted;
    std::vector<CRect> copied;
    int memories = 0;
};

TEST(QuickDrawTest, EveryPaintIsOneCopy) {
    CountingScreen screen;
    struct Plain : CTovMessageWindow {
        CRect GetClientRect() const override { return {0, 0, 50, 40}; }
    } window;
    window.Create();
    CTovQuickDraw quick;
    ASSERT_TRUE(quick.Install(&window));
    auto const paint = [&](CRect const& part) {
        screen.wanted = part;
        TovSendMessage(window.GetSafeHwnd(), WM_PAINT);
        return std::exchange(screen.copied, {});
    };
    using Copies = std::vector<CRect>;
    CRect const part{3, 4, 20, 30};
    EXPECT_EQ(paint(part), Copies{part});
    EXPECT_EQ(paint({0, 0, 50, 40}), (Copies{{0, 0, 50, 40}}));
    quick.SetExcludeFromTop(10);
    EXPECT_EQ(paint(part), (Copies{{3, 10, 20, 30}}));
    EXPECT_EQ(paint({3, 4, 20, 10}), Copies{});
    TovSendMessage(window.GetSafeHwnd(), WM_SIZE, SIZE_RESTORED, TovPackPoint({50, 40}));
    TovSendMessage(window.GetSafeHwnd(), WM_SIZE, SIZE_MINIMIZED, TovPackPoint({60, 40}));
    TovSendMessage(window.GetSafeHwnd(), WM_SIZE, SIZE_RESTORED, TovPackPoint({0, 40}));
    EXPECT_EQ(screen.memories, 1);
    TovSendMessage(window.GetSafeHwnd(), WM_SIZE, SIZE_RESTORED, TovPackPoint({60, 40}));
    EXPECT_EQ(screen.memories, 2);
    TovSendMessage(window.GetSafeHwnd(), WM_SYSCOLORCHANGE);
    quick.StopWindowUpdate();
    EXPECT_EQ(paint(part), Copies{});  // there is no picture to keep
    quick.ContinueWindowUpdate(-5);
    EXPECT_EQ(quick.StopWindowUpdate(), 0);
    quick.ContinueWindowUpdate(0);
    quick.SetSize({0, 0});
    EXPECT_TRUE(paint(part).empty() && quick.EraseBkgnd(&window) == 0);
}

}  // namespace
}  // namespace tov
