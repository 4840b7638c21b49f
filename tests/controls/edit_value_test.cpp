// Values in edits: what the program puts in it gets back, in every unit, until somebody types.
#include "support/fake_value_edit.h"

#include <tov310/angle.h>
#include <tov310/distance.h>
#include <tov310/resources.h>

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <random>

namespace tov {
namespace {

using test::FakeValueEdit;
using State = CTovInputControl::eState;

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

// A form with an edit of the value.
struct ValueForm {
    explicit ValueForm(CTovValue& value) : edit(desk, &form, value) { edit.InitializeEdit(); }

    test::FakeDesk desk;
    test::FakeWindow form{desk};
    FakeValueEdit edit;
};

TEST(EditValue, KeepsEveryBitThroughLookingAndChangesOfTheUnit) {
    Kinds kinds;
    std::mt19937_64 random(1);
    for (auto const& [value, units] : kinds.all) {
        value->UnitSettings()->Unit(units->front());
        ValueForm around(*value);
        FakeValueEdit& edit = around.edit;
        edit.SetDisplayFormat(3U);
        edit.SetRange(-1e300, 1e300);
        for (int i = 0; i < 20000; ++i) {
            double const number =
                std::ldexp(static_cast<double>(static_cast<std::int64_t>(random())), -60 - i % 9);
            ASSERT_EQ(edit.SetValue(number), 1);
            value->SetDouble(number);
            auto const kept = Bits(value->GetDouble());
            edit.SetChangedByUser(i & 1);
            auto const unit = (*units)[static_cast<std::size_t>(random()) % units->size()];
            if (i % 3 == 0) {
                edit.SetUnit(static_cast<unsigned>(unit));
            } else if (i % 3 == 1) {  // as a combo box does with shared settings
                value->UnitSettings()->Unit(unit);
                ASSERT_EQ(Bits(edit.GetValue()), kept);
                edit.OnUnitChanged();
            }
            edit.EnterAndLeave();
            ASSERT_EQ(edit.Validate(nullptr), State::eStateValid) << number;
            ASSERT_EQ(Bits(edit.GetValue()), kept) << number << " in " << unit;
            ASSERT_EQ(edit.GetChangedByUser(), i & 1);
        }
        double minimum = 0;
        double maximum = 0;
        edit.GetRange(minimum, maximum);
        EXPECT_EQ(minimum, -1e300);
        EXPECT_EQ(maximum, 1e300);
        auto const before = Bits(edit.GetValue());
        EXPECT_EQ(edit.SetValue(std::nan("")), 0);
        EXPECT_EQ(edit.SafeSetValue(HUGE_VAL), 0);
        EXPECT_EQ(Bits(edit.GetValue()), before);
    }
}

// Whatever passes the range as it is typed lies within it as a value; and all that lies within can be typed.
TEST(EditValue, WhatIsAcceptedLiesWithinTheRange) {
    Kinds kinds;
    std::mt19937_64 random(2);
    std::uniform_real_distribution<double> anywhere(-1.5, 1.5);
    for (auto const& [value, units] : kinds.all) {
        ValueForm around(*value);
        FakeValueEdit& edit = around.edit;
        for (int i = 0; i < 2000; ++i) {
            edit.SetUnit(static_cast<unsigned>((*units)[static_cast<std::size_t>(i) % units->size()]));
            double minimum = anywhere(random);
            double maximum = anywhere(random);
            if (minimum > maximum) {
                ASSERT_EQ(edit.SetRange(minimum, maximum), 0);
                std::swap(minimum, maximum);
            }
            ASSERT_EQ(edit.SetRange(minimum, maximum), 1);
            double const least = edit.Number().minimum;
            double const most = edit.Number().maximum;
            for (double const typed :
                 {least, most, std::nextafter(least, 10), std::nextafter(most, -10),
                  std::nextafter(least, -10), std::nextafter(most, 10), anywhere(random)}) {
                edit.TypeNumber(typed);
                bool const isValid = edit.Validate(nullptr) == State::eStateValid;
                long const unit = value->UnitSettings()->Unit();
                bool const isPacked = unit == 12 || unit == 13;
                bool const isShown = typed >= least && typed <= most;
                ASSERT_TRUE(isValid == isShown || (isShown && isPacked)) << typed;  // 0.7 is 70 minutes
                double const standard = edit.GetValue();
                ASSERT_TRUE(!isValid || (standard >= minimum && standard <= maximum))
                    << typed << " is " << standard;
            }
            edit.TypeNumber(least);
            ASSERT_EQ(Bits(edit.GetValue()), Bits(minimum));
            edit.TypeNumber(most);
            ASSERT_EQ(Bits(edit.GetValue()), Bits(maximum));
            // A bound that the program puts in is not thrown out because it is shown rounded.
            edit.SetValue(maximum);
            ASSERT_EQ(edit.Validate(nullptr), State::eStateValid);
        }
    }
}

TEST(EditValue, TypedNumbersBelongToTheUnitThatIsShown) {
    CTovUnitSettingsDistance settings;
    settings.Unit(TOV_UNIT_INTERNATIONAL_FEET);
    CTovValueDistance value(&settings);
    ValueForm around(value);
    FakeValueEdit& edit = around.edit;
    test::FakeWindow label(around.desk, &around.form, 8);
    edit.UnitAbbreviation(8);
    edit.SetFocus();
    edit.Type("100");
    settings.Unit(TOV_UNIT_METRES);
    EXPECT_DOUBLE_EQ(edit.GetValue(), 30.48);
    EXPECT_EQ(settings.Unit(), TOV_UNIT_METRES);
    edit.OnUnitChanged();
    EXPECT_EQ(edit.text, "30.48");
    EXPECT_EQ(edit.GetChangedByUser(), 1);

    // Undo brings the number of the program back, and with it its value.
    edit.SetUnit(TOV_UNIT_US_SURVEY_FEET);
    edit.SetValue(0.1);
    edit.SelectAll();
    edit.Type("7");
    EXPECT_NEAR(edit.GetValue(), 7 * 1200 / 3937.0, 1e-15);
    edit.Undo();
    EXPECT_EQ(edit.text, "0.328083");
    EXPECT_EQ(Bits(edit.GetValue()), Bits(0.1));

    edit.Empty();
    edit.SetUnit(TOV_UNIT_METRES);
    EXPECT_EQ(edit.text, "");
    EXPECT_EQ(edit.GetValue(), 0);
}

TEST(EditValue, TellsTheRangeWithItsUnit) {
    CTovUnitSettingsDistance settings;
    settings.Unit(TOV_UNIT_METRES);
    CTovValueDistance value(&settings);
    ValueForm around(value);
    FakeValueEdit& edit = around.edit;
    edit.SetDisplayFormat(3U);
    ASSERT_EQ(edit.SetRange(-0.3048, 3.048), 1);
    CString message = "old";
    EXPECT_EQ(edit.Validate(&message), State::eStateEmpty);
    edit.SetEmptyAllowed(1);
    EXPECT_EQ(edit.Validate(&message), State::eStateValid);
    edit.TypeNumber(5);
    EXPECT_EQ(edit.Validate(nullptr), State::eStateInvalid);
    EXPECT_EQ(edit.Validate(&message), State::eStateInvalid);
    EXPECT_EQ(message, "有效的范围是从 -0.305 m 到 3.048 m");
    edit.SetUnit(TOV_UNIT_INTERNATIONAL_FEET);
    EXPECT_EQ(edit.Validate(&message), State::eStateInvalid);
    EXPECT_EQ(message, "有效的范围是从 -1.000 fti 到 10.000 fti");
}

}  // namespace
}  // namespace tov
