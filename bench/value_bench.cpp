// Text of angles against the peers that a user would reach for. Each peer is measured in the same run; the
// counter "ratio" tells how many times faster the library is (text), or how many times slower (Convert).
#include <tov310/angle.h>
#include <tov310/value.h>

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#ifdef TOV_HAVE_GEOGRAPHICLIB
#include <GeographicLib/DMS.hpp>
#endif

#include "peer.h"

namespace {

constexpr double degree = std::numbers::pi / 180;
constexpr std::size_t count = 4096;

std::vector<double> Degrees() {
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> any(-180, 180);
    std::vector<double> degrees(count);
    for (double& value : degrees)
        value = any(random);
    return degrees;
}

std::vector<std::string> Texts() {
    std::vector<std::string> texts;
    for (double const value : Degrees()) {
        char text[40];
        int const minutes = static_cast<int>(std::fabs(value) * 60);
        std::snprintf(text, sizeof text, "%s%d %02d %08.5f", value < 0 ? "-" : "", minutes / 60, minutes % 60,
                      std::fmod(std::fabs(value) * 3600, 60));
        texts.emplace_back(text);
    }
    return texts;
}

// Angles that share settings with the default form at 5 decimals of the seconds.
struct Angles {
    tov::CTovUnitSettingsAngle settings;
    std::vector<tov::CTovValueAngle> values;

    explicit Angles(std::vector<double> const& degrees) {
        settings.Unit(tov::TOV_UNIT_DMS);
        for (double const value : degrees)
            values.emplace_back(&settings) = value * degree;
    }

    void Print() {
        std::string text;
        for (tov::CTovValueAngle& angle : values) {
            angle.GetString(text);
            benchmark::DoNotOptimize(text.data());
        }
    }
};

// The fields stand ready: this is the printing alone.
void PrintFields(std::vector<double> const& degrees) {
    std::string text;
    for (double const value : degrees) {
        char buffer[64];
        int const whole = static_cast<int>(value);
        int const length = std::snprintf(buffer, sizeof buffer, "%s%3d%s %02d%s %08.5f\"", " ", whole,
                                         "\xC2\xB0", 34, "'", 56.78901);
        text.assign(buffer, static_cast<std::size_t>(length));
        benchmark::DoNotOptimize(text.data());
    }
}

void ReadLibrary(std::vector<std::string> const& texts) {
    tov::CTovUnitSettingsAngle settings(tov::TOV_UNIT_DMS, nullptr);
    tov::CTovValueAngle angle(&settings);
    for (std::string const& text : texts) {
        angle.SetString(text.c_str());
        benchmark::DoNotOptimize(angle.GetDouble());
    }
}

void TextAgainstPrintf(benchmark::State& state) {
    std::vector<double> const degrees = Degrees();
    Angles angles(degrees);
    bench::AgainstPeer(
        state, count, [&] { angles.Print(); }, [&] { PrintFields(degrees); }, bench::Want::kFaster);
}
BENCHMARK(TextAgainstPrintf);

#ifdef TOV_HAVE_GEOGRAPHICLIB
void TextAgainstGeographicLib(benchmark::State& state) {
    std::vector<double> const degrees = Degrees();
    Angles angles(degrees);
    bench::AgainstPeer(
        state, count, [&] { angles.Print(); },
        [&] {
            for (double const value : degrees) {
                std::string const text = GeographicLib::DMS::Encode(value, GeographicLib::DMS::SECOND, 5);
                benchmark::DoNotOptimize(text.data());
            }
        },
        bench::Want::kFaster);
}
BENCHMARK(TextAgainstGeographicLib);

void ReadAgainstGeographicLib(benchmark::State& state) {
    std::vector<std::string> const texts = Texts();
    std::vector<std::string> peer;
    for (std::string text : texts) {
        text.replace(text.find(' '), 1, "d");
        text.replace(text.find(' '), 1, "'");
        peer.push_back(text + "\"");
    }
    bench::AgainstPeer(
        state, count, [&] { ReadLibrary(texts); },
        [&] {
            for (std::string const& text : peer) {
                GeographicLib::DMS::flag flag{};
                benchmark::DoNotOptimize(GeographicLib::DMS::Decode(text, flag));
            }
        },
        bench::Want::kFaster);
}
BENCHMARK(ReadAgainstGeographicLib);
#endif

void ConvertAgainstMultiplication(benchmark::State& state) {
    std::vector<double> const numbers = Degrees();
    long from = tov::TOV_UNIT_US_SURVEY_FEET;
    long to = tov::TOV_UNIT_METRES;
    double factor = 0.3048006096012192;
    benchmark::DoNotOptimize(from);
    benchmark::DoNotOptimize(to);
    benchmark::DoNotOptimize(factor);
    bench::AgainstPeer(
        state, count,
        [&] {
            for (double const number : numbers) {
                double out = 0;
                tov::CTovValue::Convert(number, from, out, to);
                benchmark::DoNotOptimize(out);
            }
        },
        [&] {
            for (double const number : numbers)
                benchmark::DoNotOptimize(number * factor);
        },
        bench::Want::kWithin);
}
BENCHMARK(ConvertAgainstMultiplication);

}  // namespace

BENCHMARK_MAIN();
