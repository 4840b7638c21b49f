#include <tov310/angle.h>
#include <tov310/distance.h>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <random>

namespace tov {
namespace {

constexpr double pi = std::numbers::pi;
constexpr double degree = pi / 180;

CString Text(CTovValue& value) {
    CString text;
    value.GetString(text);
    return text;
}

struct Manner {
    long unit = 12;
    int precision = 5;
    bool signs = true, trimLeading = false, trimTrailing = false, small = false, limit = false;

    void Apply(CTovUnitSettingsAngle& settings) const {
        settings.Unit(unit);
        settings.Precision(precision);
        settings.UseDmsSymbols(signs);
        settings.TrimLeadingZeros(trimLeading);
        settings.TrimTrailingZeros(trimTrailing);
        settings.UseSecOnly(small);
        settings.LimitToCircle(limit);
    }
};

// The angle of a text, in degrees.
double Read(char const* text, Manner const& manner) {
    CTovUnitSettingsAngle settings;
    manner.Apply(settings);
    return CTovValueAngle(text, &settings).GetDouble() / degree;
}

TEST(Angle, ReadsTexts) {
    double const dms = 12 + 34 / 60.0 + 56.7 / 3600;
    Manner const trimmed{.trimLeading = true};
    auto const unit = [](long id) { return Manner{.unit = id}; };
    auto const small = [](long id) { return Manner{.unit = id, .small = true}; };
    std::tuple<char const*, Manner, double> const rows[] = {
        // clang-format off
        {"12 34 56.7", {}, dms}, {"12 34 56.7 S", {}, -dms}, {"12 34 56.7 N", {}, dms}, {"-12 34 56.7 S", {}, dms},
        {"12°34'56.7\" W", {}, -dms}, {"-  0° 12' 34.5\"", {}, -(12 / 60.0 + 34.5 / 3600)}, {"-0 0 1", {}, -1 / 3600.0},
        {"-12 30 00", {}, -12.5}, {"12 -30 00", {}, -12.5}, {"12 30", {}, 12.5}, {"12.5 30", {}, 12}, {"W-5", {}, 5},
        {"X-5", {}, -5}, {"", {}, 0}, {"nothing", {}, 0}, {".5", {}, 0}, {"-", {}, 0}, {nullptr, {}, 0},
        {"12 75 0", {}, 13.25}, {"9999999999 0 0", {}, std::fmod(2147483647.0, 360)},  // carried, limited
        {"12 34 56.7", unit(15), 12.34567 * 0.9}, {"-12g 34c 56.7cc", unit(15), -12.34567 * 0.9},
        {"-12.5 S", unit(11), 12.5}, {"12,5", unit(11), 12}, {"1e1x", unit(11), 10}, {"0x10", unit(11), 0},
        {"nan", unit(11), 0}, {"inf", unit(11), 0}, {"+7", unit(11), 7}, {"12.3030", unit(13), 12 + 30.5 / 60},
        {"100", unit(14), 90}, {"100", unit(16), 90}, {"0.25", unit(17), 90}, {"1.5707963267948966", unit(18), 90},
        // Without leading zeros the field with the point is the seconds.
        {"- 5.6000\"", trimmed, -5.6 / 3600}, {"10' 56.0\"", trimmed, 656 / 3600.0}, {"1 10 56", trimmed, 4256 / 3600.0},
        {"-10 56.5", trimmed, -656.5 / 3600}, {"9 9 1 10 6.5", trimmed, 4206.5 / 3600}, {"12", trimmed, 12},
        // Seconds and thousandths; grads are read as they stand.
        {"-5430", small(12), -5430 / 3600.0}, {"45296.789 W", small(13), -45296.789 / 3600}, {"5400", small(11), 1.5},
        {"-1250", small(15), -1.25 * 0.9}, {"1250", small(16), 1.25 * 0.9}, {"1.25", small(14), 1.25 * 0.9},
        // clang-format on
    };
    for (auto const& [text, manner, degrees] : rows)
        EXPECT_NEAR(Read(text, manner), degrees, 2e-6) << testing::PrintToString(text);
    for (long id = 11; id <= 18; ++id)
        EXPECT_TRUE(std::isfinite(Read("-1e999", unit(id))) && std::isfinite(Read("1e999", small(id)))) << id;
}

TEST(Angle, NormalisesWhatIsStored) {
    for (double const set : {3.5, -7.0, -3.5, pi, -pi, 2 * pi, 100.0, 1.2345678901234567}) {
        CTovValueAngle angle;
        CTovValueAngleLat lat;
        CTovValueAngleLon lon;
        angle = set;
        lat = set;
        lon = angle;
        EXPECT_EQ(angle.GetDouble(), std::fmod(set, 2 * pi));
        EXPECT_NEAR(lat.GetDouble(), std::fabs(set) == pi ? set : std::remainder(set, 2 * pi), 1e-13);
        EXPECT_EQ(lat.GetDouble(), lon.GetDouble());
    }
}

static_assert(!std::is_assignable_v<CTovValueAngle&, bool> && !std::is_assignable_v<CTovValueAngle&, char>);
static_assert(!std::is_assignable_v<CTovValueAngle&, std::nullptr_t>);
static_assert(!std::is_assignable_v<CTovValueAngleLat&, CTovValueDistance&>);
static_assert(!std::is_assignable_v<CTovValue&, CTovValue&>);

TEST(Angle, PrintsHemispheres) {
    std::tuple<double, char const*, char const*, char const*> const rows[] = {
        {12.5, nullptr, "  12° 30' 00.0000\" 北", "  12° 30' 00.0000\" 东"},
        {-12.5, nullptr, "  12° 30' 00.0000\" S", "  12° 30' 00.0000\" W"},
        {-1e-9, nullptr, "   0° 00' 00.0000\" 北", "   0° 00' 00.0000\" 东"},  // zero lies on one side
        {-1e-9, "1: %SecOrCC %Q", "1:  0.0000 北", "1:  0.0000 东"},
        {-12.5, "%Q%DegOrG", "S  12", "W  12"},
        {12.5, "%DegOrG,%MinOrC", "  12,30", "  12,30"},  // no place for the letter
    };
    for (auto const& [degrees, format, latitude, longitude] : rows) {
        CTovUnitSettingsAngleLatLon settings;
        settings.Unit(12);
        settings.Format(format);
        CTovValueAngleLat lat(&settings);
        CTovValueAngleLon lon(&settings);
        lat = degrees * degree;
        lon = lat;
        EXPECT_EQ(Text(lat), latitude);
        EXPECT_EQ(Text(lon), longitude);
    }
    CTovValueAngle plain(-12.5, 11, "[%Q]%.1f");
    EXPECT_EQ(Text(plain), "[]-12.5");
}

TEST(Angle, GivesOtherUnitsInTheMannerOfItsOwn) {
    CTovValueAngle angle(12.5, 11, nullptr);
    CString text;
    double number = 0;
    EXPECT_EQ(angle.ConvertStdTo(text, 14L, -1, 0UL), 0);
    EXPECT_EQ(text, " 13.88889");
    EXPECT_EQ(angle.ConvertStdTo(text, 99L, -1, 0UL), 1);
    EXPECT_EQ(text, " 13.88889");
    EXPECT_EQ(angle.IsValid(), 1) << "the answer has cleared the status";
    for (int const precision : {2, std::numeric_limits<int>::max()}) {
        EXPECT_EQ(angle.ConvertStdTo(number, 12L, precision, 0UL), 0);
        EXPECT_NEAR(number, 12.3, precision == 2 ? 0 : 1e-15);
    }
    EXPECT_EQ(angle.ConvertToStd(1.0, 99L, -1, 0UL), 1);
    angle = 5;  // only doubles and texts go into a value that has a unit
    EXPECT_EQ(angle.GetDouble() + angle.SetFloat(2.5F) + static_cast<int>(angle), 0);

    CTovUnitSettingsAngle gon(16, nullptr);
    CTovValueAngle right(pi / 2, 18, nullptr);
    EXPECT_EQ(right.ConvertStdTo(text, &gon), 0);
    EXPECT_EQ(text, " 100.00000");
    right.StdFormat(text);
    EXPECT_EQ(text, " 1.57080 [rad]");
}

TEST(Angle, CirclesEndAtTheLimit) {
    for (long const unit : {11L, 12L, 13L, 14L, 15L, 16L, 17L, 18L, -11L, -12L, -13L, -14L, -15L, -16L}) {
        CTovUnitSettingsAngle settings;
        // At 4 decimals 2 pi prints as a little more than itself.
        Manner{.unit = std::abs(unit), .precision = 4, .small = unit < 0, .limit = true}.Apply(settings);
        CTovValueAngle angle(&settings);
        for (double const circle : {2 * pi, -2 * pi}) {
            angle = std::nextafter(circle, 0);
            EXPECT_EQ(Text(angle).find_first_of("123456789-"), CString::npos) << unit << Text(angle);
        }
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
        CString text;
        angle.ConvertStdTo(text, 13L, -1, 0UL);
        EXPECT_EQ(text, Text(angle));
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
    original->UnitSettings()->Format("%.2f");
    original.reset();
    for (int const own : {1, 0})
        copy.UnitSettings(copy.UnitSettings(), own);
    copy.UnitSettings(nullptr, 1);
    EXPECT_EQ(Text(copy) + Text(assigned), "12.5012.50");
    CTovUnitSettingsAngle own(17, nullptr);
    copy.UnitSettings(&own, 0);
    EXPECT_EQ(Text(copy), " 0.03472");
}

// What is printed reads back as what prints the same: in every unit and manner, for any angle. Left out is
// what may print as a full circle, which reads as 0, or above a half circle in radians, which is the other
// hemisphere.
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
        manner.Apply(settings);
        Value value(&settings);
        Value back(&settings);
        for (int i = 0; i < 2500; ++i) {
            double angle = any(random);
            double const step = std::array{degree, degree / 60, 0.0, 0.0}[random() % 4];
            if (step > 0) angle = std::round(angle / step) * step;
            if (step == 0 && coin()) angle *= std::pow(10.0, -static_cast<int>(random() % 9));
            if (std::fabs(angle) > most * 0.94)
                angle = most == pi && manner.unit != 18 ? std::copysign(pi, angle) : 0;
            value = angle;
            CString const text = Text(value);
            back = text;
            ASSERT_EQ(text, Text(back))
                << "unit " << manner.unit << " precision " << manner.precision << " small " << manner.small
                << " trim " << manner.trimLeading << manner.trimTrailing;
            ASSERT_TRUE(text.find("60'") == CString::npos && text.find("' 60.") == CString::npos) << text;
        }
    }
}

TEST(Angle, TextsComeBack) {
    TextsComeBack<CTovValueAngle, CTovUnitSettingsAngle>(1, 2 * pi);
    TextsComeBack<CTovValueAngleLat, CTovUnitSettingsAngleLatLon>(2, pi);
    TextsComeBack<CTovValueAngleLon, CTovUnitSettingsAngleLatLon>(3, pi);
}

}  // namespace
}  // namespace tov
