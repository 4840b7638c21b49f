// The faults that the library reports while tests run. A test that provokes one takes it with TakeFaults; one
// that is left over fails its test.
#pragma once

#include <tov310/window.h>

#include <gtest/gtest.h>

#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace tov::test {

struct Faults {
    std::mutex guard;
    std::vector<std::string> texts;

    static Faults& Instance() {
        static Faults faults;
        return faults;
    }

    static void Note(char const* text) {
        std::scoped_lock const lock(Instance().guard);
        Instance().texts.emplace_back(text);
    }
};

inline std::vector<std::string> TakeFaults() {
    std::scoped_lock const lock(Faults::Instance().guard);
    return std::exchange(Faults::Instance().texts, {});
}

class FaultListener : public testing::EmptyTestEventListener {
    void OnTestStart(testing::TestInfo const&) override { TovSetFaultHandler(Faults::Note); }
    void OnTestEnd(testing::TestInfo const&) override {
        for (std::string const& text : TakeFaults())
            ADD_FAILURE() << "unexpected fault: " << text;
    }
};

}  // namespace tov::test
