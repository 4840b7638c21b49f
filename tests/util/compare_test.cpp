// links: objects
#include <tov310/compare.h>

#include "util/case_fold.h"
#include "vesk/cpu.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <cwctype>
#include <limits>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace tov {
namespace {

int Sign(int value) {
    return (value > 0) - (value < 0);
}

TEST(Compare, TextsCompareByBytes) {
    struct {
        char const* a;
        char const* b;
        int sign;
    } const rows[] = {
        {"a", "b", -1}, {"b", "a", 1},    {"a", "a", 0},         {"", "a", -1},      {"a10", "a9", -1},
        {"Z", "a", -1}, {nullptr, "", 0}, {nullptr, nullptr, 0}, {nullptr, "a", -1}, {"\x7f", "\xc3\xa4", -1},
        {"ab", "a", 1},
    };
    for (auto const& row : rows) {
        EXPECT_EQ(Sign(TovCompare(row.a, row.b)), row.sign) << (row.a ? row.a : "null") << ' ' << row.b;
        EXPECT_EQ(Sign(TovCompare(row.b, row.a)), -row.sign);
    }
}

TEST(CompareIS, Examples) {
    struct {
        char const* a;
        char const* b;
        int sign;
        int noCase;
    } const rows[] = {
        {"a10", "a9", 1, 1},
        {"a01", "a1", 0, 0},
        {"a01b", "a1a", 1, 1},
        {"a01", "a1b", -1, -1},
        {"", "a", -1, -1},
        {"", "", 0, 0},
        {nullptr, nullptr, 0, 0},
        {nullptr, "0", -1, -1},
        {"1", "10", -1, -1},
        {"10", "1a", 1, 1},
        {"00", "0", 0, 0},
        {"000", "0x", -1, -1},
        {"1a", "1", 1, 1},
        {"12", "1 2", 1, 1},
        {"2", "a", -1, -1},
        {"2", " ", 1, 1},
        {"0", "-1", 1, 1},
        // Their difference does not fit an int, nor do they.
        {"2147483647", "-5", 1, 1},
        {"4294967296", "1", 1, 1},
        {"4294967297", "4294967296", 1, 1},
        {"99999999999999999999999999999998", "99999999999999999999999999999999", -1, -1},
        {"00000000000000000000000000000009", "10", -1, -1},
        {"file0000000000000010x", "file10x", 0, 0},
        {"0123456789abcdef1", "0123456789abcdef02", -1, -1},
        {"0123456789abcde12", "0123456789abcde1", 1, 1},
        {"v1.2.10", "v1.2.9", 1, 1},
        {"a", "B", 1, -1},
        {"A", "a", -1, 0},
        {"_", "A", 1, -1},
        {"_", "a", -1, -1},
        {"Ärger 2", "ärger 10", -1, -1},
        {"ÄRGER", "ärger", -1, 0},
        {"ПУНКТ 09", "пункт 9", -1, 0},
        {"\xe2\x84\xaa", "k", 1, 0},  // the sign of kelvin
        {"\xc4\xb0", "i", 1, 1},      // has no small letter of one character
        {"字10", "字9", 1, 1},
        {"\xff", "\xf4\x8f\xbf\xbf", 1, 1},  // no character at all, and the last one
        {"\xc3", "\xc3\xa4", -1, 1},
        {"\xc3", "\xc3", 0, 0},
    };
    for (auto const& row : rows) {
        EXPECT_EQ(Sign(TovCompareIS(row.a, row.b)), row.sign) << row.a << ' ' << row.b;
        EXPECT_EQ(Sign(TovCompareIS(row.b, row.a)), -row.sign) << row.a << ' ' << row.b;
        EXPECT_EQ(Sign(TovCompareNoCaseIS(row.a, row.b)), row.noCase) << row.a << ' ' << row.b;
        EXPECT_EQ(Sign(TovCompareNoCaseIS(row.b, row.a)), -row.noCase) << row.a << ' ' << row.b;
    }
}

bool DigitAt(char const* at) {
    return *at >= '0' && *at <= '9';
}

std::string_view TakeNumber(char const*& at) {
    while (*at == '0')
        ++at;
    char const* const begin = at;
    while (DigitAt(at))
        ++at;
    return {begin, static_cast<std::size_t>(at - begin)};
}

// The definition, step by step; ASCII letters only.
int ByDefinition(char const* a, char const* b, bool noCase) {
    auto const at = [noCase](char const* p) {
        int const c = static_cast<unsigned char>(*p);
        return noCase && c >= 'A' && c <= 'Z' ? c + 32 : c;
    };
    for (;;) {
        if (*a == '\0' || *b == '\0') return Sign(at(a) - at(b));
        if (DigitAt(a) && DigitAt(b)) {
            std::string_view const x = TakeNumber(a);
            std::string_view const y = TakeNumber(b);
            if (x.size() != y.size()) return x.size() < y.size() ? -1 : 1;
            if (x != y) return x < y ? -1 : 1;
        } else {
            if (at(a) != at(b)) return Sign(at(a) - at(b));
            ++a;
            ++b;
        }
    }
}

// Many texts with much in common, each ending at a different distance before the end of a page.
class TextPool {
 public:
    static constexpr std::size_t count = 4096;

