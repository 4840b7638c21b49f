// links: objects
#include <tov310/compare.h>

#include "util/case_fold.h"
#include "vesk/cpu.h"

#include <gtest/gtest.h>
#include <sys/mman.h>

#include <algorithm>
#include <clocale>
#include <cstring>
#include <cwctype>
#include <limits>
#include <random>

namespace tov {
namespace {

int Sign(int value) {
    return (value > 0) - (value < 0);
}

// The sign of the comparison, which must turn with its arguments.
template <class Compare, class Value>
int Order(Compare compare, Value a, Value b) {
    int const order = Sign(compare(a, b));
    EXPECT_EQ(Sign(compare(b, a)), -order);
    return order;
}

TEST(Compare, TextsByBytesByNumbersAndWithoutCase) {
    std::tuple<char const*, char const*, int, int, int> const rows[] = {
        // clang-format off
        {"a10", "a9", -1, 1, 1},   {"a01", "a1", -1, 0, 0},       {"a01b", "a1a", -1, 1, 1},
        {"a01", "a1b", -1, -1, -1}, {"", "a", -1, -1, -1},         {nullptr, "", 0, 0, 0},
        {nullptr, "0", -1, -1, -1}, {"1", "10", -1, -1, -1},       {"10", "1a", -1, 1, 1},
        {"00", "0", 1, 0, 0},       {"000", "0x", -1, -1, -1},     {"12", "1 2", 1, 1, 1},
        {"2", "a", -1, -1, -1},     {"0", "-1", 1, 1, 1},          {"v1.2.10", "v1.2.9", -1, 1, 1},
        // Neither these nor their difference fit an int.
        {"2147483647", "-5", 1, 1, 1}, {"4294967296", "1", 1, 1, 1}, {"4294967297", "4294967296", 1, 1, 1},
        {"00000000000000000000000000000009", "10", -1, -1, -1}, {"f0000000000000010x", "f10x", -1, 0, 0},
        {"0123456789abcdef1", "0123456789abcdef02", 1, -1, -1},
        {"a", "B", 1, 1, -1},       {"A", "a", -1, -1, 0},         {"_", "A", 1, 1, -1},
        {"Ärger 2", "ärger 10", -1, -1, -1}, {"ÄRGER", "ärger", -1, -1, 0}, {"ПУНКТ 09", "пункт 9", -1, -1, 0},
        {"\xe2\x84\xaa", "k", 1, 1, 0},  // the sign of kelvin
        {"\xc4\xb0", "i", 1, 1, 1},      // has no small letter of one character
        {"字10", "字9", -1, 1, 1},
        {"\xff", "\xf4\x8f\xbf\xbf", 1, 1, 1},  // no character at all, and the last one
        {"\xc3", "\xc3\xa4", -1, -1, 1}, {"\xed\xa0\x80", "\xee\x80\x80", -1, -1, 1}, {"\xe0\x81\xa1", "b", 1, 1, 1},
        // clang-format on
    };
    auto const byBytes = [](char const* a, char const* b) { return TovCompare(a, b); };
    for (auto const& [a, b, bytes, numbers, noCase] : rows) {
        SCOPED_TRACE(testing::PrintToString(a) + " and " + b);
        EXPECT_EQ(Order(byBytes, a, b), bytes);
        EXPECT_EQ(Order(TovCompareIS, a, b), numbers);
        EXPECT_EQ(Order(TovCompareNoCaseIS, a, b), noCase);
    }
}

// Texts compare as their keys do by bytes: in a key each number begins with its length without zeros in
// front. ASCII letters only.
std::string Key(char const* text, bool noCase) {
    std::string key;
    while (*text != '\0') {
        if (std::size_t const zeros = std::strspn(text, "0"),
            digits = std::strspn(text + zeros, "0123456789");
            zeros + digits != 0) {
            key.append({'0', static_cast<char>(digits)}).append(text + zeros, digits);
            text += zeros + digits;
        } else {
            key += noCase && *text >= 'A' && *text <= 'Z' ? static_cast<char>(*text + 32) : *text;
            ++text;
        }
    }
    return key;
}

struct Text {
    char* text;
    std::string keys[2];
};

// Many texts with much in common, in different places of their pages. The memory is of zeros, which end the
// texts.
std::vector<Text> RandomTexts(std::minstd_rand& random, std::string_view alphabet,
                              std::vector<char>& memory) {
    constexpr std::size_t room = 128;
    std::vector<Text> texts(memory.size() / room);
    std::string text;
    auto const letter = [&] { return alphabet[random() % alphabet.size()]; };
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if (random() % 4 == 0 || text.size() >= room / 2 - 1) {
            text.resize(random() % 40);
            std::generate(text.begin(), text.end(), letter);
        }
        text.replace(random() % (text.size() + 1), random() % 2, 1, letter());
        texts[i].text = &memory[i * room + random() % (room / 2)];
        text.copy(texts[i].text, text.size());
        texts[i].keys[0] = Key(text.c_str(), false);
        texts[i].keys[1] = Key(text.c_str(), true);
    }
    return texts;
}

TEST(CompareIS, TenMillionTriplesAreInOrder) {
    std::minstd_rand random(12);
    std::string_view const alphabets[] = {"01", "0129 ", "0019aAbB_.", "aA0\xc3\xa4\x84\xff\xe4\xb8"};
    for (int pool = 0; pool < 20; ++pool) {
        std::vector<char> memory(4096 * 129);
        std::vector<Text> const texts = RandomTexts(random, alphabets[pool % 4], memory);
        for (int i = 0; i < (TOV_SANITIZED ? 50'000 : 500'000); ++i) {
            // Neighbours differ in few places.
            auto const at = random();
            Text const& a = texts[at % texts.size()];
            Text const& b = texts[(at + 1 + random() % 3) % texts.size()];
            Text const& c = texts[(i % 2 == 0 ? at + 4 : random()) % texts.size()];
            for (bool const noCase : {false, true}) {
                auto* const compare = noCase ? TovCompareNoCaseIS : TovCompareIS;
                int const ab = Sign(compare(a.text, b.text));
                int const bc = Sign(compare(b.text, c.text));
                bool const turns = Sign(compare(b.text, a.text)) == -ab;
                // a <= b <= c gives a <= c, and a < c where one of the steps is a real one.
                bool const leads = ab > 0 || bc > 0 || Sign(compare(a.text, c.text)) == std::min(ab, bc);
                bool const asDefined =
                    (pool % 4 == 3 && noCase) || ab == Sign(a.keys[noCase].compare(b.keys[noCase]));
                ASSERT_TRUE(turns && leads && asDefined) << a.text << '\n' << b.text << '\n' << c.text;
            }
        }
    }
}

TEST(CompareIS, NothingIsReadBehindThePageThatATextEndsIn) {
    constexpr std::size_t page = 4096;
    void* const pages = ::mmap(nullptr, 2 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(pages, MAP_FAILED);
    char* const end = static_cast<char*>(pages) + page;
    ASSERT_EQ(::mprotect(end, page, PROT_NONE), 0);
    std::string const text(40, 'a');
    for (std::size_t length = 0; length <= text.size(); ++length) {
        char* const last = end - length - 1;
        text.copy(last, length);
        for (auto* const compare : {TovCompareIS, TovCompareNoCaseIS})
            EXPECT_EQ(Order(compare, static_cast<char const*>(last), text.c_str()),
                      length < text.size() ? -1 : 0);
    }
    ::munmap(pages, 2 * page);
}

TEST(CompareIS, CasesFoldInAllScripts) {
    char32_t const pairs[][2] = {
        // clang-format off
        {'A', 'a'}, {'Z', 'z'}, {'@', '@'}, {'[', '['}, {0xD7, 0xD7}, {0x3A3, 0x3C3}, {0x3C2, 0x3C3},
        {0x1E9E, 0xDF}, {0x100, 0x101}, {0x101, 0x101}, {0x10427, 0x1044F}, {0x10FFFF, 0x10FFFF},
        // clang-format on
    };
    for (auto const& [capital, small] : pairs)
        EXPECT_EQ(FoldCase(capital), small) << std::hex << static_cast<unsigned>(capital);
    if (std::setlocale(LC_CTYPE, "C.UTF-8") == nullptr) GTEST_SKIP() << "no locale C.UTF-8";
    for (char32_t c = 0; c <= 0x10FFFF; ++c) {
        char32_t const folded = FoldCase(c);
        EXPECT_EQ(FoldCase(folded), folded) << std::hex << static_cast<unsigned>(c);
        // The system's tables may be of a later version, in which more letters have a partner.
        if (c == 0x130 || folded == c) continue;
        auto const small = static_cast<char32_t>(std::towlower(static_cast<std::wint_t>(c)));
        EXPECT_EQ(FoldCase(small), folded) << std::hex << static_cast<unsigned>(c);
    }
    std::setlocale(LC_CTYPE, "C");
}

TEST(Compare, IntegersAtTheEndsOfTheirRangeDoNotOverflow) {
    using Limits = std::numeric_limits<int>;
    int const ordered[] = {Limits::min(), Limits::min() + 1, -1, 0, 1, Limits::max()};
    for (int const& a : ordered) {
        for (int const& b : ordered)
            EXPECT_EQ(Sign(TovCompare(a, b)), (&a > &b) - (&a < &b)) << a << ' ' << b;
    }
}

TEST(Compare, DoublesWithinTheToleranceAreEqualAndMissingOnesLast) {
    using Limits = std::numeric_limits<double>;
    constexpr double e = 2.220446049250313e-16, huge = Limits::max();
    constexpr double infinity = Limits::infinity(), nan = Limits::quiet_NaN();
    std::tuple<double, double, int> const rows[] = {
        // clang-format off
        {1.0, 2.0, -1},  {1.0, 1.0 + 2 * e, 0},  // 2e < e * (1 + 2e) + e, by a hair
        {0.0, e, 0},     {1.0, 1.0 + 3 * e, -1}, {1e300, 1e300 * (1 + e), 0}, {1e300, 1e300 * (1 + 4 * e), -1},
        {0.0, e * (1 + e), -1},  // the bound is exactly this difference, and it is strict
        {-e / 2, e / 2, -1},     // likewise, since the bound rounds to e
        {-e / 4, e / 4, 0},      {0.0, -0.0, 0},
        {-huge, huge, -1},       // the difference is infinite
        {huge, infinity, -1},    {-infinity, -huge, -1}, {-infinity, infinity, -1}, {infinity, infinity, 0},
        {infinity, nan, -1},     {-infinity, nan, -1},   {nan, -nan, 0},
        // clang-format on
    };
    auto const compare = [](double a, double b) { return TovCompare(a, b); };
    for (auto const& [a, b, sign] : rows)
        EXPECT_EQ(Order(compare, a, b), sign) << a << ' ' << b;
}

}  // namespace
}  // namespace tov
