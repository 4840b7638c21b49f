#include <tov310/messages.h>
#include <tov310/painter_dc.h>
#include <tov310/printing.h>
#include <tov310/qt_values.h>
#include <tov310/styles.h>
#include <tov310/tov_dialog.h>
#include <tov310/tov_form_view.h>
#include <tov310/tov_frame.h>
#include <tov310/tov_html_view.h>
#include <tov310/tov_printer.h>
#include <tov310/tov_scroll_view.h>

#include "support/files.h"
#include "support/temporary_folder.h"
#include "support/widgets.h"

#include <gtest/gtest.h>

#include <QProcess>
#include <QSignalSpy>

#include <sys/resource.h>

#include <csignal>

namespace tov {
namespace {

using namespace test;

template <class Base>
struct Drawn : Base {
    using Base::AddItemToArrange;
    using Base::ArrangeItems;
    using Base::Base;
    void OnDraw(CDC* dc) override {
        ++drawings;
        dc->FillSolidRect({20, 30, 40, 50}, color);
    }
    void OnPostInitialUpdate() override { ++updates; }
    void OnPostActivateView(int activate, CView*) override { activation = activate; }

    COLORREF color = TovRgb(255, 0, 0);
    int drawings = 0, updates = 0, activation = 0;
};

QRgb PixelOf(QAbstractScrollArea& view, QPoint place) {
    return view.viewport()->grab().toImage().pixel(place);
}

TEST(Views, LiveInAFrame) {
    CTovFrameWnd frame;
    Drawn<CTovView> view;
    ASSERT_EQ(view.Create(0, {}, &frame, 0xE900), 1);
    EXPECT_EQ(view.Create(0, {}, &frame, 0xE900), 0);
    QSignalSpy const updated(&view, &CTovView::initialUpdated);
    QSignalSpy const documents(&view, &CTovView::documentChanged);
    CTovPtrSmart<CTovDocument> const document(new CTovDocument);
    frame.resize(300, 200);
    frame.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&frame));
    QTRY_COMPARE(updated.count(), 1);
    EXPECT_EQ(view.updates, 1);
    view.SetViewDocument(document);
    EXPECT_EQ(document->GetViews(), std::vector<CView*>{&view});
    EXPECT_EQ(documents.count(), 1);
    view.setFocus();
    frame.activateWindow();
    QTRY_COMPARE(frame.GetActiveView(), static_cast<CView*>(&view));
    QTRY_COMPARE(view.activation, 1);

    EXPECT_EQ(PixelOf(view, {25, 35}), qRgb(255, 0, 0));
    HBITMAP picture;
    ASSERT_EQ(CTovViewExtensions::GetBitmapFromClientRect(&view, picture), 1);
    EXPECT_EQ(picture->GetRow(35)[25] & 0xFFFFFF, 0xFF0000u);
    QTest::qWait(20);
    int const drawings = view.drawings;
    EXPECT_EQ(view.StopWindowUpdate(), 0);
    view.viewport()->update();
    QTest::qWait(30);
    EXPECT_EQ(view.drawings, drawings);
    view.ContinueWindowUpdate(1);
    QTRY_VERIFY(view.drawings > drawings);

    QSignalSpy const slow(&view, &CTovView::slowDoubleClicked);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, {10, 10});
    QTest::qWait(QApplication::doubleClickInterval() + 50);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, {12, 10});
    ASSERT_EQ(slow.count(), 1);
    EXPECT_EQ(slow[0][0].toPoint(), QPoint(12, 10));
    view.UnsetViewDocument();
    view.setParent(nullptr);
}

TEST(Views, ScrollWhatIsLargerThanThey) {
    Drawn<CTovScrollView> view;
    view.resize(200, 100);
    QPushButton child(view.viewport());
    child.setGeometry(0, 0, 10, 10);
    view.show();
    view.SetScrollSizes({100, 50});
    QTest::qWait(10);
    EXPECT_EQ(view.horizontalScrollBar()->maximum() + view.verticalScrollBar()->maximum(), 0);
    view.SetScrollSizes({1000, 500});
    QTest::qWait(10);
    EXPECT_EQ(view.horizontalScrollBar()->maximum(), 1000 - view.viewport()->width());
    EXPECT_EQ(view.verticalScrollBar()->maximum(), 500 - view.viewport()->height());
    view.ScrollToPosition({15, 25});
    EXPECT_EQ(view.GetScrollPosition(), (CPoint{15, 25}));
    EXPECT_EQ(PixelOf(view, {6, 6}), qRgb(255, 0, 0));
    EXPECT_NE(PixelOf(view, {4, 6}), qRgb(255, 0, 0));
    EXPECT_EQ(child.pos(), QPoint(-15, -25));
}