    TextPool(std::minstd_rand& random, std::string_view alphabet) : m_memory(count * room + 4096) {
        std::string text;
        auto const letter = [&] { return alphabet[random() % alphabet.size()]; };
        for (std::size_t i = 0; i < count; ++i) {
            if (random() % 4 == 0) {
                text.clear();
                for (auto n = random() % 40; n > 0; --n)
                    text += letter();
            } else if (!text.empty() && random() % 2 == 0) {
                text[random() % text.size()] = letter();
            } else if (text.size() < room / 2) {
                text.insert(random() % (text.size() + 1), 1, letter());
            }
            char* const place = &m_memory[i * room + random() % (room / 2)];
            text.copy(place, text.size());
            m_texts.push_back(place);
        }
    }
    char const* operator[](std::size_t i) const { return m_texts[i % count]; }

 private:
    static constexpr std::size_t room = 128;
    std::vector<char> m_memory;  // of zeros, which end the texts
    std::vector<char const*> m_texts;
};

constexpr int triplesPerPool = TOV_SANITIZED ? 50'000 : 500'000;

TEST(CompareIS, TenMillionTriplesAreInOrder) {
    std::minstd_rand random(12);
    std::string_view const alphabets[] = {"01", "0129 ", "0019aAbB_.", "aA0\xc3\xa4\x84\xff\xe4\xb8"};
    for (int pool = 0; pool < 20; ++pool) {
        TextPool const texts(random, alphabets[pool % 4]);
        bool const ascii = pool % 4 != 3;
        for (int i = 0; i < triplesPerPool; ++i) {
            auto const at = random();
            // Neighbours differ in few places.
            char const* const a = texts[at];
            char const* const b = texts[at + 1 + random() % 3];
            char const* const c = i % 2 == 0 ? texts[at + 4] : texts[random()];
            for (bool const noCase : {false, true}) {
                auto* const compare = noCase ? TovCompareNoCaseIS : TovCompareIS;
                int const ab = Sign(compare(a, b));
                int const bc = Sign(compare(b, c));
                int const ac = Sign(compare(a, c));
                ASSERT_EQ(compare(a, a), 0) << a;
                ASSERT_EQ(Sign(compare(b, a)), -ab) << a << '\n' << b;
                // a <= b <= c gives a <= c, and a < c where one of the steps is a real one.
                if (ab <= 0 && bc <= 0) {
                    ASSERT_EQ(ac, std::min(ab, bc)) << a << '\n' << b << '\n' << c;
                }
                if (ascii || !noCase) {
                    ASSERT_EQ(ab, ByDefinition(a, b, noCase)) << a << '\n' << b;
                }
            }
        }
    }
}

TEST(CompareIS, CasesFoldInAllScripts) {
    std::string const before = std::setlocale(LC_CTYPE, nullptr);
    if (std::setlocale(LC_CTYPE, "C.UTF-8") == nullptr) GTEST_SKIP() << "no locale C.UTF-8";
    for (char32_t c = 0; c <= 0x10FFFF; ++c) {
        ASSERT_EQ(FoldCase(FoldCase(c)), FoldCase(c)) << std::hex << static_cast<unsigned>(c);
        // The tables of the system may be of a later version, in which a letter has a partner that it lacks
        // here.
        auto const small = static_cast<char32_t>(std::towlower(static_cast<std::wint_t>(c)));
        if (c == 0x130 || FoldCase(c) == c) continue;
        ASSERT_EQ(FoldCase(small), FoldCase(c)) << std::hex << static_cast<unsigned>(c);
    }
    std::setlocale(LC_CTYPE, before.c_str());
    char32_t const pairs[][2] = {{'A', 'a'},     {'Z', 'z'},         {'@', '@'},           {'[', '['},
                                 {0xC4, 0xE4},   {0xD7, 0xD7},       {0x3A3, 0x3C3},       {0x3C2, 0x3C3},
                                 {0x42F, 0x44F}, {0x1E9E, 0xDF},     {0x212A, 'k'},        {0x100, 0x101},
                                 {0x101, 0x101}, {0x10427, 0x1044F}, {0x10FFFF, 0x10FFFF}, {0x5B57, 0x5B57}};
    for (auto const& [capital, small] : pairs)
        EXPECT_EQ(FoldCase(capital), small) << std::hex << static_cast<unsigned>(capital);
}

TEST(Compare, IntegersAtTheEndsOfTheirRangeDoNotOverflow) {
    int const ordered[] = {std::numeric_limits<int>::min(), std::numeric_limits<int>::min() + 1, -1, 0, 1,
                           std::numeric_limits<int>::max()};
    for (int const& a : ordered) {
        for (int const& b : ordered)
            EXPECT_EQ(Sign(TovCompare(a, b)), (&a > &b) - (&a < &b)) << a << ' ' << b;
    }
}

constexpr double e = 2.220446049250313e-16;
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double huge = std::numeric_limits<double>::max();

TEST(Compare, DoublesWithinTheToleranceAreEqual) {
    struct {
        double a;
        double b;
        int sign;
    } const rows[] = {
        {1.0, 2.0, -1},
        {1.0, 1.0 + e, 0},      // e < e * (1 + e) + e
        {1.0, 1.0 + 2 * e, 0},  // 2e < e * (1 + 2e) + e, by a hair
        {1.0, 1.0 + 3 * e, -1},
        {0.0, e, 0},
        {0.0, e * (1 + e), -1},  // the bound is exactly this difference, and it is strict
        {0.0, 3 * e, -1},
        {-e / 2, e / 2, -1},  // likewise, since the bound rounds to e
        {-e / 4, e / 4, 0},
        {0.0, -0.0, 0},
        {1e300, 1e300 * (1 + e), 0},
        {1e300, 1e300 * (1 + 4 * e), -1},
        {-huge, huge, -1},  // the difference is infinite
        {huge, infinity, -1},
        {-infinity, -huge, -1},
        {-infinity, infinity, -1},
        {infinity, infinity, 0},
        {-infinity, -infinity, 0},
        {infinity, nan, -1},  // no number stands behind it
        {0.0, nan, -1},
        {-infinity, nan, -1},
        {nan, nan, 0},
        {nan, -nan, 0},
    };
    for (auto const& row : rows) {
        EXPECT_EQ(TovCompare(row.a, row.b), row.sign) << row.a << ' ' << row.b;
        EXPECT_EQ(TovCompare(row.b, row.a), -row.sign) << row.b << ' ' << row.a;
    }
}

TEST(Compare, MissingNumbersSortBehindAllOthers) {
    std::vector<double> column = {nan, 3.0, -infinity, nan, infinity, 1.0, 2.0};
    std::stable_sort(column.begin(), column.end(), [](double a, double b) { return TovCompare(a, b) < 0; });
    EXPECT_EQ((std::vector<double>(column.begin(), column.end() - 2)),
              (std::vector<double>{-infinity, 1.0, 2.0, 3.0, infinity}));
    EXPECT_TRUE(std::isnan(column[5]) && std::isnan(column[6]));
}

}  // namespace
}  // namespace tov
