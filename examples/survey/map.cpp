#include "map.h"

#include "answer.h"
#include "map_sheet.h"
#include "text.h"
#include "units.h"

#include <tov310/bitmap.h>
#include <tov310/unit_settings.h>
#include <tov310/value.h>

#include <array>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace survey {
namespace {

struct MapOptions {
    std::string image;
    std::string out;
    tov::enmImageFormat format = tov::eImageFormatUnknown;
    double angle = 0;
    Unit const* unit = FindUnit(AngleUnits(), "dec");
    double opacity = 100;
    std::optional<std::array<double, 4>> extent;  // west, south, east, north
};

constexpr std::pair<std::string_view, tov::enmImageFormat> formats[] = {
    {".png", tov::eImageFormatPng},  {".jpg", tov::eImageFormatJpeg},  {".jpeg", tov::eImageFormatJpeg},
    {".tif", tov::eImageFormatTiff}, {".tiff", tov::eImageFormatTiff}, {".bmp", tov::eImageFormatBmp},
    {".gif", tov::eImageFormatGif},  {".webp", tov::eImageFormatWebp}, {".jp2", tov::eImageFormatJp2},
};

tov::enmImageFormat FormatOf(std::string const& path) {
    std::string const extension = Folded(std::filesystem::path(path).extension().string());
    std::string known;
    for (auto const& [name, format] : formats) {
        if (name == extension) return format;
        known += (known.empty() ? "" : ", ") + std::string(name);
    }
    throw UsageError("--out: the name of the file ends in one of " + known);
}

double ReadReal(std::string_view option, std::string_view text) {
    double number = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(number))
        throw UsageError(std::string(option) + ": a number, not " + Quoted(text));
    return number;
}

std::array<double, 4> ReadExtent(std::string_view option, std::string_view text) {
    std::array<double, 4> sides{};
    for (std::size_t i = 0; i < sides.size(); ++i) {
        auto const comma = text.find(',');
        if ((comma == text.npos) != (i == 3))
            throw UsageError(std::string(option) + ": four numbers with commas, west, south, east and north");
        sides[i] = ReadReal(option, text.substr(0, comma));
        text.remove_prefix(i < 3 ? comma + 1 : 0);
    }
    if (!(sides[0] < sides[2] && sides[1] < sides[3]))
        throw UsageError(std::string(option) + ": west is less than east, and south less than north");
    auto const& [west, south, east, north] = sides;
    if (west < -360 || east > 360 || east - west > 360 || south < -90 || north > 90)
        throw UsageError(std::string(option) +
                         ": longitudes are from -360 to 360 degrees and no more than 360 apart, latitudes "
                         "from -90 to 90");
    // A tenth of a metre; less would need more digits than the labels have.
    if (east - west < 1e-6 || north - south < 1e-6)
        throw UsageError(std::string(option) + ": at least 0.000001 degrees from edge to edge");
    return sides;
}

MapOptions ReadMapOptions(Arguments& arguments, CommonOptions& common) {
    MapOptions options;
    while (arguments.Next()) {
        if (TakeCommon(arguments, common)) continue;
        std::string_view const name = arguments.Name();
        if (arguments.IsFile()) {
            if (!options.image.empty()) throw UsageError("map: only one image at a time");
            options.image = name;
        } else if (name == "--rotate") {
            options.angle = ReadReal(name, arguments.Value());
        } else if (name == "--unit") {
            std::string_view const unit = arguments.Value();
            options.unit = FindUnit(AngleUnits(), unit);
            if (options.unit == nullptr) throw UsageError("--unit: no unit is called " + Quoted(unit));
        } else if (name == "--blend") {
            options.opacity = ReadReal(name, arguments.Value());
            if (options.opacity < 0 || options.opacity > 100)
                throw UsageError("--blend: a number from 0 to 100");
        } else if (name == "--extent") {
            options.extent = ReadExtent(name, arguments.Value());
        } else if (name == "--out") {
            options.out = arguments.Text();
            options.format = FormatOf(options.out);
        } else {
            arguments.Unknown();
        }
    }
    if (!common.help && (options.image.empty() || options.out.empty()))
        throw UsageError("map needs an image, and --out with the file to write");
    return options;
}

MapExtent ExtentOf(MapOptions const& options, tov::CTovDib const& image) {
    if (!options.extent) return {};
    auto const& [west, south, east, north] = *options.extent;
    return {west, north, (east - west) / image.GetWidth(), (south - north) / image.GetHeight(), true};
}

}  // namespace

std::string MapHelp() {
    return R"(Draws IMAGE on a map sheet with a graticule and a scale, and with a north arrow where its
extent is told. IMAGE is a PNG, JPEG, TIFF, BMP, GIF, JPEG 2000, WebP or PNM file.

  --out FILE             the file to write; its name tells the kind: png, jpg, tif, bmp,
                         gif, webp, jp2
  --rotate ANGLE         turn the image counterclockwise
  --unit UNIT            unit of the angle, as for places; otherwise degrees
  --blend PERCENT        how much of the image covers the paper, 0 to 100, which it is
                         otherwise
  --extent W,S,E,N       degrees at the edges of the image, with a scale in metres for the middle
                         latitude; without, it is measured in pixels
)";
}

int RunMap(Arguments& arguments, CommonOptions& common) {
    MapOptions const options = ReadMapOptions(arguments, common);
    LoadLanguage(common.language);
    if (common.help) return kFine;
    tov::CTovDib image, sheet;
    if (!image.Create(nullptr, options.image.c_str(), 1)) {
        std::error_code failure;
        bool const isThere = std::filesystem::exists(options.image, failure);
        Complain() << Shown(options.image)
                   << (isThere ? ": this is no image that can be read, or the module Dorn200 is missing\n"
                               : ": there is no such file\n");
        return kUnreadable;
    }
    double radians = 0;
    tov::CTovValue::Convert(options.angle, options.unit->id, radians, tov::TOV_UNIT_RADIANS);
    // Whole turns would only cost digits.
    MapStyle const style{std::remainder(radians, 2 * std::acos(-1.0)),
                         static_cast<int>(std::lround(options.opacity * 2.55))};
    if (!DrawMapSheet(sheet, image, ExtentOf(options, image), style)) {
        Complain() << Shown(options.image) << ": the sheet would be too large\n";
        return kUnreadable;
    }
    if (!tov::CTovBitmap::SaveBitmap(sheet.GetBitmap(), options.format, options.out.c_str())) {
        // Some kinds of images can be read without the module, but none can be written, nor its size told.
        bool const hasModule =
            tov::CTovBitmap::GetImageSize(options.image.c_str(), nullptr, nullptr, nullptr);
        Complain() << Shown(options.out)
                   << (hasModule ? ": the image cannot be written\n"
                                 : ": the image cannot be written, since the module Dorn200 is missing\n");
        return kUnreadable;
    }
    std::cout << Shown(options.out) << ": " << sheet.GetWidth() << " x " << sheet.GetHeight() << " pixels\n";
    return kFine;
}

}  // namespace survey
