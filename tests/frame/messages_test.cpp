#include <tov310/messages.h>
#include <tov310/window.h>

#include <gtest/gtest.h>

#include <set>
#include <thread>

namespace tov {
namespace {

// The numbers are compiled into every host, so the list of names only ever grows at its end. What it was is
// kept as the FNV-1a hash of the names in their order, each with a blank behind it.
TEST(Messages, NamesAndNumbersNeverMove) {
    std::uint64_t hash = 0xcbf29ce484222325;
    unsigned number = 0xC000;
    auto const see = [&](std::string const& name, unsigned declared) {
        EXPECT_EQ(declared, number) << name;
        EXPECT_EQ(TovRegisterMessage(name.c_str()), number++) << name;
        for (char const c : name + " ")
            hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3;
    };
#define TOV_SEE(name) see(#name, name);
    TOV_FOR_EACH_MESSAGE(TOV_SEE)
#undef TOV_SEE
    EXPECT_EQ(number, 0xC000u + 101);
    EXPECT_EQ(TovRegisterMessage(nullptr) + TovRegisterMessage(""), 0u) << "a missing name has no number";
    EXPECT_EQ(hash, 0x7076984e9abc938d) << "a message was renamed or moved";
}

// One test, since the numbers of a process can be used up only once.
TEST(Messages, FurtherNamesGetNumbersFromManyThreadsUntilNoneIsLeft) {
    constexpr unsigned shared = 500;
    auto const enlist = [](unsigned i) {
        return TovRegisterMessage(("HOST_MESSAGE_" + std::to_string(i)).c_str());
    };
    std::vector<std::vector<unsigned>> got(4, std::vector<unsigned>(shared));
    std::vector<std::jthread> threads;
    for (unsigned t = 0; t < got.size(); ++t) {
        threads.emplace_back([&, t] {
            for (unsigned i = t * 125; i < t * 125 + shared; ++i)
                got[t][i % shared] = enlist(i % shared);
        });
    }
    threads.clear();
    for (auto const& numbers : got)
        EXPECT_EQ(numbers, got[0]);

    std::set<unsigned> given(got[0].begin(), got[0].end());
    unsigned next = shared;
    while (unsigned const number = enlist(next++))
        ASSERT_TRUE(given.insert(number).second) << number << " was given twice";
    EXPECT_EQ(*given.begin(), 0xC000u + 101);
    EXPECT_EQ(*given.rbegin(), 0xDFFFu);
    EXPECT_EQ(given.size(), 0x2000u - 101);
    EXPECT_EQ(enlist(7), got[0][7]) << "what has a number keeps it";
}

}  // namespace
}  // namespace tov
