#include <tov310/text.h>

#include <tov310/resources.h>

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>
#include <random>

namespace tov {
namespace {

using Pieces = std::vector<CString>;

// A locale with a decimal comma for the length of a test, where the system has one.
class DecimalComma {
 public:
    DecimalComma() {
        for (char const* const name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8", "de_DE"}) {
            if (std::setlocale(LC_NUMERIC, name) != nullptr) {
                m_set = true;
                break;
            }
        }
    }
    ~DecimalComma() { std::setlocale(LC_NUMERIC, "C"); }
    bool IsSet() const { return m_set; }

 private:
    bool m_set = false;
};

CString Trimmed(CString text) {
    TovTrimTrailingZeros(text);
    return text;
}

TEST(Text, ZerosAreTrimmedDownToTheFirstDecimal) {
    struct {
        char const* text;
        char const* trimmed;
    } const rows[] = {
        {"1.500", "1.5"},     {"1.000", "1.0"},    {"1.0", "1.0"},
        {"1.", "1."},         {"100", "100"},      {"", ""},
        {".", "."},           {".00", ".0"},       {"1.050", "1.05"},
        {"10,500", "10,500"}, {"0.00a0", "0.00a"},
    };
    for (auto const& row : rows)
        EXPECT_EQ(Trimmed(row.text), row.trimmed) << row.text;
}

TEST(Text, NumbersForDisplay) {
    struct {
        double value;
        char const* text;
    } const rows[] = {
        {0.0, "0"},
        {-0.0, "-0"},
        {1.0, "1.0"},
        {-1.5, "-1.5"},
        {123456.789, "123456.789"},
        {0.1, "0.1"},
        {0.0123456789, "0.0123457"},
        {0.999999999, "1.0"},
        {-0.00012, "-0.00012"},
        {1e-11, "1e-11"},
        {1.5e-20, "1.5e-20"},
        {1.1e-11, "0.000000000011"},
        {9999999999999.0, "9999999999999.0"},
        {1e13, "1e+13"},
        {1e100, "1e+100"},
        {1e20, "1e+20"},  // no zero of the exponent is trimmed
        {std::numeric_limits<double>::infinity(), "inf"},
        {std::nan(""), "nan"},
    };
    for (auto const& row : rows)
        EXPECT_EQ(TovAdvancedFormatDouble(row.value), row.text) << row.value;
}

TEST(Text, NumbersFollowTheDecimalPointOfTheLocale) {
    DecimalComma const locale;
    if (!locale.IsSet()) GTEST_SKIP() << "no locale with a decimal comma is installed";
    EXPECT_EQ(TovAdvancedFormatDouble(1.5), "1,5");
    EXPECT_EQ(Trimmed("1,500"), "1,5");
    EXPECT_EQ(Trimmed("1.500"), "1.500");
}

TEST(Text, WordsForTruthValues) {
    struct {
        int type;
        char const* yes;
        char const* no;
    } const rows[] = {{1, "是(Y)", "否"}, {2, "真", "假"}, {3, "开", "关闭"},
                      {0, "", ""},        {4, "", ""},     {-1, "", ""}};
    for (auto const& row : rows) {
        auto const type = static_cast<eTovBooleanType>(row.type);
        EXPECT_STREQ(TovBooleanAsString(1, type), row.yes) << row.type;
        EXPECT_STREQ(TovBooleanAsString(-7, type), row.yes) << row.type;
        EXPECT_STREQ(TovBooleanAsString(0, type), row.no) << row.type;
    }
}

TEST(Text, TheNextNameOfARow) {
    struct {
        char const* text;
        int maxLength;
        CString next;
    } const rows[] = {
        {"Report", 0, "Report (2)"},
        {"Report (2)", 0, "Report (3)"},
        {"Report   (9)", 0, "Report (10)"},
        {"Report (007)", 0, "Report (8)"},
        {"Report (2147483646)", 0, "Report (2147483647)"},
        {"Report (2147483647)", 0, ""},
        {"Report (2147483648)", 0, "Report (2147483648) (2)"},
        {"x (0)", 0, "x (0) (2)"},
        {"x (-1)", 0, "x (-1) (2)"},
        {"x (+1)", 0, "x (+1) (2)"},
        {"x ( 1)", 0, "x ( 1) (2)"},
        {"x ()", 0, "x () (2)"},
        {"x(2)", 0, "x(2) (2)"},
        {" (2)", 0, " (2) (2)"},
        {"(2)", 0, "(2) (2)"},
        {"x (2) ", 0, "x (2)  (2)"},
        {"x (3) (2a)", 0, "x (3) (2a) (2)"},
        {"字 (2)", 0, "字 (3)"},
        {")", 0, ") (2)"},
        {"", 0, ""},
        {nullptr, 0, ""},
        {"Report", 11, "Report (2)"},  // ten characters
        {"Report", 10, "Repor (2)"},
        {"Report (9)", 10, "Repo (10)"},
        {"测量报告", 8, "测量报 (2)"},
        {"Report", 5, " (2)"},
        {"Report", 1, " (2)"},
        {"Report", -1, " (2)"},
    };
    for (auto const& row : rows)
        EXPECT_EQ(TovIncrementString(row.text, row.maxLength), row.next) << (row.text ? row.text : "null");
    EXPECT_EQ(TovIncrementString(CString(300, 'a').c_str(), 0), CString(255, 'a') + " (2)");
}

TEST(Text, QuotedTokens) {
    struct {
        char const* text;
        Pieces tokens;
    } const rows[] = {
        {"\"a\" b \"c d\"", {"a", "c d"}},
        {"\"a\"\"b\"", {"a", "b"}},
        {"\"\" \"\"", {}},
        {"\"a\" \"b", {"a"}},
        {"ab", {}},
        {"", {}},
        {nullptr, {}},
    };
    for (auto const& row : rows) {
        Pieces tokens = {"of an earlier call"};
        TovExtractTokens(row.text, tokens);
        EXPECT_EQ(tokens, row.tokens) << (row.text ? row.text : "null");
    }
}

TEST(Text, PiecesBetweenSeparators) {
    struct {
        char const* text;
        char const* separators;
        Pieces pieces;
    } const rows[] = {
        {"a,,b", ",", {"a", "", "b"}},
        {"a,", ",", {"a"}},
        {",", ",", {""}},
        {",a", ",", {"", "a"}},
        {"a;b,c", ",;", {"a", "b", "c"}},
        {"abc", "", {"abc"}},
        {"abc", nullptr, {"abc"}},
        {"", ",", {}},
        {nullptr, ",", {}},
        {"a、b，c", "，、", {"a", "b", "c"}},
        {"、", "，", {"、"}},  // they share their first bytes
    };
    for (auto const& row : rows) {
        Pieces pieces = {"of an earlier call"};
        EXPECT_EQ(TovExtractSubstrings(row.text, row.separators, pieces), row.pieces.size());
        EXPECT_EQ(pieces, row.pieces) << (row.text ? row.text : "null");
    }
}

TEST(Text, ThePiecesJoinedAreTheText) {
    std::minstd_rand random(12);
    for (int round = 0; round < 20000; ++round) {
        CString text;
        for (auto n = random() % 12; n > 0; --n)
            text += "ab,;"[random() % 4];
        Pieces pieces;
        TovExtractSubstrings(text.c_str(), ",;", pieces);
        CString joined;
        for (CString const& piece : pieces) {
            ASSERT_EQ(piece.find_first_of(",;"), piece.npos);
            joined += piece;
            if (joined.size() < text.size()) joined += text[joined.size()];
        }
        ASSERT_EQ(joined, text);
    }
}

}  // namespace
}  // namespace tov
