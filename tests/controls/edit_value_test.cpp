// Values in edits: what the program puts in it gets back, in every unit, until somebody types.
#include "support/fake_value_edit.h"

#include <tov310/angle.h>
#include <tov310/distance.h>
#include <tov310/resources.h>

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <numbers>
#include <random>

namespace tov {
namespace {

using test::FakeValueEdit;
using State = CTovInputControl::eState;

constexpr double pi = std::numbers::pi;

std::uint64_t Bits(double number) {
    return std::bit_cast<std::uint64_t>(number);
}

// A value with settings of its own, whose kind decides on its units.
struct Kinds {
    CTovUnitSettingsAngle angleSettings;
    CTovUnitSettingsAngleLatLon latLonSettings;
    CTovUnitSettingsDistance distanceSettings;
    CTovValueAngle angle{&angleSettings};
    CTovValueAngleLat latitude{&latLonSettings};
    CTovValueDistance distance{&distanceSettings};

    static inline std::vector<long> const angleUnits{11, 12, 13, 14, 15, 16, 17, 18};
    static inline std::vector<long> const distanceUnits{21, 22, 23};
    std::vector<std::pair<CTovValue*, std::vector<long> const*>> const all{
        {&angle, &angleUnits}, {&latitude, &angleUnits}, {&distance, &distanceUnits}};
};

TEST(EditValue, KeepsEveryBitThroughLookingAndChangesOfTheUnit) {
    Kinds kinds;
    std::mt19937_64 random(1);
    for (auto const& [value, units] : kinds.all) {
        FakeValueEdit edit(*value);
        value->UnitSettings()->Unit(units->front());
        edit.units.SetRange(-1e300, 1e300);
        for (int i = 0; i < 400000; ++i) {
            double const number =
                std::ldexp(static_cast<double>(static_cast<std::int64_t>(random())), -60 - i % 9);
            ASSERT_EQ(edit.units.SetValue(number), 1);
            value->SetDouble(number);
            double const kept = value->GetDouble();
            edit.SetChangedByUser(i & 1);
            long const unit = (*units)[static_cast<std::size_t>(random()) % units->size()];
            if (i % 3 == 0) {
                edit.units.SetUnit(unit);
            } else if (i % 3 == 1) {  // as a combo box does with shared settings
                value->UnitSettings()->Unit(unit);
                ASSERT_EQ(Bits(edit.units.GetValue()), Bits(kept));
                edit.units.UnitChanged();
                ASSERT_EQ(edit.units.UnitChanged(), 0);
            }
            ASSERT_EQ(Bits(edit.units.GetValue()), Bits(kept)) << number << " in " << unit;
            ASSERT_EQ(edit.GetChangedByUser(), i & 1);
            ASSERT_EQ(edit.units.InternalValidate(edit.number, nullptr), State::eStateValid) << number;
        }
        double minimum = 0;
        double maximum = 0;
        edit.units.GetRange(minimum, maximum);
        EXPECT_EQ(minimum, -1e300);
        EXPECT_EQ(maximum, 1e300);
        double const before = edit.units.GetValue();
        EXPECT_EQ(edit.units.SetValue(std::nan("")), 0);
        EXPECT_EQ(edit.units.SafeSetValue(HUGE_VAL), 0);
        EXPECT_EQ(Bits(edit.units.GetValue()), Bits(before));
    }
}

// Whatever passes the range as it is typed lies within it as a value; and all that lies within can be typed.
TEST(EditValue, WhatIsAcceptedLiesWithinTheRange) {
    Kinds kinds;
    std::mt19937_64 random(2);
    std::uniform_real_distribution<double> anywhere(-1.5, 1.5);
    for (auto const& [value, units] : kinds.all) {
        for (int i = 0; i < 40000; ++i) {
            FakeValueEdit edit(*value);
            value->UnitSettings()->Unit((*units)[static_cast<std::size_t>(i) % units->size()]);
            double minimum = anywhere(random);
            double maximum = anywhere(random);
            if (minimum > maximum) {
                ASSERT_EQ(edit.units.SetRange(minimum, maximum), 0);
                std::swap(minimum, maximum);
            }
            ASSERT_EQ(edit.units.SetRange(minimum, maximum), 1);
            for (double const typed :
                 {edit.least, edit.most, std::nextafter(edit.least, 10), std::nextafter(edit.most, -10),
                  std::nextafter(edit.least, -10), std::nextafter(edit.most, 10), anywhere(random)}) {
                edit.Type(typed);
                bool const isValid = edit.units.InternalValidate(typed, nullptr) == State::eStateValid;
                bool const isPacked =
                    value->UnitSettings()->Unit() == 12 || value->UnitSettings()->Unit() == 13;
                bool const isShown = typed >= edit.least && typed <= edit.most;
                ASSERT_TRUE(isValid == isShown || (isShown && isPacked)) << typed;  // 0.7 is 70 minutes
                double const standard = edit.units.GetValue();
                ASSERT_TRUE(!isValid || (standard >= minimum && standard <= maximum))
                    << typed << " is " << standard;
            }
            edit.Type(edit.least);
            ASSERT_EQ(Bits(edit.units.GetValue()), Bits(minimum));
            edit.Type(edit.most);
            ASSERT_EQ(Bits(edit.units.GetValue()), Bits(maximum));
            // A bound that the program puts in is not thrown out because it is shown rounded.
            edit.units.SetValue(maximum);
            ASSERT_EQ(edit.units.InternalValidate(edit.number, nullptr), State::eStateValid);
        }
    }
}

TEST(EditValue, TypedNumbersBelongToTheUnitThatIsShown) {
    CTovUnitSettingsDistance settings;
    settings.Unit(TOV_UNIT_INTERNATIONAL_FEET);
    CTovValueDistance value(&settings);
    FakeValueEdit edit(value);
    edit.Type(100);
    settings.Unit(TOV_UNIT_METRES);
    EXPECT_DOUBLE_EQ(edit.units.GetValue(), 30.48);
    EXPECT_EQ(settings.Unit(), TOV_UNIT_METRES);
    EXPECT_EQ(edit.units.UnitChanged(), 1);
    EXPECT_DOUBLE_EQ(edit.number, 30.48);
    EXPECT_EQ(edit.GetChangedByUser(), 1);
    EXPECT_EQ(edit.label, "m");

    // Undo brings the number of the program back, and with it its value.
    edit.units.SetUnit(TOV_UNIT_US_SURVEY_FEET);
    edit.units.SetValue(0.1);
    double const shown = edit.number;
    edit.Type(7);
    edit.number = shown;
    edit.units.Restored();
    EXPECT_EQ(Bits(edit.units.GetValue()), Bits(0.1));
    edit.Type(7);
    edit.units.Restored();
    EXPECT_NEAR(edit.units.GetValue(), 7 * 1200 / 3937.0, 1e-15);

    edit.EmptyShownNumber();
    edit.units.SetUnit(TOV_UNIT_METRES);
    EXPECT_EQ(edit.empty, 1);
}

TEST(EditValue, TellsTheRangeWithItsUnit) {
    CTovUnitSettingsDistance settings;
    settings.Unit(TOV_UNIT_METRES);
    CTovValueDistance value(&settings);
    FakeValueEdit edit(value);
    ASSERT_EQ(edit.units.SetRange(-0.3048, 3.048), 1);
    CString message = "old";
    edit.SetEmptyAllowed(1);
    EXPECT_EQ(edit.units.InternalValidate(5, &message), State::eStateValid);  // it is empty
    EXPECT_EQ(message, "");
    edit.Type(5);
    EXPECT_EQ(edit.units.InternalValidate(5, nullptr), State::eStateInvalid);
    EXPECT_EQ(edit.units.InternalValidate(5, &message), State::eStateInvalid);
    EXPECT_EQ(message, "有效的范围是从 -0.305 m 到 3.048 m");
    edit.units.SetUnit(TOV_UNIT_INTERNATIONAL_FEET);
    EXPECT_EQ(edit.units.InternalValidate(edit.number, &message), State::eStateInvalid);
    EXPECT_EQ(message, "有效的范围是从 -1.000 fti 到 10.000 fti");
}

}  // namespace
}  // namespace tov
