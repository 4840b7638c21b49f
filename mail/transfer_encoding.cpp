#include "mail/transfer_encoding.h"

#include <tov310/base64.h>

#include "util/base64_blocks.h"
#include "util/file_facts.h"
#include "vesk/file_pieces.h"
#include "vesk/memory.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <span>

namespace tov {
namespace {

constexpr std::size_t mostInLine = 998;    // RFC 5321, without the line end
constexpr std::size_t bytesInLine = 57;    // 76 characters
constexpr std::size_t linesInPiece = 512;  // in the cache, with their code
constexpr unsigned long codedLineLength = 76;

unsigned char const* BytesOf(std::string_view text) {
    return reinterpret_cast<unsigned char const*>(text.data());
}

bool IsLineEnd(char c) {
    return c == '\r' || c == '\n';
}

bool EqualsWord(std::string_view text, std::string_view word) {
    return std::ranges::equal(text, word,
                              [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a + 32 : a) == b; });
}

// The bytes of at most one piece in whole lines, but for the last one of a text.
void AppendLines(CString& out, std::string_view bytes) {
    std::size_t const lines = bytes.size() / bytesInLine;
    std::size_t const whole = lines * bytesInLine;
    // Without line ends first, in the cache; what the processor's blocks leave over is short.
    char code[linesInPiece * codedLineLength];
    std::size_t const done = EncodeBase64Blocks(BytesOf(bytes), whole, code);
    EncodedBase64(bytes.substr(done, whole - done)).copy(code + done / 3 * 4, sizeof code);
    std::size_t const begin = out.size();
    out.resize(begin + lines * (codedLineLength + 2));
    char* to = out.data() + begin;
    for (std::size_t i = 0; i < lines; ++i, to += codedLineLength + 2) {
        std::memcpy(to, code + i * codedLineLength, codedLineLength);
        to[codedLineLength] = '\r';
        to[codedLineLength + 1] = '\n';
    }
    if (whole != bytes.size()) out.append(EncodedBase64(bytes.substr(whole))).append("\r\n");
}

// How many bytes at a place are a line end; 0 for none.
std::size_t LineEndAt(std::string_view text, std::size_t i, LineEnds ends) {
    if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') return 2;
    return ends == LineEnds::kAny && IsLineEnd(text[i]) ? 1 : 0;
}

bool MayStandInQuotedPrintable(char c) {
    return c > ' ' && c <= '~' && c != '=';
}

std::size_t CodeLength(std::uint64_t bytes) {
    return static_cast<std::size_t>((bytes / bytesInLine + 1) * (codedLineLength + 2) + 8);
}

enum class FileState { kWhole, kChanged, kUnreadable };

FileState AppendFileState(CString& out, std::string const& path, std::span<char> buffer, bool strict) {
    FilePieces file;
    if (file.Open(path.c_str())) return FileState::kUnreadable;
    if (!MakeRoom(out, CodeLength(file.Size()))) return FileState::kUnreadable;
    std::uint64_t left = file.Size();
    for (bool isLast = false; !isLast;) {
        std::size_t got = 0;
        auto const wanted = static_cast<std::size_t>(std::min<std::uint64_t>(buffer.size(), left));
        if (file.Read(buffer.data(), wanted, got)) return FileState::kUnreadable;
        left -= got;
        // Whole pieces end with their lines, so that each begins a line and its length is a multiple of 4.
        isLast = left == 0 || got < wanted;
        std::string_view const bytes(buffer.data(), got);
        if (isLast && !strict) {
            out += TovEncodeBase64(BytesOf(bytes), bytes.size(), codedLineLength);
        } else {
            AppendLines(out, bytes);
        }
    }
    // Some files of the system have contents without a length.
    std::size_t more = 0;
    if (file.Read(buffer.data(), 1, more)) return FileState::kUnreadable;
    return left == 0 && more == 0 && file.IsAsItWas() ? FileState::kWhole : FileState::kChanged;
}

}  // namespace

bool MakeRoom(CString& text, std::size_t more) noexcept {
    if (text.capacity() - text.size() >= more) return true;
    if (more > text.max_size() - text.size()) return false;
    try {
        CString roomy;
        roomy.reserve(text.size() + more);
        VeskExpectWrites(roomy.data(), roomy.capacity());
        roomy += text;
        text.swap(roomy);
    } catch (std::bad_alloc const&) {
        return false;
    }
    return true;
}

bool IsSevenBitLines(std::string_view text, LineEnds ends) {
    std::size_t begin = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        auto const byte = static_cast<unsigned char>(text[i]);
        if (std::size_t const end = LineEndAt(text, i, ends)) {
            i += end - 1;
            begin = i + 1;
        } else if (byte == 0 || byte > 127 || IsLineEnd(text[i]) || i - begin >= mostInLine) {
            return false;
        }
    }
    return true;
}

TransferEncoding EncodingFor(std::string_view declared, std::string_view text) {
    if (EqualsWord(declared, "base64")) return TransferEncoding::kBase64;
    if (EqualsWord(declared, "quoted-printable") || !IsSevenBitLines(text))
        return TransferEncoding::kQuotedPrintable;
    return TransferEncoding::kAsItStands;
}

