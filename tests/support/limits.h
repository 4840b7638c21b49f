// Calls under conditions that make them fail: a full volume, missing rights.
#pragma once

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <initializer_list>

namespace tov::test {

// Runs the call while no file may become longer than that, which stands for a full volume.
template <class Call>
void OnFullVolume(Call call, rlim_t longest = 4096) {
    auto* const handler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit old{};
    ::getrlimit(RLIMIT_FSIZE, &old);
    rlimit const limit{longest, old.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    call();
    ::setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, handler);
}

// Runs the call without the rights of an administrator; the folders are given away to who has none.
template <class Call>
void WithoutRights(std::initializer_list<std::filesystem::path> folders, Call call) {
    uid_t const user = ::geteuid();
    uid_t const nobody = user == 0 ? 65534 : user;
    for (auto const& folder : folders) {
        EXPECT_EQ(::lchown(folder.c_str(), nobody, ::getegid()), 0);
        for (auto const& entry : std::filesystem::recursive_directory_iterator(folder))
            EXPECT_EQ(::lchown(entry.path().c_str(), nobody, ::getegid()), 0);
    }
    EXPECT_EQ(::seteuid(nobody), 0);
    call();
    EXPECT_EQ(::seteuid(user), 0);
}

}  // namespace tov::test
