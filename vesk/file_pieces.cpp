#include "vesk/file_pieces.h"

#include "vesk/descriptor.h"
#include "vesk/file.h"

#include <sys/stat.h>

#include <chrono>
#include <thread>

namespace tov {
namespace {

std::int64_t WrittenAt(struct stat const& facts) {
    return std::int64_t{facts.st_mtim.tv_sec} * 1'000'000'000 + facts.st_mtim.tv_nsec;
}

}  // namespace

FilePieces::~FilePieces() {
    FileDescriptor const closed(m_descriptor);
}

std::error_code FilePieces::Open(char const* path) {
    auto file = OpenDescriptor(path, O_RDONLY | O_NONBLOCK | O_NOCTTY);
    struct stat facts {};
    if (!file) return FileError();
    // The clock of the file system ticks slowly: a file that was written within the present tick can be
    // written again without its time telling so. One whose time lies ahead gets an earlier one then.
    constexpr int mostTicks = 20;
    constexpr std::int64_t ticks = 20'000'000;
    for (int i = 0; i < mostTicks; ++i) {
        if (::fstat(file.Get(), &facts) != 0) return FileError();
        if (!S_ISREG(facts.st_mode)) return FileError(S_ISDIR(facts.st_mode) ? EISDIR : EINVAL);
        std::int64_t const age = FileClock() - WrittenAt(facts);
        if (age > 0 || age < -ticks) break;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    m_size = static_cast<std::uint64_t>(facts.st_size);
    m_written = WrittenAt(facts);
    m_descriptor = file.Release();
    return {};
}

std::error_code FilePieces::Read(char* buffer, std::size_t length, std::size_t& got) {
    for (got = 0; got < length;) {
        auto const count = Uninterrupted([&] { return ::read(m_descriptor, buffer + got, length - got); });
        if (count < 0) return FileError();
        if (count == 0) break;
        got += static_cast<std::size_t>(count);
    }
    return {};
}

bool FilePieces::IsAsItWas() const {
    struct stat facts {};
    return ::fstat(m_descriptor, &facts) == 0 && static_cast<std::uint64_t>(facts.st_size) == m_size &&
           WrittenAt(facts) == m_written;
}

}  // namespace tov
