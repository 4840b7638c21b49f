// Angles in fields: split and joined, carried, pasted, walked through.
#include "support/fake_value_edit.h"

#include <tov310/angle.h>

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <functional>
#include <numbers>
#include <random>
#include <set>

namespace tov {
namespace {

using test::FakeAngleEdit;
using State = CTovInputControl::eState;

constexpr double pi = std::numbers::pi;

// An edit in a form, with settings and a value of its own.
struct Angle {
    explicit Angle(long unit = 12, eSignType type = eSignPlusMinus, eTovAngleKind kind = eTovAnglePlain)
        : settings(unit, nullptr), edit(desk, &form, Value(unit, kind), kind, type) {}

    CTovValue& Value(long unit, eTovAngleKind kind) {
        latLonSettings.Unit(unit);
        if (kind == eTovAngleLatitude) return latitude;
        if (kind == eTovAngleLongitude) return longitude;
        return plain;
    }
    FakeAngleEdit* operator->() { return &edit; }
    std::string Fields() { return edit.Fields(); }
    CTovEditAngleMask& Mask() { return edit.Mask(); }

    CTovUnitSettingsAngle settings;
    CTovUnitSettingsAngleLatLon latLonSettings;
    CTovValueAngle plain{&settings};
    CTovValueAngleLat latitude{&latLonSettings};
    CTovValueAngleLon longitude{&latLonSettings};
    test::FakeDesk desk;
    test::FakeWindow form{desk};
    FakeAngleEdit edit;
};

constexpr eSignType signTypes[] = {eSignPlusMinus, eSignNorthSouth, eSignEastWest};

double Radians(long unit, double whole, double minutes, double seconds) {
    double const base = unit == 12 ? 60 : 100;
    return (whole + (minutes + seconds / base) / base) * pi / (unit == 12 ? 180 : 200);
}

// Whatever is typed with five decimals comes out as the same text from the value that it makes.
TEST(EditAngleMask, SplitAndJoinAreInverse) {
    std::mt19937_64 random(1);
    auto const below = [&](std::uint64_t n) { return random() % n; };
    for (long const unit : {12L, 15L}) {
        unsigned const base = unit == 12 ? 60 : 100;
        for (eSignType const type : signTypes) {
            Angle typed(unit, type);
            Angle set(unit, type);
            for (int i = 0; i < 4000; ++i) {
                bool const isNegative = below(2) != 0;
                // Also next to the carries.
                auto const hundredThousandths =
                    i % 4 == 0 ? base * 100000 - 1 - below(3) : below(base * 100000ULL);
                std::string whole = isNegative && type == eSignPlusMinus ? "-" : "";
                whole.append(std::to_string(below(unit == 12 ? 360 : 400)));
                std::vector<std::string> texts{whole, std::to_string(i % 8 == 0 ? base - 1 : below(base)),
                                               test::Fixed(static_cast<double>(hundredThousandths) / 1e5, 5)};
                if (type != eSignPlusMinus)
                    texts.push_back(type == eSignNorthSouth ? (isNegative ? "S" : "北")
                                                            : (isNegative ? "W" : "东"));
                typed.edit.TypeFields(texts);
                double const value = typed->GetValue();
                ASSERT_EQ(std::signbit(value), isNegative && value != 0) << typed.Fields();
                set->SetValue(value);
                ASSERT_TRUE(value == 0 || set.Fields() == typed.Fields()) << typed.Fields();
                set->Empty();
                if (i % 2 != 0)
                    set->SetDouble(typed->GetDouble());
                else
                    set->SafeSetDouble(typed->GetDouble());
                ASSERT_TRUE(value == 0 || set.Fields() == typed.Fields()) << typed->GetDouble();
                ASSERT_EQ(set->Validate(nullptr), State::eStateValid) << typed.Fields();
            }
        }
    }
}

TEST(EditAngleMask, KeepsEveryBitUntilAFieldIsTyped) {
    std::mt19937_64 random(2);
    std::uniform_real_distribution<double> anywhere(-2 * pi, 2 * pi);
    for (eTovAngleKind const kind : {eTovAnglePlain, eTovAngleLatitude, eTovAngleLongitude}) {
        Angle angle(12, signTypes[kind], kind);
        std::function<void()> const changes[] = {
            // clang-format off
            [&] { angle->SetUnit(static_cast<unsigned>(11 + random() % 8)); },
            [&] { angle->SetSecOnly(angle->GetSecOnly() == 0); },
            [&] { angle->SetSignType(signTypes[random() % 3]); },
            [&] { angle->SetLimitToCircle(angle->GetLimitToCircle() == 0); },
            [&] { angle->SetDisplayFormat(static_cast<unsigned>(random() % 8)); }};
        // clang-format on
        for (int i = 0; i < 8000; ++i) {
            double const number = i % 10 == 0 ? anywhere(random) * 1e-12 : anywhere(random);
            ASSERT_EQ(angle->SetValue(number), 1);
            CTovValue& value = angle.edit.value;
            value.SetDouble(number);
            auto const bits = std::bit_cast<std::uint64_t>(value.GetDouble());
            if (auto const change = static_cast<std::size_t>(i % 64); change < std::size(changes))
                changes[change]();
            angle->Validate(nullptr);
            ASSERT_EQ(std::bit_cast<std::uint64_t>(angle->GetValue()), bits) << number << " at " << i;
            ASSERT_EQ(angle.edit.GetChangedByUser(), 0);
            ASSERT_EQ(angle.Mask().IsSplit(),
                      angle->GetSecOnly() == 0 && (angle.edit.value.UnitSettings()->Unit() == 12 ||
                                                   angle.edit.value.UnitSettings()->Unit() == 15));
        }
        double minimum = 0;
        double maximum = 0;
        angle->GetRange(minimum, maximum);
        double const most[] = {CTovEditAngleMask::wholeTurn, pi / 2, pi};
        EXPECT_EQ(minimum, -most[kind]);
        EXPECT_EQ(maximum, most[kind]);
    }
    // Typed over with what is seen, the field counts as it is seen.
    Angle angle;
    angle->SetValue(Radians(12, 1, 2, 3.123456789));
    for (char const* const typed : {"3", "3.12346"})
        angle.edit[2].SetEditText(typed);
    EXPECT_NEAR(angle->GetValue(), Radians(12, 1, 2, 3.12346), 1e-15);
}

// 42 degrees 58 minutes 18.604685322... seconds: rounding to six decimals on the way makes a tie of it.
TEST(EditAngleMask, RoundsOnce) {
    for (auto const& [limit, precision, decimals, seconds] :
         {std::tuple(0, 2, 6, "18.60500"), std::tuple(0, 5, 6, "18.60469"), std::tuple(0, 6, 6, "18.60469"),
          std::tuple(0, 4, 4, "18.6047"), std::tuple(1, 5, 5, "18.60469"), std::tuple(1, 2, 2, "18.60")}) {
        Angle f;
        f.settings.Precision(precision);
        f->SetLimitToCircle(limit);
        f->SetDisplayFormat(static_cast<unsigned>(decimals));
        f->SetValue(0.75);
        EXPECT_EQ(f.Fields(), std::string("42|58|").append(seconds)) << precision << limit;
    }
}

TEST(EditAngleMask, CarriesAndTurns) {
    struct Row {
        long unit;
        eSignType type;
        int limit;
        int decimals;
        double sign, whole, minutes, seconds;
        char const* fields;
    };
    Row const rows[] = {
        // clang-format off
        {12, eSignPlusMinus, 0, 5, 1, 12, 34, 56.7, "12|34|56.70000"},
        {12, eSignPlusMinus, 0, 5, -1, 0, 30, 0, "-0|30|0.00000"},
        {12, eSignPlusMinus, 0, 5, 1, 5, 6, 59.999999, "5|7|0.00000"},
        {12, eSignPlusMinus, 0, 0, 1, 5, 6, 59.5001, "5|7|0"},
        {12, eSignPlusMinus, 0, 5, -1, 0, 59, 59.999999, "-1|0|0.00000"},
        {12, eSignPlusMinus, 0, 5, 1, 5, 6, 59.99999, "5|6|59.99999"},
        {12, eSignPlusMinus, 0, 5, 1, 359, 59, 59.999999, "360|0|0.00000"},
        {12, eSignPlusMinus, 1, 5, 1, 359, 59, 59.999999, "0|0|0.00000"},
        {12, eSignPlusMinus, 1, 2, 1, 359, 59, 59.996, "0|0|0.00"},
        {12, eSignEastWest, 0, 5, -1, 0, 0, 1, "0|0|1.00000|W"},
        {12, eSignNorthSouth, 0, 5, 1, 89, 59, 59.999999, "90|0|0.00000|北"},
        {15, eSignPlusMinus, 0, 5, -1, 12, 34, 56.7, "-12|34|56.70000"},
        {15, eSignPlusMinus, 0, 5, 1, 12, 99, 99.999999, "13|0|0.00000"},
        {15, eSignPlusMinus, 0, 5, 1, 12, 34, 60.25, "12|34|60.25000"},
        {15, eSignPlusMinus, 1, 5, 1, 399, 99, 99.999999, "0|0|0.00000"},
        {15, eSignNorthSouth, 0, 5, -1, 7, 0, 10, "7|0|10.00000|S"},
        // clang-format on
    };
    for (Row const& row : rows) {
        Angle angle(row.unit, row.type);
        angle->SetLimitToCircle(row.limit);
        angle->SetInputFormat(static_cast<unsigned>(row.decimals));
        angle->SetDisplayFormat(static_cast<unsigned>(row.decimals));
        angle->SetValue(row.sign * Radians(row.unit, row.whole, row.minutes, row.seconds));
        EXPECT_EQ(angle.Fields(), row.fields);
    }
}

TEST(EditAngleMask, ChecksTheFieldsAndThenTheWhole) {
    CString message;
    Angle latitude(12, eSignNorthSouth, eTovAngleLatitude);
    EXPECT_EQ(latitude->Validate(&message), State::eStateEmpty);
    EXPECT_EQ(latitude.Fields(), "|||北");
    latitude.edit.SetEmptyAllowed(1);
    EXPECT_EQ(latitude->Validate(&message), State::eStateValid);
    latitude.edit.TypeFields({"90", "30", "", "S"});
    EXPECT_EQ(latitude->IsEmpty(), 0);
    EXPECT_EQ(latitude->Validate(&message), State::eStateInvalid);
    EXPECT_EQ(message, "有效的范围是从   90° 00' 00.0000\" S 到   90° 00' 00.0000\" 北");
    latitude.edit.TypeFields({"91", "0", "0", "S"});
    EXPECT_EQ(latitude->Validate(&message), State::eStateInvalid);
    EXPECT_EQ(message, "有效的范围是从 0 到 90");
    latitude.edit.TypeFields({"90", "0", "0", "S"});
    EXPECT_EQ(latitude->Validate(&message), State::eStateValid);
    EXPECT_EQ(latitude->GetValue(), -pi / 2);

    Angle angle(15);
    angle.settings.UseDmsSymbols(0);
    EXPECT_EQ(angle->SetRange(0, 2 * pi), 1);
    angle.edit.TypeFields({"-0", "0", "1"});
    EXPECT_EQ(angle->Validate(nullptr), State::eStateInvalid);
    EXPECT_EQ(angle->Validate(&message), State::eStateInvalid);
    EXPECT_EQ(message, "有效的范围是从    0g 00c 00.00000cc 到  400g 00c 00.00000cc");
    EXPECT_EQ(angle.settings.UseDmsSymbols(), 0);
    for (char const* const over : {"100", "100.5"}) {
        angle.edit.TypeFields({"1", "1", over});
        EXPECT_EQ(angle->Validate(&message), State::eStateInvalid) << over;
    }
    // Where a child edit cannot be made the edit stays in one piece and keeps its value.
    angle->SetValue(1);
    angle.edit.fieldsToMake = 2;
    angle->SetSignType(eSignEastWest);
    EXPECT_FALSE(angle.Mask().IsSplit());
    EXPECT_EQ(angle->GetValue(), 1);
}

TEST(EditAngleMask, PastesWholeAnglesAndCopiesThem) {
    struct Row {
        long unit;
        eSignType type;
        char const* text;
        char const* whole;  // what a copy gives then; null: refused
    };
    Row const rows[] = {
        // clang-format off
        {12, eSignPlusMinus, "12°34'56.7\"", "12° 34' 56.70000\""}, {12, eSignPlusMinus, "12 34 56.7 S", "-12° 34' 56.70000\""},
        {12, eSignPlusMinus, "12-34-56.7", "12° 34' 56.70000\""}, {12, eSignPlusMinus, "-12-34-56.7", "-12° 34' 56.70000\""},
        {12, eSignPlusMinus, "12.5823", "12° 34' 56.28000\""}, {12, eSignPlusMinus, "13.9803 gon", "12° 34' 56.17200\""},
        {12, eSignPlusMinus, " \xe2\x88\x92" "0\u00a030\u2032 ", "-0° 30' 0.00000\""}, {12, eSignPlusMinus, "0,5", "0° 30' 0.00000\""},
        {12, eSignPlusMinus, "12:34:56", "12° 34' 56.00000\""}, {12, eSignPlusMinus, "12, 34, 56.7", "12° 34' 56.70000\""},
        {12, eSignPlusMinus, "１２度３４分５６．７秒", "12° 34' 56.70000\""}, {12, eSignPlusMinus, "12d34m56.7s", "12° 34' 56.70000\""},
        {12, eSignPlusMinus, "12d34m56.7sS", "-12° 34' 56.70000\""}, {12, eSignPlusMinus, "12d34m56.7S", "-12° 34' 56.70000\""},
        {12, eSignPlusMinus, "12°34.5'", "12° 34' 30.00000\""}, {12, eSignPlusMinus, "5430\"", "1° 30' 30.00000\""},
        {12, eSignPlusMinus, "12 - 34 - 56", "12° 34' 56.00000\""}, {12, eSignPlusMinus, "1 2 3''", "1° 2' 3.00000\""},
        {12, eSignPlusMinus, "0.5 rad", "28° 38' 52.40312\""}, {12, eSignPlusMinus, "0.25rev", "90° 0' 0.00000\""},
        {12, eSignPlusMinus, "1250 mgon", "1° 7' 30.00000\""}, {12, eSignPlusMinus, "1 2 59.999996", "1° 3' 0.00000\""},
        {12, eSignNorthSouth, "南 12 34 56.7", "12° 34' 56.70000\" S"}, {12, eSignNorthSouth, "-12 34", "12° 34' 0.00000\" S"},
        {12, eSignNorthSouth, "12°34'n", "12° 34' 0.00000\" 北"}, {12, eSignEastWest, "12.5E", "12° 30' 0.00000\" 东"},
        {12, eSignEastWest, "東12.5", "12° 30' 0.00000\" 东"}, {12, eSignEastWest, "W1", "1° 0' 0.00000\" W"},
        {15, eSignPlusMinus, "13g 98c 03.25cc", "13g 98c 3.25000cc"}, {15, eSignPlusMinus, "-13.980325", "-13g 98c 3.25000cc"},
        {15, eSignPlusMinus, "12.5823°", "13g 98c 3.33333cc"}, {15, eSignEastWest, "13 98 3 西", "13g 98c 3.00000cc W"},
        // What is no angle, or not surely one, changes nothing.
        {12, eSignPlusMinus, "", nullptr}, {12, eSignPlusMinus, nullptr, nullptr}, {12, eSignPlusMinus, "angle", nullptr},
        {12, eSignPlusMinus, "12 60 0", nullptr}, {12, eSignPlusMinus, "12°34'60\"", nullptr}, {12, eSignPlusMinus, "12.5 30", nullptr},
        {12, eSignPlusMinus, "1 2 3 4", nullptr}, {12, eSignPlusMinus, "-12 S", nullptr}, {12, eSignPlusMinus, "12 -34", nullptr},
        {12, eSignPlusMinus, "12 N 34", nullptr}, {12, eSignPlusMinus, "12°34g", nullptr}, {12, eSignPlusMinus, "34'12°", nullptr},
        {12, eSignPlusMinus, "12.3.4", nullptr}, {12, eSignPlusMinus, "--12", nullptr}, {12, eSignPlusMinus, "12-", nullptr},
        {12, eSignPlusMinus, "1e5x", nullptr}, {12, eSignPlusMinus, "99999999999 0 0", nullptr}, {12, eSignPlusMinus, "1 rad 2", nullptr},
        {12, eSignNorthSouth, "12 E", nullptr}, {15, eSignPlusMinus, "1 100 0", nullptr}, {12, eSignPlusMinus, "°'\"", nullptr},
        // clang-format on
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.text));
        Angle angle(row.unit, row.type);
        EXPECT_EQ(angle.Mask().Paste(row.text), row.whole != nullptr);
        EXPECT_EQ(angle.Mask().GetWholeText(), row.whole != nullptr ? row.whole : "");
        EXPECT_EQ(angle.edit.GetChangedByUser(), row.whole != nullptr);
        if (row.whole == nullptr) continue;
        std::string const fields = angle.Fields();
        angle->Empty();
        EXPECT_EQ(angle.Mask().Paste(row.whole), 1);
        EXPECT_EQ(angle.Fields(), fields);
        double radians = 0;
        EXPECT_EQ(angle.Mask().ReadAngle(row.whole, radians), 1);
        EXPECT_DOUBLE_EQ(radians, angle->GetValue());
    }
    // A number alone is the field's own where it fits there.
    Angle angle;
    std::tuple<int, char const*, bool> const own[] = {
        {0, "12", false}, {0, "-12", false}, {0, "12.5", true}, {1, "12", false}, {1, "-1", true},
        {1, "1.5", true}, {2, "1.5", false}, {2, "-1", true},   {2, "1°", true},  {1, "1 2", true}};
    for (auto const& [field, text, isWhole] : own) {
        angle.edit[field].SetFocus();
        EXPECT_EQ(angle.Mask().CanPaste(text), isWhole) << text << " in " << field;
    }
    angle.edit.TypeFields({"123", "4", "5.6"});
    angle.edit[0].SetFocus();
    angle.edit[0].SetEditSel(3, 1);
    EXPECT_EQ(angle.Mask().TextToCopy(), "23");
    angle.edit[0].SetEditSel(0, 3);
    EXPECT_EQ(angle.Mask().TextToCopy(), "123° 4' 5.6\"");
    angle.edit.SetReadOnlyMode(1);
    EXPECT_EQ(angle.Mask().Paste("1 2 3"), 0);
    // In one piece a number is read as if it were typed.
    Angle packed(13);
    double radians = 0;
    EXPECT_EQ(packed.Mask().ReadAngle("-12.3456", radians), 1);
    EXPECT_DOUBLE_EQ(radians, -Radians(12, 12, 34, 56));
}