void AppendQuotedPrintable(CString& out, std::string_view text, LineEnds ends) {
    constexpr char hex[] = "0123456789ABCDEF";
    constexpr std::size_t mostEncoded = 75;  // and the "=" of a soft line end
    std::size_t column = 0;
    auto const put = [&](std::string_view code) {
        if (column + code.size() > mostEncoded) {
            out += "=\r\n";
            column = 0;
        }
        out += code;
        column += code.size();
    };
    for (std::size_t i = 0; i < text.size(); ++i) {
        char const c = text[i];
        bool const isBeforeEnd = i + 1 == text.size() || IsLineEnd(text[i + 1]);
        if (std::size_t const end = LineEndAt(text, i, ends)) {
            out += "\r\n";
            column = 0;
            i += end - 1;
        } else if (MayStandInQuotedPrintable(c) || ((c == ' ' || c == '\t') && !isBeforeEnd)) {
            put({&c, 1});
        } else {
            auto const byte = static_cast<unsigned char>(c);
            char const code[] = {'=', hex[byte >> 4], hex[byte & 15]};
            put({code, sizeof code});
            if (c == '\n') {  // for whoever looks at the source
                out += "=\r\n";
                column = 0;
            }
        }
    }
    if (column != 0) out += "=\r\n";
}

void AppendEncoded(CString& out, std::string_view text, TransferEncoding encoding) {
    switch (encoding) {
        case TransferEncoding::kQuotedPrintable:
            return AppendQuotedPrintable(out, text);
        case TransferEncoding::kBase64:
            return AppendBase64(out, text);
        case TransferEncoding::kAsItStands:
            out += text;
    }
}

std::size_t EncodedLength(std::string_view text, TransferEncoding encoding) {
    if (encoding == TransferEncoding::kAsItStands) return text.size();
    if (encoding == TransferEncoding::kBase64) return CodeLength(text.size());
    // Soft line ends stand behind every 73rd character at most, and behind line feeds.
    std::size_t encoded = 0, lineFeeds = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (LineEndAt(text, i, LineEnds::kCrLf) != 0) {
            ++i;
            continue;
        }
        bool const isBeforeEnd = i + 1 == text.size() || IsLineEnd(text[i + 1]);
        encoded += !MayStandInQuotedPrintable(text[i]) && (text[i] != ' ' || isBeforeEnd);
        lineFeeds += text[i] == '\n';
    }
    std::size_t const length = text.size() + 2 * encoded;
    return length + (length / 73 + lineFeeds + 2) * 3;
}

CString EncodedBase64(std::string_view bytes) {
    CString code = TovEncodeBase64(BytesOf(bytes), bytes.size(), 0);
    if (bytes.size() % 3 == 0) code.resize(bytes.size() / 3 * 4);  // without the group of the tail
    return code;
}

void AppendBase64(CString& out, std::string_view bytes) {
    for (constexpr std::size_t piece = bytesInLine * linesInPiece; !bytes.empty();) {
        std::string_view const next = bytes.substr(0, piece);
        AppendLines(out, next);
        bytes.remove_prefix(next.size());
    }
}

std::size_t Base64FileLength(char const* path) {
    FilePieces file;
    return file.Open(SystemPath(path).c_str()) ? 0 : CodeLength(file.Size());
}

void AppendBase64File(CString& out, char const* path, bool strict) {
    std::size_t const begin = out.size();
    try {
        constexpr std::size_t pieceSize = bytesInLine * linesInPiece;
        auto const buffer = std::make_unique_for_overwrite<char[]>(pieceSize);
        std::string const systemPath = SystemPath(path);
        constexpr int mostTries = 8;
        for (int i = 0; i < mostTries; ++i) {
            FileState const state = AppendFileState(out, systemPath, {buffer.get(), pieceSize}, strict);
            if (state == FileState::kWhole) return;
            out.resize(begin);
            if (state == FileState::kUnreadable) return;
        }
    } catch (std::bad_alloc const&) {
        out.resize(begin);
    }
}

void AppendWithLineEnds(CString& out, std::string_view text) {
    auto const ends = static_cast<std::size_t>(std::ranges::count_if(text, IsLineEnd));
    MakeRoom(out, text.size() + ends);
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (std::size_t const end = LineEndAt(text, i, LineEnds::kAny)) {
            out += "\r\n";
            i += end - 1;
        } else {
            out += text[i];
        }
    }
}

void DoubleLoneDots(CString& text) {
    auto const isLone = [&](std::size_t i) {
        return (i == 0 || IsLineEnd(text[i - 1])) && (i + 1 == text.size() || IsLineEnd(text[i + 1]));
    };
    std::size_t count = 0;
    for (std::size_t i = text.find('.'); i != text.npos; i = text.find('.', i + 1))
        count += isLone(i);
    if (count == 0) return;
    // From the end on, in the same text: what is read lies in front of what was written.
    std::size_t from = text.size();
    text.resize(from + count);
    for (std::size_t to = text.size(); to != from;) {
        --from;
        bool const isDoubled = text[from] == '.' && (from == 0 || IsLineEnd(text[from - 1])) &&
                               (to == text.size() || IsLineEnd(text[to]));
        text[--to] = text[from];
        if (isDoubled) text[--to] = '.';
    }
}

void StuffStrictly(CString& text, bool isHeader) {
    bool isReady = true;
    std::size_t begin = 0;
    for (std::size_t i = 0; i < text.size() && isReady; ++i) {
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') {
            begin = ++i + 1;
        } else {
            isReady = !IsLineEnd(text[i]) && i - begin < mostInLine && (text[i] != '.' || i != begin);
        }
    }
    if (isReady) return;
    CString stuffed;
    stuffed.reserve(text.size() + text.size() / 16);
    std::size_t column = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char const c = text[i];
        if (IsLineEnd(c)) {
            if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
            stuffed += "\r\n";
            column = 0;
            continue;
        }
        if (column == mostInLine) {
            stuffed += isHeader ? "\r\n " : "\r\n";
            column = isHeader ? 1 : 0;
        }
        if (column == 0 && c == '.') stuffed += '.';
        stuffed += c;
        ++column;
    }
    text = std::move(stuffed);
}

}  // namespace tov
