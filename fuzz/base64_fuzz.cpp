// Base64 comes in mails and in files that others wrote: any text is decoded without a step outside it, what
// is no digit does not count, and bytes come back through every length of line.
#include "fuzz/expect.h"

#include <tov310/base64.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace {

std::string Decoded(std::string const& text) {
    std::vector<unsigned char> buffer(text.c_str(), text.c_str() + text.size() + 1);
    unsigned long const count = tov::TovDecodeBase64(buffer.data());
    Expect(count <= std::strlen(text.c_str()) / 4 * 3 + 2);
    return {reinterpret_cast<char const*>(buffer.data()), count};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string const bytes(reinterpret_cast<char const*>(data), size);
    constexpr char const* alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string digits = bytes.c_str();
    std::erase_if(digits, [](char c) { return std::strchr(alphabet, c) == nullptr; });
    Expect(Decoded(bytes) == Decoded(digits));
    unsigned long const lineLength = size != 0 ? data[0] : 0;
    Expect(Decoded(tov::TovEncodeBase64(data, size, lineLength)) == bytes);
    return 0;
}
