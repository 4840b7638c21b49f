// The gallery, with everything in it used at random.
#include "support/widgets.h"

#include "gallery.h"
#include "gallery_page.h"
#include "window_shots.h"

#include <tov310/edit.h>

#include <gtest/gtest.h>

#include <random>

namespace survey {
namespace {

// A warning of Qt's fails the test, and so does what a sanitizer finds.
TEST(Gallery, BearsEverySwitchAndKeyOnEveryPage) {
    std::mt19937 random(11);
    auto const any = [&random](int count) {
        return static_cast<int>(random() % static_cast<unsigned>(count));
    };
    for (char const* const language : {"zh_CN", "en"}) {
        UseWords(language);
        Gallery gallery;
        gallery.show();
        gallery.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&gallery));
        ASSERT_GE(gallery.Count(), 9);
        for (int index = 0; index < gallery.Count(); ++index) {
            gallery.ShowPage(index);
            GalleryPage& page = gallery.Page(index);
            SCOPED_TRACE(gallery.findChild<QListWidget*>()->item(index)->text().toStdString());
            QList<QWidget*> options;
            for (QWidget* const widget : page.findChildren<QWidget*>()) {
                bool const isOption = qobject_cast<QCheckBox*>(widget) != nullptr ||
                                      qobject_cast<QComboBox*>(widget) != nullptr ||
                                      qobject_cast<QSpinBox*>(widget) != nullptr;
                if (isOption) options << widget;
                auto* const label = qobject_cast<QLabel*>(widget);
                EXPECT_TRUE(label == nullptr || !label->text().contains('%')) << label->text().toStdString();
            }
            for (int step = 0; step < 60; ++step) {
                QWidget* const option = options[any(static_cast<int>(options.size()))];
                if (auto* const box = qobject_cast<QCheckBox*>(option)) box->toggle();
                if (auto* const box = qobject_cast<QComboBox*>(option))
                    box->setCurrentIndex(any(box->count()));
                if (auto* const box = qobject_cast<QSpinBox*>(option))
                    box->setValue(box->minimum() + any(box->maximum() - box->minimum() + 1));
                QList<tov::CTovEdit*> const edits = page.findChildren<tov::CTovEdit*>();
                edits[any(static_cast<int>(edits.size()))]->setFocus();
                constexpr Qt::Key keys[] = {Qt::Key_Tab, Qt::Key_Up, Qt::Key_Left, Qt::Key_Backspace,
                                            Qt::Key_Delete};
                for (int i = any(4); i > 0; --i)
                    QTest::keyClick(QApplication::focusWidget(), "1.9-sE"[any(6)]);
                QTest::keyClick(QApplication::focusWidget(), keys[any(5)]);
                QCoreApplication::processEvents();
                QString const told = page.State();
                page.ShowState();
                ASSERT_EQ(page.State(), told) << "what is found wrong is told at once";
            }
        }
    }
}

}  // namespace
}  // namespace survey
