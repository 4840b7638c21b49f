#include <tov310/resources.h>
#include <tov310/system_error.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <set>

namespace tov {
namespace {

class SystemError : public testing::Test {
 protected:
    static void Speak(std::string const& folder) {
        TovSetTovResourceHandle(TovLoadResourceModule((TOV_TEST_SOURCE_DIR + folder).c_str()));
    }
    void TearDown() override { TovSetTovResourceHandle(nullptr); }
};

TEST_F(SystemError, EveryOwnCodeHasASentenceOfItsOwnInEveryLanguage) {
    for (char const* language : {"/res/zh_CN", "/res/en"}) {
        Speak(language);
        std::set<CString> sentences = {""};
        for (unsigned long const code :
             {2UL,  3UL,  4UL,   5UL,   6UL,   8UL,   17UL,  18UL,  19UL,  32UL,  50UL,
              80UL, 87UL, 112UL, 126UL, 127UL, 145UL, 183UL, 206UL, 259UL, 1117UL})
            EXPECT_TRUE(sentences.insert(TovSystemErrorText(code)).second) << language << ' ' << code;
    }
    EXPECT_EQ(TovSystemErrorText(145), "The directory still has contents.");
}

TEST_F(SystemError, CodesOfThePlatformAreInItsWordsAndUnknownOnesHaveNone) {
    EXPECT_EQ(TovSystemErrorText(TOV_ERROR_SYSTEM_BASE + ELOOP), "Too many levels of symbolic links");
    for (unsigned long const code :
         {0UL, 1UL, 7UL, 1999UL, 2000UL, 2099UL, 2100UL, 2999UL, 3000UL, 26000UL,
          TOV_ERROR_SYSTEM_BASE + 9999, TOV_ERROR_SYSTEM_BASE + 0x10000 + EPIPE, 0xFFFFFFFFUL, ~0UL}) {
        char buffer[] = "of an earlier call";
        EXPECT_EQ(TovFormatSystemError(code, buffer, sizeof buffer), 0u) << code;
        EXPECT_STREQ(buffer, "") << code;
    }
}

TEST_F(SystemError, TheTextIsCutAtACharacterAndNeverRunsOver) {
    Speak("/tests/frame/odd_translation");
    CString const whole = TovSystemErrorText(3);
    EXPECT_EQ(whole.size(), 258u) << "86 characters of three bytes fit into 260";
    for (unsigned long size = 0; size <= 261; ++size) {
        std::string buffer(262, '#');
        unsigned long const length = TovFormatSystemError(3, buffer.data(), size);
        EXPECT_EQ(length, size == 0 ? 0 : (size - 1) / 3 * 3);
        std::string const end = size == 0 ? "" : std::string(1, '\0');
        EXPECT_EQ(buffer.substr(0, length + end.size()), whole.substr(0, length) + end);
        EXPECT_EQ(buffer.find_first_not_of('#', size), buffer.npos) << size;
    }
    EXPECT_EQ(TovFormatSystemError(3, nullptr, 10), 0u);
    EXPECT_EQ(TovSystemErrorText(2), "first line") << "what follows a line end is cut";
}

}  // namespace
}  // namespace tov