TEST(EditAngleMask, FieldsLieOverTheDigitsOfTheMask) {
    for (long const unit : {12L, 15L}) {
        for (eSignType const type : signTypes) {
            Angle angle(unit, type);
            std::string const& mask = angle.edit.text;
            EXPECT_EQ(mask, angle.Mask().MaskText());
            std::size_t at = type == eSignPlusMinus ? 1 : 0;
            char const* const digits[] = {"000", "00", "00.00000", "W"};
            for (std::size_t i = 0; i < angle.edit.fields.size(); ++i) {
                at = mask.find(digits[i], at);
                CRect const rect = angle.edit.fields[i].setup.rect;
                EXPECT_EQ(rect.left, i == 0 ? 1 : angle.edit.GetTextWidth(mask.substr(0, at)));
                at += std::string(digits[i]).size();
                EXPECT_EQ(rect.right, angle.edit.GetTextWidth(mask.substr(0, at)) + 2);
                EXPECT_EQ(rect.top, 1);
                EXPECT_EQ(rect.bottom, 19);
                POINT const middle{(rect.left + rect.right) / 2, 3};
                EXPECT_EQ(angle->FindClosestChildEdit(middle), static_cast<int>(i));
            }
            angle.edit.buttonWidth = 20;
            EXPECT_EQ(angle.Mask().GetMinEditWidth(), angle.edit.GetTextWidth(mask) + 20);
            EXPECT_EQ(angle->FindClosestChildEdit({-100000, 5}), 0);
            EXPECT_EQ(angle.edit.fields.size(), type == eSignPlusMinus ? 3U : 4U);
            EXPECT_FALSE(angle.Mask().IsTextAllowed());
        }
    }
}

