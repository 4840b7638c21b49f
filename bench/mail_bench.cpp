// Composing a mail with a file of 64 MiB against reading the file and encoding it with OpenSSL into a buffer
// that stands ready. The counter "ratio" tells how many times slower the whole mail is, "memory" the largest
// growth of the process against the length of the mail.
#include <tov310/mime.h>

#include <benchmark/benchmark.h>

#ifdef TOV_HAVE_OPENSSL
#include <malloc.h>
#include <openssl/evp.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <new>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "peer.h"

namespace {

constexpr std::size_t size = std::size_t{64} << 20;

struct AttachedFile {
    AttachedFile() {
        std::mt19937_64 random(1);
        std::vector<std::uint64_t> words(size / 8);
        for (std::uint64_t& word : words)
            word = random();
        std::ofstream(path, std::ios::binary).write(reinterpret_cast<char const*>(words.data()), size);
    }
    ~AttachedFile() { std::filesystem::remove(path); }
    std::string const path = (std::filesystem::temp_directory_path() / "tov-mail-bench.bin").string();
};

// Every allocation of the process, the library's included.
std::size_t allocated = 0;
std::size_t peak = 0;

// The largest growth while the mail is written, against its length. More than half as much again is a fault.
void CheckMemory(benchmark::State& state, tov::CTovMailMessage const& mail) {
    std::size_t const before = allocated;
    peak = before;
    std::size_t length = 0;
    {
        tov::CString const header = mail.Header();
        tov::CString const body = mail.Body();
        length = body.size();
    }
    double const memory = static_cast<double>(peak - before) / static_cast<double>(length);
    state.counters["memory"] = memory;
    if (memory > 1.5) state.SkipWithError("the mail takes too much memory");
}

// A long text as the body of a mail, as its only part, or as one of two.
void ComposeText(benchmark::State& state, int strict, int parts) {
    std::string text;
    while (text.size() < size)
        text += "Every point of the traverse = was observed twice, in both faces.\r\n";
    tov::CTovMailMessageMimeContainer mail;
    mail.StrictEncoding(strict);
    if (parts == 0) mail.Body(text.c_str());
    for (int i = 0; i < parts; ++i)
        mail.AddMimePart(new tov::CTovMailMessageMimePartText(i == 0 ? std::move(text) : "short"));
    for (auto _ : state)
        benchmark::DoNotOptimize(mail.Body());
    CheckMemory(state, mail);
}
BENCHMARK_CAPTURE(ComposeText, body, 0, 0)->Iterations(1);
BENCHMARK_CAPTURE(ComposeText, strict_body, 1, 0)->Iterations(1);
BENCHMARK_CAPTURE(ComposeText, strict_part, 1, 1)->Iterations(1);
BENCHMARK_CAPTURE(ComposeText, parts, 0, 2)->Iterations(1);
BENCHMARK_CAPTURE(ComposeText, strict_parts, 1, 2)->Iterations(1);

// A file, with the text in front of it that such a mail has.
void Compose(benchmark::State& state, int strict) {
    static AttachedFile const file;
    constexpr std::size_t textSize = 20'000;
    tov::CTovMailMessageMimeContainer mail;
    mail.StrictEncoding(strict);
    mail.From("Survey <survey@office.example>");
    mail.AddMimePart(new tov::CTovMailMessageMimePartText(std::string(textSize, 'x')));
    mail.AddMimePart(new tov::CTovMailMessageMimePartBinary(file.path));
    std::vector<unsigned char> bytes(size);
    std::vector<unsigned char> code(size / 3 * 4 + 8);
    bench::AgainstPeer(
        state, size,
        [&] {
            tov::CString const header = mail.Header();
            tov::CString const body = mail.Body();
            benchmark::DoNotOptimize(body.data());
            benchmark::DoNotOptimize(header.data());
        },
        [&] {
            std::ifstream in(file.path, std::ios::binary);
            in.rdbuf()->pubsetbuf(nullptr, 0);
            in.read(reinterpret_cast<char*>(bytes.data()), size);
            EVP_EncodeBlock(code.data(), bytes.data(), static_cast<int>(size));
            benchmark::DoNotOptimize(code.data());
        },
        bench::Want::kWithin);
    CheckMemory(state, mail);
}
BENCHMARK_CAPTURE(Compose, usual, 0)->Iterations(9);
BENCHMARK_CAPTURE(Compose, strict, 1)->Iterations(9);

}  // namespace

[[gnu::noinline]] void* operator new(std::size_t bytes) {
    void* const block = std::malloc(bytes);
    if (block == nullptr) throw std::bad_alloc();
    allocated += malloc_usable_size(block);
    peak = std::max(peak, allocated);
    return block;
}
[[gnu::noinline]] void operator delete(void* block) noexcept {
    allocated -= malloc_usable_size(block);
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    operator delete(block);
}
#endif

BENCHMARK_MAIN();