struct Templates : testing::Test {
    Templates() {
        PutFile(folder.File("strings.json"), "{}");
        std::filesystem::create_directory(folder.File("dialogs"));
        PutFile(folder.File("dialogs/1.json"), R"({"cx": 200, "cy": 100, "controls": [
            {"class": "Edit", "id": 11, "x": 7, "y": 7, "cx": 50, "cy": 14},
            {"class": "ComboBox", "id": 12, "items": ["a", "b"], "x": 7, "y": 27, "cx": 50, "cy": 14},
            {"class": "Button", "id": 1, "text": "OK", "x": 7, "y": 67, "cx": 50, "cy": 14}]})");
        PutFile(folder.File("dialogs/2.json"), R"({"cx": 220, "cy": 120, "controls": [
            {"class": "Edit", "id": 21, "x": 7, "y": 90, "cx": 50, "cy": 14},
            {"class": "Static", "id": 22, "style": ["tabstop"], "x": 7, "y": 7, "cx": 150, "cy": 60},
            {"class": "Edit", "id": 23, "x": 77, "y": 90, "cx": 50, "cy": 14}]})");
        module = TovLoadResourceModule(folder.path().string().c_str());
    }
    TemporaryFolder folder;
    HINSTANCE module = nullptr;
};

TEST_F(Templates, AFormHasItsControlsAndScrollsThem) {
    Drawn<CTovFormView> form(module, 1u);
    QSignalSpy const chosen(&form, &CTovFormView::comboBoxSelChanged);
    form.resize(120, 80);
    form.show();
    QTest::qWait(10);
    CWnd* const edit = CWnd::FromHandlePermanent(form.GetDlgItem(11));
    ASSERT_NE(edit, nullptr);
    EXPECT_EQ(edit->GetParent(), &form);
    EXPECT_EQ(form.GetChildren().size(), 3u);
    EXPECT_GE(form.sizeHint().width(), form.Form()->width());
    auto* const combo = qobject_cast<QComboBox*>(TovWidget(form.GetDlgItem(12)));
    combo->setCurrentIndex(1);
    ASSERT_EQ(chosen.count(), 1);
    EXPECT_EQ(chosen[0][0].toUInt(), 12u);
    EXPECT_EQ(form.EnableOkButton(), 1);

    QRect const before = TovWidget(edit)->geometry();
    form.ScrollToPosition({0, 10});
    form.AddItemToArrange(ARRANGE_MOVE_X | ARRANGE_MOVE_Y, 11);
    form.ScrollToPosition({5, 20});
    form.ArrangeItems({110, 107}, {100, 100}, {});
    EXPECT_EQ(TovWidget(edit)->geometry(), before.translated(10, 7));
    CRect const placed = TovRect(TovWidget(edit)->geometry());
    QFont font = form.font();
    font.setPointSizeF(font.pointSizeF() * 2);
    form.setFont(font);
    EXPECT_GT(TovWidget(edit)->width(), placed.Width() * 3 / 2) << "carried over to the larger font";

    form.DestroyWindow();
    QTest::qWait(1);
    EXPECT_EQ(form.Form()->findChildren<QLineEdit*>().size(), 0);
    TovWnd(&form);
    EXPECT_TRUE(form.GetDlgItem(11)) << "it is made anew";
    CTovFormView faulty;
    testing::internal::CaptureStderr();
    EXPECT_EQ(CTovFormView(module, 99u).Create(module, 0, {}, nullptr, 1), 0);
    testing::internal::GetCapturedStderr();
}

TEST_F(Templates, AViewTakesThePlaceOfAControlOfADialog) {
    for (bool isForm : {false, true}) {
        CTovDialog dialog(2);
        ASSERT_EQ(dialog.Create(module), 1);
        dialog.AutoDelete(0);
        QRect const place = TovWidget(dialog.GetDlgItem(22))->geometry();
        Drawn<CTovView> view;
        Drawn<CTovFormView> form(module, 1u);
        CView& placed = isForm ? static_cast<CView&>(form) : view;
        auto* const part = CTovViewExtensions::CastObjectSafe(&placed);
        ASSERT_EQ(part->ExchangeDlgItem(&dialog, 22, 1, SW_SHOW, {}), 1);
        EXPECT_EQ(part->ExchangeDlgItem(&dialog, 99, 1, SW_SHOW, {}), 0);
        EXPECT_EQ(TovWidget(&placed)->geometry(), place);
        EXPECT_EQ(dialog.GetDlgItem(22), placed.GetSafeHwnd());
        EXPECT_EQ(part->GetDirectParentDialog(), &dialog);
        dialog.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&dialog));
        EXPECT_TRUE(TovWidget(&placed)->isVisible());
        QTRY_COMPARE(view.updates + form.updates, 1);
        std::vector<HWND> const children = dialog.GetChildren();
        EXPECT_EQ(children[1], placed.GetSafeHwnd()) << "in the order of Tab";
        if (isForm) {
            EXPECT_EQ(form.EnableOkButton(), dialog.EnableOkButton());
        } else {
            EXPECT_EQ(PixelOf(view, {5, 5}), view.palette().color(QPalette::Base).rgb()) << "as a list";
        }
        dialog.DestroyWindow();
        TovWidget(&placed)->setParent(nullptr);
    }
}

