#include <tov310/edit_number.h>
#include <tov310/resources.h>

#include "support/comma_locale.h"
#include "support/fake_edit.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <memory>
#include <random>
#include <tuple>

namespace tov {
namespace {

using test::EditInForm;
using enum CTovInputControl::eState;

// Keeps no list of values, which would be written to a file each time that the focus leaves.
struct PlainEdit : test::FakeEdit {
    using FakeEdit::FakeEdit;
    void AddCurrentToLastItems() override {}
};

struct IntegerEdit : CTovEditIntegerOn<PlainEdit> {
    using CTovEditIntegerOn<PlainEdit>::CTovEditIntegerOn;
    using CTovEditIntegerOn<PlainEdit>::InternalValidate;
    using CTovEditIntegerOn<PlainEdit>::m_number;
    using CTovEditIntegerOn<PlainEdit>::OnSpinStepToNextValue;
};

struct FloatingEdit : CTovEditFloatingOn<PlainEdit> {
    using CTovEditFloatingOn<PlainEdit>::CTovEditFloatingOn;
    using CTovEditFloatingOn<PlainEdit>::m_number;
    using CTovEditFloatingOn<PlainEdit>::OnSpinStepToNextValue;
};

using IntegerForm = EditInForm<IntegerEdit>;
using FloatingForm = EditInForm<FloatingEdit>;

TEST(EditNumber, ReadsAndShowsWhatIsTyped) {
    struct {
        long type;
        char const* keys;
        long value;
        char const* shown;
        CTovInputControl::eState state;
    } const integers[] = {
        {0, "12-", -12, "-12", eStateValid},
        {0, "1-2+3-", -123, "-123", eStateValid},
        {0, "+0a07", 7, "7", eStateValid},
        {0, "-", 0, "0", eStateValid},
        {0, "", 0, "", eStateEmpty},
        {0, "32768", 32768, "32768", eStateInvalid},
        {1, "-655.35", 65535, "65535", eStateValid},
        {2, "2147483648", 2147483648, "2147483648", eStateInvalid},
        {2, "-2147483648", -2147483648, "-2147483648", eStateValid},
        {3, "4294967295", 4294967295, "4294967295", eStateValid},
        {3, "99999999999999999999", -1, "18446744073709551615", eStateInvalid},
        {4, "-99999999999999999999", std::numeric_limits<long>::min(), "-9223372036854775808", eStateInvalid},
        {5, "4294967296", 4294967296, "4294967296", eStateInvalid},
    };
    for (auto const& c : integers) {
        IntegerForm f;
        f.edit.SetType(c.type);
        f.Enter();
        f.edit.Type(c.keys);
        EXPECT_EQ(std::tuple(f.edit.GetLong(), f.edit.Validate(nullptr)), std::tuple(c.value, c.state))
            << c.keys;
        f.Leave();
        EXPECT_EQ(std::tuple(f.edit.text, f.edit.GetLong(), f.edit.Validate(nullptr)),
                  std::tuple(c.shown, c.value, c.state))
            << c.keys;
    }
    struct {
        char const* keys;
        double value;
        char const* shown;
    } const doubles[] = {
        {"1.5", 1.5, "1.5"},
        {"1,5", 1.5, "1.5"},
        {"12.5-", -12.5, "-12.5"},
        {"1E2", 100, "100.0"},
        {"1e-2", 0.01, "0.01"},
        {"-1e-2", -0.01, "-0.01"},
        {"1e2-", -100, "-100.0"},
        {"1e999", 0, "0.0"},
        {"-1e999", 0, "0.0"},
        {".5", 0.5, "0.5"},
        {"5.", 5, "5.0"},
        {"1e", 1, "1.0"},
        {"-", 0, "0.0"},
        {"e5", 0, "0.0"},
        {"1.2.3", 1.2, "1.2"},
        {"1e-999", 0, "0.0"},
        {"", 0, ""},
    };
    for (auto const& c : doubles) {
        FloatingForm f;
        f.Enter();
        f.edit.Type(c.keys);
        EXPECT_EQ(f.edit.GetDouble(), c.value) << c.keys;
        f.Leave();
        EXPECT_EQ(std::tuple(f.edit.text, f.edit.GetDouble()), std::tuple(c.shown, c.value)) << c.keys;
    }
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
template <typename T>
std::string Printf(char const* format, T value) {
    char buffer[400];
    std::snprintf(buffer, sizeof buffer, format, value);
    return buffer;
}
#pragma GCC diagnostic pop

TEST(EditNumber, PrintsAsPrintfDoes) {
    FloatingForm floating;
    IntegerForm integer;
    floating.edit.SetTrimTrailingZeros(0);
    std::mt19937_64 random(3);
    for (int i = 0; i < 3000; ++i) {
        double const value = std::ldexp(static_cast<double>(static_cast<long>(random())),
                                        static_cast<int>(random() % 140) - 130) *
                             static_cast<double>(i % 50 != 0);
        for (char const* const format :
             {"%f", "%.0f", "%.3f", "%+9.2lf", "% e", "%.10g", "%08.1f", "[%-12.4f] 100%% m", "%G"})
            EXPECT_EQ(floating.edit.m_number.Print(format, value), Printf(format, value)) << format;
        auto const number = static_cast<long>(random()) >> (i % 64);
        integer.edit.SetLong(number);
        for (char const* const format :
             {"%li", "%lu", "%+06ld", "%-8lix", "% .4li", "%#lx", "%#lo", "%lX%%"}) {
            integer.edit.SetDisplayFormat(format);
            EXPECT_EQ(integer.edit.text, Printf(format, number));
        }
    }
    integer.edit.SetDisplayFormat("%s %5 %");
    EXPECT_EQ(integer.edit.text, "%s %5 %");
}

TEST(EditNumber, KeepsEveryBitWhileItIsOnlyLookedAt) {
    std::mt19937_64 random(11);
    for (auto const& [input, display] : {std::pair("", ""), std::pair("%.2f", "%.1f m"),
                                         std::pair("%9.3e", "%g"), std::pair("%8.3f m", "")}) {
        FloatingForm f;
        f.edit.SetInputFormat(CString(input));
        f.edit.CTovEditHost::SetDisplayFormat(CString(display));
        f.edit.clipboard = "7";
        for (int i = 0; i < 40'000; ++i) {
            // Half of them such as coordinates are, the others of every size.
            auto const bits =
                i % 2 != 0
                    ? random()
                    : std::bit_cast<std::uint64_t>(static_cast<double>(random() % 10'000'000'000'000) / 1e6);
            auto const value = std::bit_cast<double>(bits);
            if (!std::isfinite(value)) continue;
            f.edit.SetDouble(value);
            f.Enter();
            f.edit.Validate(nullptr);
            if (i % 4 == 0) {
                f.edit.SetEditSel(0, 0);
                f.edit.Type("1");
                f.edit.SelectAll();
                f.edit.Paste();
                f.edit.Undo();
                f.edit.Undo();
            }
            int const changed = f.edit.GetChangedByUser();
            f.Leave();
            f.edit.Validate(nullptr);
            ASSERT_EQ(std::bit_cast<std::uint64_t>(f.edit.GetDouble()), bits) << value << " by " << input;
            ASSERT_EQ(std::pair(changed, f.edit.GetChangedByUser()), std::pair(i % 4 == 0 ? 1 : 0, changed));
        }
    }
}

TEST(EditNumber, TakesEveryValueFromTheKeyboard) {
    IntegerForm integer;
    integer.edit.SetType(CTovEditIntegerHost::eShort);
    integer.Enter();
    for (int value = -32768; value <= 32767; ++value) {
        integer.edit.Empty();
        integer.edit.Type(std::to_string(value));
        ASSERT_EQ(integer.edit.GetShort(), value);
        ASSERT_EQ(integer.edit.Validate(nullptr), eStateValid);
    }
    FloatingForm floating;
    floating.Enter();
    std::mt19937_64 random(5);
    for (int i = 0; i < 5'000; ++i) {
        auto const value = std::bit_cast<double>(random());
        if (!std::isfinite(value)) continue;
        floating.edit.Empty();
        floating.edit.Type(Printf("%.17g", value));
        ASSERT_EQ(floating.edit.GetDouble(), value);
        ASSERT_EQ(floating.edit.Validate(nullptr), eStateValid);
    }
}

// What a text is worth, in other words than the engine's.
std::string SignFirst(std::string text, bool floating) {
    std::string digits, sign;
    for (std::size_t i = 0; i < text.size(); ++i) {
        bool const exponents =
            floating && digits.size() > 1 && i > 0 && (text[i - 1] == 'e' || (digits.back() == 'e'));
        if ((text[i] != '+' && text[i] != '-') || exponents) {
            digits += text[i];
        } else if (sign.empty()) {
            sign = text[i];
        }
    }
    return sign + digits;
}

double ReadDouble(std::string const& text) {
    double const value = std::strtod(SignFirst(text, true).c_str(), nullptr);
    return std::isinf(value) ? 0 : value;
}

template <typename Form, typename Worth, typename Shown, typename InRange>
void FuzzKeys(Form& f, std::string_view keys, std::mt19937& random, Worth worth, Shown shown,
              InRange inRange) {
    f.edit.SetEmptyAllowed(static_cast<int>(random() % 2));
    for (int step = 0; step < 400; ++step) {
        auto const operation = random() % 24;
        bool const focused = f.edit.ControlOrChildHasFocus() != 0;
        if (operation < 12) {
            if (focused) f.edit.Type(keys.substr(random() % keys.size(), 1));
        } else if (operation == 12) {
            f.edit.clipboard.clear();
            for (auto n = random() % 9; n > 0; --n)
                f.edit.clipboard += keys[random() % keys.size()];
            f.edit.Paste();
        } else if (operation < 16) {
            f.edit.Key(operation == 13 ? VK_UP : operation == 14 ? VK_DOWN : VK_DELETE);
        } else if (operation < 18) {
            f.edit.Key('Z', {VK_CONTROL});
        } else if (operation == 18) {
            f.edit.Key('Y', {VK_CONTROL});
        } else if (operation == 19) {
            f.edit.SelectAll();
        } else if (operation == 20) {
            f.edit.SetEditSel(0, 0);
        } else if (operation == 21) {
            f.edit.Empty();
        } else {
            focused ? f.Leave() : f.Enter();
        }
        auto const value = f.edit.GetRawValue();
        bool const hasFocus = f.edit.ControlOrChildHasFocus() != 0;
        ASSERT_TRUE(hasFocus ? worth(f.edit.text, value)
                             : f.edit.text == (f.edit.IsEmpty() ? "" : shown(value)))
            << f.edit.text << " is " << value;
        auto const state = f.edit.Validate(nullptr);
        bool const mayBe = f.edit.IsEmpty() ? f.edit.GetEmptyAllowed() != 0 : inRange(value);
        ASSERT_EQ(state == eStateValid, mayBe) << f.edit.text << " is " << value;
        ASSERT_EQ(f.edit.GetRawValue(), value);
    }
}

TEST(EditNumber, KeepsTextAndValueInStepUnderRandomKeys) {
    std::mt19937 random(17);
    for (int run = 0; run < 150; ++run) {
        long const a = static_cast<long>(random() % 40'000) - 20'000;
        long const b = a + static_cast<long>(random() % 20'000);
        IntegerForm integer;
        integer.edit.SetType(run % 6);
        long const low = run % 2 != 0 ? std::max(a, 0L) : a;
        ASSERT_EQ(integer.edit.SetRange(low, std::max(low, b)), 1);
        FuzzKeys(
            integer, "0123456789+-xe.", random,
            [&](std::string const& text, long value) {
                std::string const read = SignFirst(text, false);
                return value == (run % 2 != 0 ? static_cast<long>(std::strtoul(read.c_str(), nullptr, 10))
                                              : std::strtol(read.c_str(), nullptr, 10));
            },
            [&](long value) {
                return run % 2 != 0 ? std::to_string(static_cast<unsigned long>(value))
                                    : std::to_string(value);
            },
            [&](long value) { return value >= low && value <= std::max(low, b); });

        FloatingForm floating;
        char const* const formats[] = {"%f", "%.2f", "%e", "%.1f m"};
        floating.edit.SetInputFormat(CString(formats[run % 4]));
        floating.edit.SetTrimTrailingZeros(0);
        floating.edit.SetRange(static_cast<double>(a), static_cast<double>(b));
        FuzzKeys(
            floating, "00123456789+-..eEx", random,
            [&](std::string const& text, double value) {
                // What undo brings back stands for the number that was shown so.
                return value == ReadDouble(text) || Printf(formats[run % 4], value).starts_with(text);
            },
            [&](double value) { return Printf(formats[run % 4], value); },
            [&](double value) { return value >= static_cast<double>(a) && value <= static_cast<double>(b); });
    }
}

TEST(EditNumber, RefusesRangesThatAreNoneAndNamesThoseThatAreMissed) {
    std::tuple<long, long, long, int> const ranges[] = {
        {0, -32769, 0, 0}, {0, -32768, 100000, 1}, {0, 5, 4, 0},           {1, 0, 65536, 0},
        {1, -1, 5, 0},     {1, 7, 65535, 1},       {3, -1, 5, 0},          {3, 5, -1, 1},
        {2, -5, -1, 1},    {2, -1, -5, 0},         {5, 0, 4294967295L, 1}, {4, 5, 5, 1},
    };
    for (auto const& [type, low, high, taken] : ranges) {
        IntegerForm f;
        f.edit.SetType(type);
        long before = 0, after = 0, maximum = 0;
        f.edit.GetRange(before, maximum);
        EXPECT_EQ(f.edit.SetRange(low, high), taken) << low << ' ' << high;
        f.edit.GetRange(after, maximum);
        EXPECT_EQ(after, taken != 0 ? low : before);
    }
    IntegerForm f;
    HINSTANCE const english = TovLoadResourceModule(TOV_TEST_SOURCE_DIR "/res/en");
    CString message;
    f.edit.SetRange(-10, -2);
    f.Enter();
    f.edit.Type("+-1");
    EXPECT_EQ(std::tuple(f.edit.text, f.edit.beeps), std::tuple("-1", 1));  // no plus below 1
    EXPECT_EQ(f.edit.Validate(nullptr), eStateInvalid);
    EXPECT_EQ(f.edit.Validate(&message), eStateInvalid);
    EXPECT_EQ(message, "有效的范围是从 -10 到 -2");
    f.edit.SetType(CTovEditIntegerHost::eUlong);
    TovSetTovResourceHandle(english);
    f.edit.InternalValidate(-1L, &message);
    EXPECT_EQ(message, "The valid range is 0 to 4294967295");
    f.edit.SetType(CTovEditIntegerHost::eShort);
    f.edit.SetMinChars(4);
    EXPECT_EQ(f.edit.Validate(&message), eStateInvalid);
    EXPECT_EQ(message, "The field contains 2 characters, the minimum is 4 characters");

    FloatingForm d;
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    d.edit.SetType(CTovEditFloatingHost::eFloat);
    EXPECT_EQ(d.edit.SetRange(0, 3.5e38) + d.edit.SetRange(2, 1) + d.edit.SetRange(nan, 1), 0);
    EXPECT_EQ(d.edit.SetDouble(nan) + d.edit.SetDouble(HUGE_VAL), 0);
    EXPECT_EQ(d.edit.Validate(nullptr), eStateEmpty);
    EXPECT_EQ(d.edit.SetRange(0.5, 2), 1);
    d.edit.SetDisplayFormat(1);
    d.edit.Empty();
    EXPECT_EQ(d.edit.Validate(&message), eStateEmpty);
    d.edit.SetEmptyAllowed(1);
    EXPECT_EQ(d.edit.Validate(&message), eStateValid);
    d.edit.SetDouble(7);
    EXPECT_EQ(d.edit.Validate(&message), eStateInvalid);
    EXPECT_EQ(message, "The valid range is 0.5 to 2.0");
    TovSetTovResourceHandle(nullptr);
}

TEST(EditNumber, SpinsAsArithmeticSays) {
    std::mt19937 random(23);
    IntegerForm f;
    for (int i = 0; i < 20'000; ++i) {
        long const type = static_cast<long>(random() % 6);
        bool const isUnsigned = type % 2 != 0;
        f.edit.SetType(type);
        long low = static_cast<long>(random() % 100) - (isUnsigned ? 0 : 50);
        long high = low + static_cast<long>(random() % 100);
        if (random() % 4 == 0) low = f.edit.m_number.minimum, high = f.edit.m_number.maximum;
        f.edit.SetRange(low, high);
        long const starts[] = {low, high, low - 1, high + 1, (low + high) / 2};
        long const from = std::max(starts[random() % 5], isUnsigned ? 0 : low - 1);
        int const step = static_cast<int>(random() % 3) * static_cast<int>(random() % 60);
        int const up = static_cast<int>(random() % 2);
        int const wraps = static_cast<int>(random() % 2);
        long to = up != 0 ? from + step : from - step;
        bool const was = from >= low && from <= high;
        bool const beeps = wraps == 0 && was && (to < low || to > high);
        if (wraps != 0 && to < low) {
            to = was ? high : low;
        } else if (wraps != 0 && to > high) {
            to = was ? low : high;
        }
        if (beeps) to = from;
        if (isUnsigned) to = std::max(to, 0L);
        f.edit.SetWrapRange(wraps);
        f.edit.SetLong(from);
        f.edit.beeps = 0;
        f.edit.OnSpinDeltapos(up, random() % 2 != 0 ? step : -step);
        ASSERT_EQ(std::tuple(f.edit.GetLong(), f.edit.beeps, f.edit.GetChangedByUser()),
                  std::tuple(to, beeps ? 1 : 0, beeps ? 0 : 1));
    }
    f.edit.SetType(CTovEditIntegerHost::eLong);
    f.edit.SetWrapRange(1);
    f.edit.SetLong(std::numeric_limits<long>::max());
    f.edit.OnSpinDeltapos(1, std::numeric_limits<int>::min());
    EXPECT_EQ(f.edit.GetLong(), 2147483647);
    FloatingForm d;
    d.edit.SetRange(1, 2);
    d.edit.SetSpinDeltaFloating(1);
    d.edit.SetDouble(1);
    for (int i = 1; i <= 10; ++i) {
        d.edit.OnSpinDeltapos(1, 1);
        EXPECT_NEAR(d.edit.GetDouble(), 1 + i * 0.1, 1e-12);
    }
    EXPECT_EQ(d.edit.GetDouble(), 2);  // to the end, not beyond it
    d.edit.OnSpinDeltapos(1, 1);
    EXPECT_EQ(d.edit.GetDouble(), 1);
    d.edit.SetRange(3, 3);
    d.edit.OnSpinDeltapos(1, 1);
    EXPECT_EQ(d.edit.GetDouble(), 3);
    d.edit.SetRange(0, 1000);
    d.edit.SetSpinDeltaFloating(1e-17);
    d.edit.OnSpinDeltapos(0, -2);
    EXPECT_EQ(d.edit.GetDouble(), 1);
}

TEST(EditNumber, WalksPermittedValues) {
    IntegerForm f;
    FloatingForm d;
    f.edit.CreateSpinButton(std::vector<long>{10, 20, 20, 50});
    d.edit.CreateSpinButton(std::vector<double>{10, 20, 20, 50});
    for (auto const& [from, above, below] :
         {std::tuple(10, 20, 50), std::tuple(20, 20, 10), std::tuple(15, 20, 10), std::tuple(50, 10, 20),
          std::tuple(5, 10, 50), std::tuple(60, 10, 50), std::tuple(30, 20, 20)}) {
        EXPECT_EQ(f.edit.OnSpinStepToNextValue(1, from), above) << from;
        EXPECT_EQ(f.edit.OnSpinStepToNextValue(0, from), below) << from;
        EXPECT_EQ(d.edit.OnSpinStepToNextValue(1, from), above) << from;
        EXPECT_EQ(d.edit.OnSpinStepToNextValue(0, from), below) << from;
    }
    EXPECT_EQ(f.edit.IsValidSpinButtonValue(20) + f.edit.IsValidSpinButtonValue(21), 1);
    EXPECT_EQ(d.edit.IsValidSpinButtonValue(21), 1);
    d.edit.CreateSpinButton(std::vector<double>{5, 5});
    EXPECT_EQ(d.edit.IsValidSpinButtonValue(5) + d.edit.IsValidSpinButtonValue(6), 1);
}

TEST(EditNumber, KnowsNegativeZero) {
    IntegerForm f;
    EXPECT_EQ(f.edit.SetSupportNegativeZero(1), 1);
    f.Enter();
    f.edit.Type("0-");
    EXPECT_EQ(std::tuple(f.edit.GetLong(), f.edit.GetIsNegativeZero()), std::tuple(0, 1));
    f.Leave();
    EXPECT_EQ(f.edit.text, "-0");
    f.edit.SetLong(0);
    EXPECT_EQ(f.edit.text, "0");
    f.edit.SetIsNegativeZero();
    EXPECT_EQ(std::tuple(f.edit.text, f.edit.GetIsNegativeZero()), std::tuple("-0", 1));
    f.edit.SetType(CTovEditIntegerHost::eUlong);
    EXPECT_EQ(f.edit.GetSupportNegativeZero() + f.edit.SetSupportNegativeZero(1) + f.edit.GetIsNegativeZero(),
              0);
    FloatingForm d;
    d.edit.SetDouble(-0.0);
    EXPECT_TRUE(std::signbit(d.edit.GetDouble()));
    EXPECT_EQ(d.edit.text, "-0.0");
}

// Whatever way a text comes in as one.
TEST(EditNumber, ReadsTextsOfOthersAndBeepsForWhatIsLost) {
    struct LastItem : FloatingEdit {
        using FloatingEdit::FloatingEdit;
        std::vector<CString> GetAllLastItems() override { return {clipboard}; }
    };
    EditInForm<LastItem> d;
    d.Enter();
    for (auto const& [text, number] :
         {std::pair("1.234,56", 1234.56), std::pair("1,234.5 m", 1234.5), std::pair("1.234.567,8", 1234567.8),
          std::pair("12,5", 12.5), std::pair("1\u2019234.5 feet", 1234.5), std::pair("1e-3 m", 0.001),
          // What would be another number is none.
          std::pair("12.34,5", 0.0), std::pair("12.5.6", 0.0), std::pair("0x10", 0.0),
          std::pair("12 34", 0.0), std::pair("3-4", 0.0)}) {
        for (bool const isInserted : {false, true}) {
            d.edit.Empty();
            d.edit.clipboard = text;
            isInserted ? d.edit.Insert(0) : d.edit.Paste();
            EXPECT_EQ(d.edit.GetDouble(), number) << text;
        }
    }
    IntegerForm f;
    f.Enter();
    for (auto const& [text, number, beeps] :
         {std::tuple("12.5", 125, 1), std::tuple(" 1 234\t", 1234, 0), std::tuple("7", 7, 0)}) {
        f.edit.Empty();
        f.edit.beeps = 0;
        f.edit.clipboard = text;
        f.edit.Paste();
        EXPECT_EQ(std::tuple(f.edit.GetLong(), f.edit.beeps), std::tuple(number, beeps)) << text;
    }
}

TEST(EditNumber, TakesTheSeparatorOfTheLocaleOnceAndSkipsPrefixes) {
    auto locale = std::make_unique<test::CommaLocale>();
    if (!locale->IsThere()) GTEST_SKIP() << "no locale with a decimal comma";
    FloatingForm f;
    locale.reset();
    f.Enter();
    f.edit.Type("12.5E1");
    EXPECT_EQ(std::tuple(f.edit.text, f.edit.GetDouble()), std::tuple("12,5e1", 125));
    f.edit.CTovEditHost::SetDisplayFormat(CString("° %.2f m"));
    f.Leave();
    EXPECT_EQ(f.edit.text, "° 125,00 m");
    for (auto const& [clicked, typed] :
         {std::pair(0, 0), std::pair(1, 0), std::pair(2, 0), std::pair(4, 2)}) {
        f.edit.engine.BeginLeftButton(clicked);
        f.Enter();
        EXPECT_EQ(std::tuple(f.edit.text, f.edit.start), std::tuple("125,0", typed));
        f.edit.engine.EndLeftButton();
        f.Leave();
    }
    EXPECT_EQ(f.edit.GetDouble(), 125);
}

}  // namespace
}  // namespace tov
