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

CString Trimmed(CString text) {
    TovTrimTrailingZeros(text);
    return text;
}

TEST(Text, ZerosAreTrimmedDownToTheFirstDecimal) {
    char const* const rows[][2] = {
        // clang-format off
        {"1.500", "1.5"}, {"1.000", "1.0"}, {"1.050", "1.05"}, {"1.", "1."}, {"100", "100"}, {"", ""},
        {".", "."}, {".00", ".0"}, {"10,500", "10,500"}, {"0.00a0", "0.00a"},
        // clang-format on
    };
    for (auto const& [text, trimmed] : rows)
        EXPECT_EQ(Trimmed(text), trimmed) << text;
}

TEST(Text, NumbersForDisplay) {
    struct {
        double value;
        char const* text;
    } const rows[] = {
        // clang-format off
        {0.0, "0"}, {-0.0, "-0"}, {1.0, "1.0"}, {-1.5, "-1.5"}, {123456.789, "123456.789"}, {0.1, "0.1"},
        {0.0123456789, "0.0123457"}, {0.999999999, "1.0"}, {-0.00012, "-0.00012"},
        {1e-11, "1e-11"}, {1.1e-11, "0.000000000011"}, {9999999999999.0, "9999999999999.0"}, {1e13, "1e+13"},
        {1e20, "1e+20"},  // no zero of the exponent is trimmed
        {std::numeric_limits<double>::infinity(), "inf"}, {std::nan(""), "nan"},
        // clang-format on
    };
    for (auto const& row : rows)
        EXPECT_EQ(TovAdvancedFormatDouble(row.value), row.text) << row.value;
}

TEST(Text, NumbersFollowTheDecimalPointOfTheLocale) {
    if (std::setlocale(LC_NUMERIC, "de_DE.UTF-8") == nullptr) GTEST_SKIP() << "no locale de_DE.UTF-8";
    EXPECT_EQ(TovAdvancedFormatDouble(1.5), "1,5");
    EXPECT_EQ(Trimmed("1,500"), "1,5");
    EXPECT_EQ(Trimmed("1.500"), "1.500");
    std::setlocale(LC_NUMERIC, "C");
}

TEST(Text, WordsForTruthValues) {
    char const* const rows[][2] = {{"", ""}, {"是(Y)", "否"}, {"真", "假"}, {"开", "关闭"}, {"", ""}};
    for (int i = 0; i < 5; ++i) {
        auto const type = static_cast<eTovBooleanType>(i);
        EXPECT_STREQ(TovBooleanAsString(-7, type), rows[i][0]) << i;
        EXPECT_STREQ(TovBooleanAsString(0, type), rows[i][1]) << i;
    }
}

TEST(Text, TheNextNameOfARow) {
    struct {
        char const* text;
        int maxLength;
        CString next;
    } const rows[] = {
        // clang-format off
        {"Report", 0, "Report (2)"},       {"Report (2)", 0, "Report (3)"}, {"Report   (9)", 0, "Report (10)"},
        {"Report (007)", 0, "Report (8)"}, {"字 (2)", 0, "字 (3)"},         {"", 0, ""},     {nullptr, 0, ""},
        {"Report (2147483646)", 0, "Report (2147483647)"},    {"Report (2147483647)", 0, ""},
        {"Report (2147483648)", 0, "Report (2147483648) (2)"},
        // What only looks like a number of the row.
        {"x (0)", 0, "x (0) (2)"}, {"x (-1)", 0, "x (-1) (2)"}, {"x (+1)", 0, "x (+1) (2)"},
        {"x ()", 0, "x () (2)"},   {"x(2)", 0, "x(2) (2)"},     {" (2)", 0, " (2) (2)"},   {")", 0, ") (2)"},
        {"(2)", 0, "(2) (2)"},     {"x (2) ", 0, "x (2)  (2)"}, {"x (3) (2a)", 0, "x (3) (2a) (2)"},
        // One character less than the limit, and the name gives way.
        {"Report", 11, "Report (2)"}, {"Report", 10, "Repor (2)"}, {"Report (9)", 10, "Repo (10)"},
        {"测量报告", 8, "测量报 (2)"}, {"Report", 5, " (2)"},       {"Report", -1, " (2)"},
        // clang-format on
    };
    for (auto const& row : rows)
        EXPECT_EQ(TovIncrementString(row.text, row.maxLength), row.next) << (row.text ? row.text : "null");
    EXPECT_EQ(TovIncrementString(CString(300, 'a').c_str(), 0), CString(255, 'a').append(" (2)"));
}

TEST(Text, QuotedTokensAndPiecesBetweenSeparators) {
    struct {
        char const* text;
        char const* separators;  // none for tokens in quotes
        Pieces pieces;
    } const rows[] = {
        // clang-format off
        {R"("a" b "c d""e")", nullptr, {"a", "c d", "e"}}, {R"("" "")", nullptr, {}}, {R"("a" "b)", nullptr, {"a"}},
        {"ab", nullptr, {}},         {nullptr, nullptr, {}},         {"abc", "", {"abc"}},
        {"a,,b", ",", {"a", "", "b"}}, {"a,", ",", {"a"}},           {",", ",", {""}}, {",a", ",", {"", "a"}},
        {"a;b,c", ",;", {"a", "b", "c"}}, {"", ",", {}},             {nullptr, ",", {}},
        {"a、b，c", "，、", {"a", "b", "c"}}, {"、", "，", {"、"}},  // they share their first bytes
        // clang-format on
    };
    for (auto const& row : rows) {
        Pieces pieces = {"of an earlier call"};
        if (row.separators == nullptr)
            TovExtractTokens(row.text, pieces);
        else
            EXPECT_EQ(TovExtractSubstrings(row.text, row.separators, pieces), row.pieces.size());
        EXPECT_EQ(pieces, row.pieces) << (row.text ? row.text : "null");
    }
    Pieces pieces;
    EXPECT_EQ(TovExtractSubstrings("abc", nullptr, pieces), 1u);
}

TEST(Text, ThePiecesJoinedAreTheText) {
    std::minstd_rand random(12);
    for (int round = 0; round < 20000; ++round) {
        CString text, joined;
        for (auto n = random() % 12; n > 0; --n)
            text += "ab,;"[random() % 4];
        Pieces pieces;
        TovExtractSubstrings(text.c_str(), ",;", pieces);
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
