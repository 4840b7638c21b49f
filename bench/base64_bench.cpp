// Base64 of 64 MiB against OpenSSL, which writes into a buffer that stands ready. The counter "ratio" tells
// how many times faster the library is.
#include <tov310/base64.h>

#include <benchmark/benchmark.h>

#ifdef TOV_HAVE_OPENSSL
#include <openssl/evp.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "peer.h"

namespace {

constexpr std::size_t size = std::size_t{64} << 20;

std::vector<unsigned char> const& Bytes() {
    static std::vector<unsigned char> const bytes = [] {
        std::mt19937_64 random(1);
        std::vector<unsigned char> made(size);
        for (unsigned char& byte : made)
            byte = static_cast<unsigned char>(random() & 0xFF);
        return made;
    }();
    return bytes;
}

void Encode(benchmark::State& state) {
    std::vector<unsigned char> peer(size / 3 * 4 + 8);
    bench::AgainstPeer(
        state, size,
        [] {
            tov::CString const text = tov::TovEncodeBase64(Bytes().data(), size, 0);
            benchmark::DoNotOptimize(text.data());
        },
        [&peer] {
            EVP_EncodeBlock(peer.data(), Bytes().data(), static_cast<int>(size));
            benchmark::DoNotOptimize(peer.data());
        },
        bench::Want::kFaster);
}
BENCHMARK(Encode)->Iterations(7);

// Decoding in place eats its text, so both get a fresh copy of it.
void DecodeLines(benchmark::State& state, unsigned long lineLength) {
    std::string const text = tov::TovEncodeBase64(Bytes().data(), size - size % 3, lineLength);
    std::string const line = tov::TovEncodeBase64(Bytes().data(), size - size % 3, 0);
    std::vector<unsigned char> copy(text.size() + 1);
    std::vector<unsigned char> peerText(line.size());
    std::vector<unsigned char> peer(size + 8);
    bench::AgainstPeer(
        state, size,
        [&] {
            std::memcpy(copy.data(), text.c_str(), text.size() + 1);
            benchmark::DoNotOptimize(tov::TovDecodeBase64(copy.data()));
        },
        [&] {
            // Without the "A===" at the end, which is not of the ordinary form.
            std::memcpy(peerText.data(), line.data(), line.size());
            benchmark::DoNotOptimize(
                EVP_DecodeBlock(peer.data(), peerText.data(), static_cast<int>(line.size() - 4)));
        },
        bench::Want::kFaster);
}

void Decode(benchmark::State& state) {
    DecodeLines(state, 0);
}
BENCHMARK(Decode)->Iterations(7);

// The peer decodes the text in one line all the same.
void DecodeMail(benchmark::State& state) {
    DecodeLines(state, 76);
}
BENCHMARK(DecodeMail)->Iterations(7);

}  // namespace
#endif

BENCHMARK_MAIN();
