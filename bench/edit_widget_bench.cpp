// Edits beside the toolkit's spin boxes: typing, making, setting.
#include "peer.h"

#include <tov310/qt_values.h>
#include <tov310/value_edits.h>

#include <QApplication>
#include <QDoubleSpinBox>
#include <QKeyEvent>
#include <QVBoxLayout>

#include <memory>
#include <vector>

namespace {

template <class Control>
struct Form : QWidget {
    Form() {
        (new QVBoxLayout(this))->addWidget(&control);
        control.resize(200, 30);
        show();
        Focus();
    }
    void Focus() {
        activateWindow();
        control.setFocus();
        QCoreApplication::processEvents();
    }
    Control control;
};

struct Distance : Form<tov::CTovEditValueDistance> {
    Distance() {
        control.SetRange(-1e6, 1e6);
        control.SetInputFormat(3U);
        control.SetTrimTrailingZeros(0);
    }
};

struct Spin : Form<QDoubleSpinBox> {
    Spin() {
        control.setRange(-1e6, 1e6);
        control.setDecimals(3);
        control.setSuffix(" m");
        control.setKeyboardTracking(true);
    }
};

void Press(QWidget& widget, int key, QString const& text) {
    QKeyEvent press(QEvent::KeyPress, key, {}, text);
    QCoreApplication::sendEvent(&widget, &press);
    QKeyEvent release(QEvent::KeyRelease, key, {}, text);
    QCoreApplication::sendEvent(&widget, &release);
}

// A digit behind the first one, and away with it again.
void TypeDigits(QWidget& widget, std::size_t times) {
    Press(widget, Qt::Key_Home, {});
    for (std::size_t i = 0; i < times; ++i) {
        Press(widget, Qt::Key_5, "5");
        Press(widget, Qt::Key_Backspace, "\b");
    }
}

void BM_TypeACharacter(benchmark::State& state) {
    constexpr std::size_t times = 500;
    Distance ours;
    Spin theirs;
    ours.control.SetValue(1234.567);
    theirs.control.setValue(1234.567);
    int told = 0;
    QObject::connect(&ours.control, &tov::CTovEdit::valueChanged, [&](double) { ++told; });
    QObject::connect(&theirs.control, &QDoubleSpinBox::valueChanged, [&](double) { --told; });
    bench::AgainstPeer(
        state, 2 * times,
        [&] {
            ours.Focus();
            TypeDigits(ours.control, times);
        },
        [&] {
            theirs.Focus();
            TypeDigits(theirs.control, times);
        },
        bench::Want::kWithin);
    if (told != 0) state.SkipWithError("they did not see the same changes");
}
BENCHMARK(BM_TypeACharacter)->Iterations(31);

constexpr std::size_t controls = 100;

template <class Edit>
std::unique_ptr<QWidget> FormOf(tov::CTovUnitSettingsAngle& settings) {
    auto form = std::make_unique<QWidget>();
    auto* const layout = new QVBoxLayout(form.get());
    for (std::size_t i = 0; i < controls; ++i) {
        if constexpr (std::is_base_of_v<tov::CTovEditValue, Edit>) {
            layout->addWidget(new Edit(&settings));
        } else {
            auto* const edit = new Edit;
            edit->setSuffix("°");
            layout->addWidget(edit);
        }
    }
    return form;
}

// Made, laid out and shown; what they take to go is not counted.
void CreateAngles(benchmark::State& state, long unit) {
    tov::CTovUnitSettingsAngle settings(unit, nullptr);
    std::vector<std::unique_ptr<QWidget>> forms;
    auto const make = [&](auto form) {
        form->show();
        forms.push_back(std::move(form));
    };
    bench::AgainstPeer(
        state, controls, [&] { make(FormOf<tov::CTovEditValueAngle>(settings)); },
        [&] { make(FormOf<QDoubleSpinBox>(settings)); }, bench::Want::kWithin, [&] { forms.clear(); });
}
void BM_CreatePlainAngles(benchmark::State& state) {
    CreateAngles(state, tov::TOV_UNIT_DEGREES);
}
void BM_CreateSplitAngles(benchmark::State& state) {
    CreateAngles(state, tov::TOV_UNIT_DMS);
}
BENCHMARK(BM_CreatePlainAngles)->Iterations(31);
BENCHMARK(BM_CreateSplitAngles)->Iterations(31);

void BM_SetValues(benchmark::State& state) {
    constexpr std::size_t values = 100'000;
    Distance ours;
    Spin theirs;
    auto const valueOf = [](std::size_t i) { return 0.001 * static_cast<double>(i * 7919 % 1'000'000); };
    bench::AgainstPeer(
        state, values,
        [&] {
            for (std::size_t i = 0; i < values; ++i)
                ours.control.SetValue(valueOf(i));
        },
        [&] {
            for (std::size_t i = 0; i < values; ++i)
                theirs.control.setValue(valueOf(i));
        },
        bench::Want::kWithin);
    if (ours.control.text().toDouble() != theirs.control.value())
        state.SkipWithError("they show other values");
}
BENCHMARK(BM_SetValues)->Iterations(11);

}  // namespace