TEST(EditAngleMask, TheFocusWalksThroughTheFields) {
    Angle angle(12, eSignEastWest);
    FakeAngleEdit& edit = angle.edit;
    CTovEditAngleMask& mask = angle.Mask();
    edit.buttonWidth = 20;
    edit.TypeFields({"1", "2", "3"});
    // Where the focus is, and how much is selected there.
    constexpr int onButton = 90;
    auto const place = [&] {
        if (angle.desk.focus == FakeAngleEdit::button) return onButton;
        int const field = mask.GetChildEditFocus();
        return field < 0 ? -1 : field * 10 + edit[field].end - edit[field].start;
    };
    auto const focusWith = [&](std::set<int> keys) {
        for (auto& field : edit.fields)
            field.edit->SetEditSel(0, 0);
        angle.desk.keys = std::move(keys);
        angle.desk.MoveFocus({});
        mask.OnSetFocus();
        return place();
    };
    EXPECT_EQ(focusWith({}), 0);
    EXPECT_EQ(focusWith({9}), 1);
    for (int const next : {11, 27, 31}) {
        mask.NextChildEdit();
        EXPECT_EQ(place(), next);
    }
    mask.NextChildEdit();
    EXPECT_EQ(edit.left, 'n');
    EXPECT_EQ(mask.ActiveChildEdit(), -1);
    // Backwards the button comes first, and is passed then.
    EXPECT_EQ(focusWith({9, 16}), onButton);
    EXPECT_EQ(mask.ActiveChildEdit(), -1);
    EXPECT_EQ(focusWith({}), onButton);
    EXPECT_EQ(focusWith({9, 16}), 31);
    mask.PrevChildEdit();
    EXPECT_EQ(place(), 27);
    EXPECT_EQ(focusWith({}), 20);       // the one that had it
    EXPECT_EQ(focusWith({9, 18}), 27);  // from another program's window
    edit.buttonWidth = 0;
    EXPECT_EQ(focusWith({9, 16}), 31);
    mask.SetChildEditFocus(eFocusFirst);
    mask.PrevChildEdit();
    EXPECT_EQ(edit.left, 'p');
}

