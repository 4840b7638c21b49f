// A dialog of 40 controls from its template against the same by hand-written code of the toolkit's: made,
// shown once and destroyed, without a display.
#include <tov310/dialog_template.h>
#include <tov310/tov_dialog.h>

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "peer.h"

namespace {

constexpr int rows = 10;  // of four controls

// The template as a resource module in a folder of its own.
tov::HINSTANCE ModuleWithDialog() {
    std::string pattern = (std::filesystem::temp_directory_path() / "tov-bench-XXXXXX").string();
    std::filesystem::path const folder = mkdtemp(pattern.data());
    std::filesystem::create_directory(folder / "dialogs");
    std::ofstream(folder / "strings.json") << "{}";
    std::ofstream json(folder / "dialogs/1.json");
    json << R"({"title": "bench", "cx": 280, "cy": 180, "controls": [)";
    for (int row = 0; row < rows; ++row) {
        auto const control = [&](char const* words, int number, int x, int cx) {
            json << (row + number == 0 ? "" : ",") << R"({"id": )" << 100 + row * 4 + number << ", " << words
                 << R"(, "x": )" << x << R"(, "y": )" << 7 + row * 17 << R"(, "cx": )" << cx
                 << R"(, "cy": 14})";
        };
        control(R"("class": "Static", "text": "Name:")", 0, 7, 40);
        control(R"("class": "Edit")", 1, 50, 80);
        control(R"("class": "ComboBox", "kind": "list", "items": ["a", "b", "c"])", 2, 134, 60);
        control(row == rows - 1 ? R"("class": "Button", "kind": "default", "text": "OK")"
                                : R"("class": "Button", "kind": "check", "text": "Fixed")",
                3, 198, 70);
    }
    json << "]}";
    json.close();
    tov::HINSTANCE const module = tov::TovLoadResourceModule(folder.c_str());
    std::filesystem::remove_all(folder);
    return module;
}

// What a programmer writes for the same dialog.
class HandWritten : public QDialog {
 public:
    HandWritten() {
        setWindowTitle("bench");
        QFontMetrics const metrics(font());
        int const across =
            metrics.horizontalAdvance("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz") / 52;
        int const down = metrics.height();
        auto const place = [&](QWidget* widget, int row, int x, int cx) {
            widget->setGeometry(x * across / 4, (7 + row * 17) * down / 8, cx * across / 4, 14 * down / 8);
        };
        for (int row = 0; row < rows; ++row) {
            auto* const label = new QLabel("Name:", this);
            auto* const edit = new QLineEdit(this);
            auto* const combo = new QComboBox(this);
            label->setBuddy(edit);
            combo->addItems({"a", "b", "c"});
            place(label, row, 7, 40);
            place(edit, row, 50, 80);
            place(combo, row, 134, 60);
            if (row == rows - 1) {
                auto* const button = new QPushButton("OK", this);
                button->setDefault(true);
                connect(button, &QPushButton::clicked, this, &QDialog::accept);
                place(button, row, 198, 70);
            } else {
                place(new QCheckBox("Fixed", this), row, 198, 70);
            }
        }
        setFixedSize(280 * across / 4, 180 * down / 8);
    }
};

template <class Show>
void Repeat(Show const& show) {
    for (int i = 0; i < 10; ++i) {
        show();
        QCoreApplication::processEvents();
    }
}

void DialogOf40(benchmark::State& state) {
    static tov::HINSTANCE const module = ModuleWithDialog();
    bool const shows = state.range(0) != 0;
    bench::AgainstPeer(
        state, 10,
        [&] {
            Repeat([&] {
                tov::CTovDialog dialog(1);
                dialog.AutoDelete(0);
                if (dialog.Create(module) == 0) state.SkipWithError("the template is faulty");
                if (!shows) return;
                dialog.show();
                QCoreApplication::processEvents();
            });
        },
        [&] {
            Repeat([&] {
                HandWritten dialog;
                dialog.ensurePolished();
                if (!shows) return;
                dialog.show();
                QCoreApplication::processEvents();
            });
        },
        bench::Want::kWithin);
}
BENCHMARK(DialogOf40)
    ->Name("dialog of 40 controls/hand-written")
    ->Arg(0)
    ->ArgName("shown")
    ->Unit(benchmark::kMillisecond);
BENCHMARK(DialogOf40)
    ->Name("dialog of 40 controls/hand-written")
    ->Arg(1)
    ->ArgName("shown")
    ->Unit(benchmark::kMillisecond);

}  // namespace
