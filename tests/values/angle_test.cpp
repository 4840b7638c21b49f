#include <tov310/angle.h>
#include <tov310/distance.h>
#include <tov310/profile.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <numbers>
#include <random>
#include <string>

namespace tov {
namespace {

constexpr double pi = std::numbers::pi;
constexpr double degree = pi / 180;

CString Text(CTovValue& value) {
    CString text;
    value.GetString(text);
    return text;
}

// The angle of a text in a unit, in degrees.
double Read(char const* text, long unit, bool trimmed = false, bool small = false) {
    CTovUnitSettingsAngle settings(unit, nullptr);
    settings.TrimLeadingZeros(trimmed);
    settings.UseSecOnly(small);
    CTovValueAngle const angle(text, &settings);
    return angle.GetDouble() / degree;
}

TEST(Angle, ReadsTexts) {
    double const dms = 12 + 34 / 60.0 + 56.7 / 3600;
    struct {
        char const* text;
        long unit;
        double degrees;
    } const rows[] = {
        {"12 34 56.7", 12, dms},
        {"12 34 56.7 S", 12, -dms},
        {"12 34 56.7 N", 12, dms},
        {"S12°34'56.7\"", 12, -dms},
        {"12°34'56.7\" W", 12, -dms},
        {"-12 34 56.7 S", 12, dms},
        {"-  0° 12' 34.5\"", 12, -(12 / 60.0 + 34.5 / 3600)},  // the sign stands before 0
        {"-0 0 1", 12, -1 / 3600.0},
        {"-12 30 00", 12, -12.5},
        {"12 -30 00", 12, -12.5},
        {"12 30 -1", 12, -(12.5 + 1 / 3600.0)},
        {"12 30", 12, 12.5},
        {"12", 12, 12},
        {"12.5 30", 12, 12},  // whole degrees end at the point
        {"W-5", 12, 5},       // both the letter and the sign
        {"X-5", 12, -5},
        {"", 12, 0},
        {"nothing", 12, 0},
        {".5", 12, 0},
        {"-", 12, 0},
        {"12 75 0", 12, 13.25},  // more minutes than a degree has are carried
        {"12 34 56.7", 15, 12.34567 * 0.9},
        {"-12g 34c 56.7cc", 15, -12.34567 * 0.9},
        {" 12.5", 11, 12.5},
        {"-12.5 S", 11, 12.5},
        {"12,5", 11, 12},  // the point is a point in every locale
        {"1e1x", 11, 10},
        {"0x10", 11, 0},
        {"nan", 11, 0},
        {"inf", 11, 0},
        {"+7", 11, 7},
        {"12.3030", 13, 12 + 30 / 60.0 + 30 / 3600.0},
        {"100", 14, 90},
        {"100", 16, 90},
        {"0.25", 17, 90},
        {"1.5707963267948966", 18, 90},
    };
    for (auto const& row : rows)
        EXPECT_NEAR(Read(row.text, row.unit), row.degrees, 3e-9) << row.text;
    EXPECT_EQ(Read(nullptr, 12), 0);
    for (long const unit : {11L, 12L, 13L, 14L, 15L, 16L, 17L, 18L}) {
        EXPECT_TRUE(std::isfinite(Read("-1e999", unit)) && std::isfinite(Read("1e999", unit, false, true)))
            << unit;
    }
    EXPECT_NEAR(Read("99999999999 0 0", 12), std::fmod(2147483647.0, 360), 1e-6);
}

TEST(Angle, ReadsTextsWithoutLeadingZeros) {
    struct {
        char const* text;
        double seconds;
    } const rows[] = {
        {"  5.6", 5.6},           {"- 5.6000\"", -5.6}, {"10' 56.0\"", 656}, {"-10 56.5", -656.5},
        {"1 10 56.5", 4256.5},    {"1 10 56", 4256},    {"12", 43200},       {".5", 0.5},
        {"9 9 1 10 6.5", 4206.5}, {"5-2.5", -302.5},
    };
    for (auto const& row : rows)
        EXPECT_NEAR(Read(row.text, 12, true) * 3600, row.seconds, 1e-5) << row.text;
}

TEST(Angle, ReadsSmallUnits) {
    EXPECT_NEAR(Read("-5430", 12, false, true), -1.5083333333333333, 1e-14);
    EXPECT_NEAR(Read("45296.789 W", 13, false, true), -12.582441388888889, 1e-13);
    EXPECT_NEAR(Read("5400", 11, false, true), 1.5, 1e-14);
    EXPECT_NEAR(Read("-1250", 15, false, true), -1.25 * 0.9, 1e-14);
    EXPECT_NEAR(Read("1250", 16, false, true), 1.25 * 0.9, 1e-14);
    EXPECT_NEAR(Read("1.25", 14, false, true), 1.25 * 0.9, 1e-14);  // read as grads
    EXPECT_NEAR(Read("0.25", 17, false, true), 90, 1e-13);
}

TEST(Angle, NormalisesWhatIsStored) {
    struct {
        double set, angle, latitude;
    } const rows[] = {
        {3.5, 3.5, 3.5 - 2 * pi},
        {-7.0, -0.7168146928204138, -0.7168146928204138},
        {-3.5, -3.5, 2 * pi - 3.5},
        {pi, pi, pi},
        {-pi, -pi, -pi},
        {2 * pi, 0, 0},
        {100, std::fmod(100, 2 * pi), std::fmod(100, 2 * pi) - 2 * pi + 0},
    };
    for (auto const& row : rows) {
        CTovValueAngle angle;
        CTovValueAngleLat lat;
        CTovValueAngleLon lon;
        angle = row.set;
        lat = row.set;
        lon = row.set;
        EXPECT_NEAR(angle.GetDouble(), row.angle, 1e-15);
        EXPECT_NEAR(lat.GetDouble(), std::remainder(row.latitude, 2 * pi), 1e-13);
        EXPECT_EQ(lat.GetDouble(), lon.GetDouble());
    }
    // What is stored as it was given comes back bit for bit.
    CTovValueAngle angle;
    angle = 1.2345678901234567;
    EXPECT_EQ(static_cast<double>(angle), 1.2345678901234567);
}

TEST(Angle, PrintsHemispheres) {
    struct {
        double degrees;
        char const* format;
        char const* latitude;
        char const* longitude;
    } const rows[] = {
        {12.5, nullptr, "  12° 30' 00.0000\" 北", "  12° 30' 00.0000\" 东"},
        {-12.5, nullptr, "  12° 30' 00.0000\" S", "  12° 30' 00.0000\" W"},
        {-0.0, nullptr, "   0° 00' 00.0000\" 北", "   0° 00' 00.0000\" 东"},
        {-1e-9, nullptr, "   0° 00' 00.0000\" 北",
         "   0° 00' 00.0000\" 东"},  // zero has no hemisphere of its own
        {-12.5, "%Q%DegOrG", "S  12", "W  12"},
        {-1e-9, "1: %SecOrCC %Q", "1:  0.0000 北", "1:  0.0000 东"},
        {12.5, "%DegOrG,%MinOrC", "  12,30", "  12,30"}  // no place for the letter, and none behind
    };
    for (auto const& row : rows) {
        CTovUnitSettingsAngleLatLon settings;
        settings.Unit(12);
        settings.Format(row.format);
        CTovValueAngleLat lat(&settings);
        CTovValueAngleLon lon(&settings);
        lat = row.degrees * degree;
        lon = row.degrees * degree;
        EXPECT_EQ(Text(lat), row.latitude);
        EXPECT_EQ(Text(lon), row.longitude);
    }
    // A plain angle clears the token and keeps its sign.
    CTovValueAngle plain(-12.5, 11, "[%Q]%.1f");
    EXPECT_EQ(Text(plain), "[]-12.5");
    CTovValueAngleLat lat;
    EXPECT_EQ(lat.GetFlag(), CTovValueAngle::flagLatitude);
    EXPECT_EQ(CTovValueAngleLon().GetFlag(), CTovValueAngle::flagLongitude);
}

TEST(Angle, GivesOtherUnitsInTheMannerOfItsOwn) {
    CTovValueAngle angle(12.5, 11, nullptr);
    CString text;
    EXPECT_EQ(angle.ConvertStdTo(text, 14L, -1, 0UL), 0);
    EXPECT_EQ(text, " 13.88889");
    double number = 0;
    EXPECT_EQ(angle.ConvertStdTo(number, 12L, 2, 0UL), 0);
    EXPECT_EQ(number, 12.3);
    EXPECT_EQ(angle.ConvertStdTo(number, 12L, std::numeric_limits<int>::max(), 0UL), 0);
    EXPECT_NEAR(number, 12.3, 1e-15);
    text = "stays";
    EXPECT_EQ(angle.ConvertStdTo(text, 99L, -1, 0UL), 1);
    EXPECT_EQ(text, "stays");
    EXPECT_EQ(angle.IsValid(), 1);  // the answer has cleared the status
    EXPECT_EQ(angle.ConvertToStd(1.0, 99L, -1, 0UL), 1);
    EXPECT_EQ(angle.GetDouble(), 0);
    angle = 5;  // only doubles and texts go into a value that has a unit
    EXPECT_EQ(angle.GetDouble() + angle.SetFloat(2.5F) + static_cast<int>(CTovValueAngle(1.0, 18, nullptr)),
              0);

    CTovUnitSettingsAngle gon(16, nullptr);
    CTovValueAngle const right(pi / 2, 18, nullptr);
    CTovValueAngle copy = right;
    EXPECT_EQ(copy.ConvertStdTo(text, &gon), 0);
    EXPECT_EQ(text, " 100.00000");
    EXPECT_EQ(copy.ConvertStdTo(text, 1, 1), 0);
    EXPECT_EQ(text, " 1.57080");
    copy.StdFormat(text);
    EXPECT_EQ(text, " 1.57080 [rad]");
}

TEST(Angle, CirclesEndAtTheLimit) {
    for (long const unit : {11L, 12L, 13L, 14L, 15L, 16L, 17L, 18L, -11L, -12L, -13L, -14L, -15L, -16L}) {
        CTovUnitSettingsAngle settings(std::abs(unit), nullptr);
        settings.LimitToCircle(1);
        settings.UseSecOnly(unit < 0);
        settings.Precision(4);  // 2 pi prints as a little more than itself
        CTovValueAngle angle(&settings);
        angle = std::nextafter(2 * pi, 0);
        EXPECT_EQ(Text(angle).find_first_of("123456789-"), CString::npos) << unit << Text(angle);
        angle = -std::nextafter(2 * pi, 0);
        EXPECT_EQ(Text(angle).find_first_of("123456789-"), CString::npos) << unit << Text(angle);
        settings.LimitToCircle(0);
        EXPECT_EQ(Text(angle)[0], '-') << unit << Text(angle);
    }
}

// A packed number is never printed with 60 in it, whatever the decimals and whoever asks for them.
TEST(Angle, PackedNumbersCarry) {
    CTovUnitSettingsAngle settings(13, nullptr);
    CTovValueAngle angle(&settings);
    angle = (12 + 59 / 60.0 + 59.99999999 / 3600) * degree;
    for (int const precision : {1, 2, 3, 4, 5, 9}) {
        settings.Precision(precision);
        CString text = Text(angle);
        EXPECT_EQ(std::stod(text), 13) << text;
        angle.ConvertStdTo(text, 13L, -1, 0UL);
        EXPECT_EQ(std::stod(text), 13) << text;
    }
    settings.Precision(15);
    EXPECT_EQ(Text(angle).substr(0, 7), " 12.595");
    settings.Format("%.3f");
    EXPECT_EQ(Text(angle), "13.000");
    settings.Format("%.7f");
    settings.Precision(2);
    EXPECT_EQ(Text(angle), "13.0000000");
}

TEST(Angle, CopiesShareSettingsThatLive) {
    auto original = std::make_unique<CTovValueAngle>(12.5, 11L, "%.1f%U");
    CTovValueAngle copy = *original;
    CTovValueAngle assigned;
    assigned = *original;
    EXPECT_EQ(copy.UnitSettings(), original->UnitSettings());
    original->UnitSettings()->Format("%.2f");
    original.reset();
    EXPECT_EQ(Text(copy), "12.50");
    EXPECT_EQ(Text(assigned), "12.50");
    copy.UnitSettings(copy.UnitSettings(), 1);
    copy.UnitSettings(copy.UnitSettings(), 0);
    copy.UnitSettings(nullptr, 1);
    EXPECT_EQ(Text(copy), "12.50");
    CTovUnitSettingsAngle own(17, nullptr);
    copy.UnitSettings(&own, 0);
    EXPECT_EQ(Text(copy), " 0.03472");

    CTovValueAngleLat lat;
    lat = copy;
    EXPECT_EQ(lat.GetDouble(), copy.GetDouble());
    EXPECT_EQ(lat.GetFlag(), CTovValueAngle::flagLatitude);
}

// The half circle stays in its hemisphere, in every unit whose text can hold it.
TEST(Angle, TheHalfCircleStaysOnItsSide) {
    for (long const unit : {11L, 12L, 13L, 14L, 15L, 16L, 17L}) {
        for (double const half : {pi, -pi, std::nextafter(pi, 0)}) {
            CTovUnitSettingsAngleLatLon settings;
            settings.Unit(unit);
            CTovValueAngleLon value(&settings);
            CTovValueAngleLon back(&settings);
            value = half;
            back = Text(value);
            EXPECT_EQ(Text(back), Text(value)) << unit;
        }
    }
}

static_assert(!std::is_assignable_v<CTovValueAngle&, bool> && !std::is_assignable_v<CTovValueAngle&, char>);
static_assert(!std::is_assignable_v<CTovValueAngle&, std::nullptr_t>);
static_assert(!std::is_assignable_v<CTovValueAngleLat&, CTovValueDistance&>);
static_assert(!std::is_assignable_v<CTovValue&, CTovValue&>);

struct Manner {
    long unit;
    int precision;
    bool signs, trimLeading, trimTrailing, small, limit;
};

void Prepare(CTovUnitSettingsAngle& settings, Manner const& manner) {
    settings.Unit(manner.unit);
    settings.Precision(manner.precision);
    settings.UseDmsSymbols(manner.signs);
    settings.TrimLeadingZeros(manner.trimLeading);
    settings.TrimTrailingZeros(manner.trimTrailing);
    settings.UseSecOnly(manner.small);
    settings.LimitToCircle(manner.limit);
}

// What is printed reads back as what prints the same: in every unit and manner, for any angle. Left out are a
// full circle, which reads as 0 without the limit, and what prints above a half circle in radians, which
// reads as the other hemisphere.
template <typename Value, typename Settings>
void TextsComeBack(std::uint64_t seed, double most) {
    std::mt19937_64 random(seed);
    std::uniform_real_distribution<double> any(-most, most);
    auto const coin = [&random] { return random() % 2 == 0; };
    for (int round = 0; round < 400; ++round) {
        Manner manner{11 + static_cast<long>(random() % 8),
                      1 + static_cast<int>(random() % 10),
                      coin(),
                      coin(),
                      coin(),
                      coin(),
                      coin()};
        if (manner.unit == 14) manner.small = false;
        if (manner.small) manner.precision = std::min(manner.precision, 8);  // a double has 15 digits
        Settings settings;
        Prepare(settings, manner);
        Value value(&settings);
        Value back(&settings);
        for (int i = 0; i < 2500; ++i) {
            double angle = any(random);
            switch (random() % 4) {
                case 0:
                    angle = std::round(angle / degree) * degree;
                    break;  // whole degrees
                case 1:
                    angle = std::round(angle / degree * 60) / 60 * degree;
                    break;  // whole minutes
                case 2:
                    angle *= std::pow(10.0, -static_cast<int>(random() % 9));
                    break;  // small angles
                default:
                    break;
            }
            if (std::fabs(angle) > most * 0.94) continue;  // may print as the full or half circle
            value = angle;
            CString const text = Text(value);
            back = text;
            CString const again = Text(back);
            ASSERT_EQ(text, again) << "unit " << manner.unit << " precision " << manner.precision << " small "
                                   << manner.small << " trim " << manner.trimLeading << manner.trimTrailing;
            ASSERT_EQ(text.find("60'"), CString::npos) << text;
            ASSERT_EQ(text.find("' 60."), CString::npos) << text;
        }
    }
}

TEST(Angle, TextsComeBack) {
    TextsComeBack<CTovValueAngle, CTovUnitSettingsAngle>(1, 2 * pi);
}
TEST(Angle, TextsOfLatitudesComeBack) {
    TextsComeBack<CTovValueAngleLat, CTovUnitSettingsAngleLatLon>(2, pi);
}
TEST(Angle, TextsOfLongitudesComeBack) {
    TextsComeBack<CTovValueAngleLon, CTovUnitSettingsAngleLatLon>(3, pi);
}

}  // namespace
}  // namespace tov
