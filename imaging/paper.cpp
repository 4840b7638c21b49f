#include <tov310/paper.h>

#include <tov310/device_context.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace tov {
namespace {

struct PaperSize {
    int number;
    double width;  // inches
    double height;
};

constexpr PaperSize a4 = {9, 8.267716535433072, 11.692913385826772};

constexpr PaperSize paperSizes[] = {
    {1, 8.5, 11},
    {2, 8.5, 11},
    {3, 11, 17},
    {4, 17, 11},
    {5, 8.5, 14},
    {6, 5.5, 8.5},
    {7, 7.25, 10.5},
    {8, 11.692913385826772, 16.535433070866144},
    a4,
    {10, a4.width, a4.height},
    {11, 5.826771653543307, 8.267716535433072},
    {13, 7.165354330708662, 10.118110236220472},
    {14, 8.5, 13},
    {15, 8.46456692913386, 10.826771653543307},
    {16, 10, 14},
    {17, 11, 17},
    {18, 8.5, 11},
    {19, 3.875, 8.875},
    {20, 4.125, 9.5},
    {21, 4.5, 10.375},
    {22, 4.75, 11},
    {23, 5, 11.5},
    {24, 17, 22},
    {25, 22, 34},
    {26, 34, 44},
    {27, 4.330708661417323, 8.661417322834646},
    {28, 6.377952755905512, 9.015748031496063},
    {29, 12.755905511811024, 18.031496062992126},
    {30, 9.015748031496063, 12.755905511811024},
    {31, 4.488188976377953, 6.377952755905512},
    {32, 4.488188976377953, 9.015748031496063},
    {33, 9.84251968503937, 13.89763779527559},
    {34, 6.929133858267717, 9.84251968503937},
    {36, 4.330708661417323, 9.05511811023622},
    {37, 3.875, 7.5},
    {38, 3.625, 6.5},
    {39, 14.875, 11},
    {40, 8.5, 12},
    {41, 8.5, 13},
    {118, a4.width, a4.height},
};

// One side pair of the area: where it begins and ends.
struct PrintSpan {
    int from;
    int to;
};

PrintSpan SpanWithin(double paper, int dotsPerInch, int printable, int marginFrom, int marginTo,
                     int perInch) {
    int blank = TovRoundToPixel(std::trunc(dotsPerInch * paper)) - printable;
    if (blank % 2 != 0) ++blank;
    int const half = blank / 2;
    auto const dots = [&](int margin) {
        auto const exact = std::int64_t{margin} * dotsPerInch / perInch;
        return static_cast<int>(std::clamp<std::int64_t>(exact, INT32_MIN / 4, INT32_MAX / 4));
    };
    return {std::max(dots(marginFrom), half) - half, half - std::max(dots(marginTo), half) + printable};
}

}  // namespace

int CTovCDCHelper::GetPaperSizeInInches(_devicemodeA const* mode, double& width, double& height) {
    width = height = 0;
    if (mode == nullptr) return 0;
    constexpr double tenthsOfMillimetrePerInch = 254.0;
    if ((mode->dmFields & DM_PAPERLENGTH) != 0) height = mode->dmPaperLength / tenthsOfMillimetrePerInch;
    if ((mode->dmFields & DM_PAPERWIDTH) != 0) width = mode->dmPaperWidth / tenthsOfMillimetrePerInch;
    if (width != 0 && height != 0) return 1;
    if ((mode->dmFields & DM_PAPERSIZE) == 0) return 0;
    auto const size = std::ranges::find(paperSizes, int{mode->dmPaperSize}, &PaperSize::number);
    if (size != std::end(paperSizes)) {
        if (width == 0) width = size->width;
        if (height == 0) height = size->height;
    }
    int const known = width != 0 && height != 0;
    if (width == 0) width = a4.width;
    if (height == 0) height = a4.height;
    return known;
}

int CTovCDCHelper::GetPaperSizeInInches(CPrintInfo const* info, double& width, double& height) {
    return GetPaperSizeInInches(info != nullptr ? info->m_pDevMode : nullptr, width, height);
}

CRect CTovCDCHelper::CalculatePrintArea(CDC const* dc, double paperWidth, double paperHeight,
                                        CRect const& margins, int metric) {
    if (dc == nullptr) return {};
    int const perInch = metric != 0 ? 2540 : 1000;
    PrintSpan const across = SpanWithin(paperWidth, dc->GetDeviceCaps(LOGPIXELSX), dc->GetDeviceCaps(HORZRES),
                                        margins.left, margins.right, perInch);
    PrintSpan const down = SpanWithin(paperHeight, dc->GetDeviceCaps(LOGPIXELSY), dc->GetDeviceCaps(VERTRES),
                                      margins.top, margins.bottom, perInch);
    return {across.from, down.from, across.to, down.to};
}

}  // namespace tov