TEST(Views, ShowPictures) {
    TemporaryFolder folder;
    QImage red(8, 8, QImage::Format_RGB32);
    red.fill(Qt::red);
    QString const path = TovQString(folder.File("a %41\"#.png"));
    ASSERT_TRUE(red.save(path));
    CTovHtmlView view;
    view.resize(200, 100);
    unsigned long const blue = TovRgb(0, 0, 255);
    ASSERT_EQ(view.ShowGraphic(TovText(path).c_str(), 0, &blue), 1);
    view.show();
    QTest::qWait(10);
    QImage const shown = view.viewport()->grab().toImage();
    int reds = 0;
    for (int i = 0; i < shown.width() * shown.height(); ++i)
        reds += shown.pixel(i % shown.width(), i / shown.width()) == qRgb(255, 0, 0);
    EXPECT_EQ(reds, 64);
    EXPECT_EQ(shown.pixel(150, 90), qRgb(0, 0, 255));
    EXPECT_EQ(view.ShowGraphic(nullptr, 0, nullptr), 1);
    EXPECT_EQ(CTovHtmlView::BuildHtmlFile("p", 1, nullptr), CTovHtmlView::BuildHtmlFile("p", 1, nullptr));
}

struct Pages : Drawn<CTovView> {
    void OnPrint(CDC* dc, CPrintInfo* job) override {
        owner.reset();
        CRect const& page = job->m_rectDraw;
        CString text = "Sheet ";
        dc->TextOut(page.Width() / 10, page.Height() / 10,
                    text.append(std::to_string(job->m_nCurPage)).c_str());
        // A quarter of the sheet.
        dc->FillSolidRect({page.Width() / 2, page.Height() / 2, page.Width(), page.Height()},
                          TovRgb(0, 128, 0));
        for (int i = 0; i < lines; ++i)
            dc->TextOut(0, i, std::to_string(i * 7919).c_str());
    }
    int lines = 0;
    std::unique_ptr<QWidget> owner;
};

QByteArray OutputOf(QString const& program, QStringList const& arguments) {
    QProcess process;
    process.start(program, arguments);
    return process.waitForFinished() ? process.readAllStandardOutput() : QByteArray();
}

TEST(Views, PrintPagesIntoAFileOrLeaveNothing) {
    TemporaryFolder folder;
    QString const path = TovQString(folder.File("plan.pdf"));
    Pages view;
    auto const print = [&](unsigned from, unsigned to) {
        CPrintInfo job;
        job.m_nMaxPage = 9;
        job.m_nFromPage = from;
        job.m_nToPage = to;
        job.m_strOutput = TovText(path);
        return TovPrintPages(view, job, *TovPdfPrinter());
    };
    // The window that the dialog of the job belongs to dies meanwhile.
    view.owner = std::make_unique<QWidget>();
    view.owner->show();
    view.owner->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(view.owner.get()));
    ASSERT_EQ(print(3, 1), 1);
    QStringList words;
    QByteArray const text = OutputOf("pdftotext", {path, "-"});
    for (QByteArray const& line : text.split('\n')) {
        if (line.contains("Sheet")) words.append(QString::fromUtf8(line.trimmed()).remove(QChar(0x0C)));
    }
    EXPECT_EQ(words, (QStringList{"Sheet 3", "Sheet 2", "Sheet 1"}));
    QString const picture = TovQString(folder.File("page"));
    OutputOf("pdftoppm", {"-r", "20", "-png", "-singlefile", path, picture});
    QImage const page(picture + ".png");
    ASSERT_FALSE(page.isNull());
    EXPECT_EQ(QFile::permissions(path), QFile::permissions(picture + ".png"));  // as any new file
    EXPECT_EQ(page.pixel(page.width() * 3 / 4, page.height() * 3 / 4), qRgb(0, 128, 0));
    EXPECT_EQ(page.pixel(page.width() / 4, page.height() * 3 / 4), qRgb(255, 255, 255));

    // A file may not become large: the disk is full.
    QByteArray const before = OutputOf("cat", {path});
    view.lines = 3000;
    rlimit usual{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &usual), 0);
    auto* const handler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit const small{8192, usual.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
    int const result = print(1, 3);
    ::setrlimit(RLIMIT_FSIZE, &usual);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(OutputOf("cat", {path}), before) << "what was there stays";
    EXPECT_EQ(QDir(TovQString(folder.path().string())).entryList({"plan*"}, QDir::Files),
              QStringList{"plan.pdf"});
}

}  // namespace
}  // namespace tov
