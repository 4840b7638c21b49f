#include <tov310/resources.h>
#include <tov310/system_error.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <set>
#include <string>

namespace tov {
namespace {

constexpr unsigned long ownCodes[] = {2,  3,  4,   5,   6,   8,   17,  18,  19,  32,  50,
                                      80, 87, 112, 126, 127, 145, 183, 206, 259, 1117};

// How many leading bytes of a text fit without cutting a character.
std::size_t WholeCharacters(std::string const& text, std::size_t limit) {
    std::size_t fits = 0;
    for (std::size_t i = 1; i <= text.size() && i <= limit; ++i) {
        if (i == text.size() || (static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) fits = i;
    }
    return fits;
}

TEST(SystemError, EveryOwnCodeHasASentenceOfItsOwnInEveryLanguage) {
    for (char const* language : {"zh_CN", "en"}) {
        TovSetTovResourceHandle(
            TovLoadResourceModule((std::string(TOV_TEST_SOURCE_DIR "/res/") + language).c_str()));
        std::set<CString> sentences;
        for (unsigned long const code : ownCodes) {
            CString const text = TovSystemErrorText(code);
            EXPECT_FALSE(text.empty()) << language << ' ' << code;
            EXPECT_EQ(text.find_first_of("\r\n"), text.npos);
            EXPECT_TRUE(sentences.insert(text).second) << language << ' ' << code << ' ' << text;
        }
    }
    EXPECT_EQ(TovSystemErrorText(145), "The directory still has contents.");
    TovSetTovResourceHandle(nullptr);
}

TEST(SystemError, CodesOfThePlatformAreInItsWords) {
    EXPECT_EQ(TovSystemErrorText(TOV_ERROR_SYSTEM_BASE + EPIPE), "Broken pipe");
    EXPECT_EQ(TovSystemErrorText(TOV_ERROR_SYSTEM_BASE + ELOOP), "Too many levels of symbolic links");
}

TEST(SystemError, AnUnknownCodeHasNoText) {
    for (unsigned long const code :
         {0UL, 1UL, 7UL, 1999UL, 2000UL, 2099UL, 2100UL, 2999UL, 3000UL, 26000UL,
          TOV_ERROR_SYSTEM_BASE + 9999, TOV_ERROR_SYSTEM_BASE + 0x10000, 0xFFFFFFFFUL, ~0UL}) {
        char buffer[] = "of an earlier call";
        EXPECT_EQ(TovFormatSystemError(code, buffer, sizeof buffer), 0u) << code;
        EXPECT_STREQ(buffer, "") << code;
        EXPECT_EQ(TovSystemErrorText(code), "") << code;
    }
}

TEST(SystemError, TheTextIsCutAtACharacterAndNeverRunsOver) {
    CString const whole = TovSystemErrorText(2);
    ASSERT_GT(whole.size(), 6u);
    ASSERT_GE(static_cast<unsigned char>(whole[0]), 0x80) << "three bytes a character";
    for (unsigned long size = 0; size <= whole.size() + 2; ++size) {
        std::string buffer(whole.size() + 8, '#');
        unsigned long const length = TovFormatSystemError(2, buffer.data(), size);
        if (size == 0) {
            EXPECT_EQ(length, 0u);
            EXPECT_EQ(buffer[0], '#');
            continue;
        }
        EXPECT_EQ(length, WholeCharacters(whole, size - 1)) << size;
        EXPECT_EQ(buffer.substr(0, length), whole.substr(0, length));
        EXPECT_EQ(buffer[length], '\0');
        EXPECT_EQ(buffer.substr(size), std::string(buffer.size() - size, '#')) << size;
    }
    EXPECT_EQ(TovFormatSystemError(2, nullptr, 10), 0u);
}

TEST(SystemError, LineEndsAndOverlongTextsOfATranslationAreCut) {
    TovSetTovResourceHandle(TovLoadResourceModule(TOV_TEST_SOURCE_DIR "/tests/frame/odd_translation"));
    EXPECT_EQ(TovSystemErrorText(2), "first line");
    CString const text = TovSystemErrorText(3);
    EXPECT_EQ(text.size(), 258u) << "86 whole characters of three bytes";
    TovSetTovResourceHandle(nullptr);
}

}  // namespace
}  // namespace tov
