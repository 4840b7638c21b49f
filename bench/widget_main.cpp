// Benchmarks of widgets run with an application object and without a display.
#include <benchmark/benchmark.h>

#include <QApplication>

#include <cstdlib>

int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    benchmark::Initialize(&argc, argv);
    QApplication const application(argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