TEST(EditAngleMask, TheCaretWalksAsThroughOneText) {
    Angle angle(12, eSignEastWest);
    FakeAngleEdit& edit = angle.edit;
    edit.SetInputFormat(1U);
    edit.SetDisplayFormat(1U);
    edit.TypeFields({"-12", "34", "5.6", "东"});
    std::vector<int> const lengths{3, 2, 3, 1};
    // A field moves its own caret where the engine does not.
    auto const walk = [&](eTovCaretMove move, int step) {
        std::string places;
        for (int i = 0; i < 20; ++i) {
            int const field = angle.Mask().GetChildEditFocus();
            places += static_cast<char>('a' + field * 4 + edit[field].start);
            if (angle.Mask().MoveCaret(move) != 0) continue;
            edit[field].start =
                std::clamp(edit[field].start + step, 0, lengths[static_cast<std::size_t>(field)]);
            edit[field].end = edit[field].start;
        }
        return places;
    };
    edit[0].SetFocus();
    edit[0].SetEditSel(0, 0);
    EXPECT_EQ(walk(eTovCaretRight, 1), "abcdefgijklmnnnnnnnn");
    EXPECT_EQ(walk(eTovCaretLeft, -1), "nmlkjigfedcbaaaaaaaa");
    EXPECT_EQ(walk(eTovCaretNext, 0).substr(0, 6), "aeimnn");
    EXPECT_EQ(walk(eTovCaretPrevious, 0).substr(0, 6), "nmieaa");
    EXPECT_EQ(walk(eTovCaretEnd, 0).substr(0, 3), "ann");
    EXPECT_EQ(walk(eTovCaretHome, 0).substr(0, 3), "naa");
    edit[0].SetEditSel(0, 3);
    EXPECT_EQ(angle.Mask().MoveCaret(eTovCaretRight), 0);  // the field gives up its selection first

    // What stands for the next field leads there; a letter goes where it belongs.
    std::tuple<int, char32_t, int, int> const typed[] = {{0, U'°', 1, 1}, {0, U' ', 1, 1},  {0, U'\'', 0, 0},
                                                         {0, U'5', 0, 0}, {1, U'\'', 1, 2}, {2, U'"', 1, 3},
                                                         {2, U'e', 1, 2}, {3, U' ', 0, 3}};
    for (auto const& [from, character, handled, to] : typed) {
        edit[from].SetFocus();
        EXPECT_EQ(angle.Mask().OnFieldChar(character), handled)
            << from << ' ' << static_cast<unsigned>(character);
        EXPECT_EQ(angle.Mask().GetChildEditFocus(), to);
    }
    for (char32_t const character : {U'w', U'W', U'西'}) {
        edit[3].SetEditText("东");
        edit[1].SetFocus();
        EXPECT_EQ(angle.Mask().OnFieldChar(character), 1);
        EXPECT_EQ(edit[3].text, "W");
    }
    EXPECT_EQ(angle.Mask().OnFieldChar(U'n'), 0);
}

TEST(EditAngleMask, SpinsAndTogglesTheSign) {
    Angle angle(12, eSignNorthSouth);
    angle->SetValue(Radians(12, 1, 2, 3));
    angle.Mask().OnFieldFocus(1);
    angle->DispatchSpinDeltapos(1, 5);
    EXPECT_EQ(angle.Fields(), "1|7|3.00000|北");
    angle.Mask().OnFieldFocus(3);
    angle->DispatchSpinDeltapos(0, 1);
    EXPECT_EQ(angle.Fields(), "1|7|3.00000|S");
    EXPECT_EQ(angle.edit[3].end, 1);
    angle.Mask().ToggleSign();
    EXPECT_EQ(angle.edit[3].text, "北");
    angle.edit[3].Empty();
    angle.Mask().ToggleSign();
    EXPECT_EQ(angle.edit[3].text, "");

    struct Row {
        long unit;
        int up, delta, wrap, limit;
        double from, minimum, maximum, to;  // in the unit
    };
    constexpr double refused = -1e9;
    Row const rows[] = {
        // clang-format off
        {11, 1, 1, 1, 0, 10, -360, 360, 11}, {11, 0, 1, 1, 0, 10, -360, 360, 9}, {11, 1, 1000, 1, 0, 10, 0, 359, 20},  // at most a tenth
        {13, 1, 1, 1, 0, 1.3, 0, 90, 2.3}, {18, 1, 4, 1, 0, 1, 0, 6.25, 1.4}, {17, 1, 1, 1, 0, 0.25, 0, 0.9, 0.26},
        {11, 1, 1, 1, 0, 89.5, 0, 90, 0}, {11, 0, 1, 1, 0, 0.5, 0, 90, 90}, {11, 0, 1, 1, 1, 0.5, 0, 90, 89},
        {11, 1, 1, 0, 0, 89.5, 0, 90, refused}, {11, 1, 1, 1, 0, 95, 0, 90, 90}, {11, 0, 1, 1, 0, -5, 0, 90, 0},
        {11, 1, 1, 0, 0, -5, 0, 90, -4}, {11, 1, 1, 1, 0, 1, 1, 2, 1.1},
        // clang-format on
    };
    for (Row const& row : rows) {
        Angle spun(row.unit);
        auto const standard = [&](double shown) {
            double radians = 0;
            CTovValue::Convert(shown, row.unit, radians, TOV_UNIT_RADIANS);
            return radians;
        };
        spun->SetLimitToCircle(row.limit);
        ASSERT_EQ(spun->SetRange(standard(row.minimum), standard(row.maximum)), 1);
        spun->SetValue(standard(row.from));
        double radians = 0;
        int const isMoved = spun.Mask().SpinTarget(row.up, row.delta, 0, row.wrap, nullptr, radians);
        EXPECT_EQ(isMoved, row.to != refused) << row.from;
        EXPECT_NEAR(radians, isMoved != 0 ? standard(row.to) : 0, 1e-12) << row.from;
    }
}

TEST(EditAngleMask, CountsInSecondsOnly) {
    struct Row {
        long unit;
        double degrees, count;
        char const* abbreviation;
    };
    for (Row const& row :
         {Row{11, 1.5, 5400, "\""}, Row{12, -1.5, -5400, "\""}, Row{13, 0.25, 900, "\""},
          Row{15, 1.5, 5000 / 3.0, "mgon"}, Row{16, -0.9, -1000, "mgon"}, Row{17, 90, 0.25, "rev"}}) {
        Angle angle(row.unit);
        angle->SetValue(row.degrees * pi / 180);
        angle->SetSecOnly(1);
        EXPECT_FALSE(angle.Mask().IsSplit());
        EXPECT_NEAR(angle.edit.Number().value, row.count, 1e-9) << row.unit;
        EXPECT_EQ(angle.edit.label, row.abbreviation);
        angle.edit.TypeNumber(2 * row.count);
        EXPECT_NEAR(angle->GetValue(), 2 * row.degrees * pi / 180, 1e-14) << row.unit;
        angle.edit.TypeNumber(angle.edit.Number().maximum);
        EXPECT_EQ(angle->GetValue(), CTovEditAngleMask::wholeTurn);
        angle->SetSecOnly(0);
        EXPECT_EQ(angle.Mask().IsSplit(), row.unit == 12 || row.unit == 15);
        EXPECT_EQ(angle.edit.label.empty(), angle.Mask().IsSplit());
    }
    // The limit takes whole 360 off the seconds, as it always has.
    Angle angle(11);
    angle->SetSecOnly(1);
    angle->SetLimitToCircle(1);
    angle->SetValue(pi / 180 / 10 * 1.25);
    EXPECT_NEAR(angle.edit.Number().value, 90, 1e-9);
    EXPECT_EQ(angle->ConvertStdTo(1e300, 1, 1), std::fmod(1e300 * 57.29577951308232 * 3600, 360));
    double radians = 0;
    EXPECT_EQ(angle.Mask().SpinTarget(1, 1, 0, 1, nullptr, radians), 1);
    EXPECT_NEAR(radians, pi / 180 * (0.125 + 1 / 3600.0), 1e-12);
}

}  // namespace
}  // namespace tov
