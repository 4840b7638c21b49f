#include <tov310/format.h>
#include <tov310/unit_settings.h>

#include "frame/resource_module.h"
#include "values/number_text.h"
#include "values/stored_unit.h"
#include "vesk/packed_split.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string_view>

namespace tov {
namespace {

constexpr unsigned degreeSignText = 26135;

struct Abbreviation {
    char const* unit;
    char const* small;
};

constexpr Abbreviation AbbreviationOf(long unit) {
    switch (unit) {
        case TOV_UNIT_DEGREES:
            return {"dec", "\""};
        case TOV_UNIT_DMS:
            return {"", "\""};
        case TOV_UNIT_PACKED_DMS:
            return {"deg", "\""};
        case TOV_UNIT_GRADS:
            return {"grad", "mgon"};
        case TOV_UNIT_GON:
            return {"", "mgon"};
        case TOV_UNIT_PACKED_GON:
            return {"gon", "mgon"};
        case TOV_UNIT_REVOLUTIONS:
            return {"rev", "rev"};
        case TOV_UNIT_RADIANS:
            return {"rad", "rad"};
        case TOV_UNIT_METRES:
            return {"m", "m"};
        case TOV_UNIT_US_SURVEY_FEET:
            return {"fts", "fts"};
        case TOV_UNIT_INTERNATIONAL_FEET:
            return {"fti", "fti"};
        default:
            return {"", ""};
    }
}

AngleSystem const& SystemOf(long unit) {
    return unit == TOV_UNIT_GON ? centesimal : sexagesimal;
}

// The signs behind the fields.
struct FieldSigns {
    std::string_view whole;
    std::string_view minutes;
    std::string_view seconds;
};

FieldSigns SignsOf(long unit) {
    if (unit == TOV_UNIT_GON) return {"g", "c", "cc"};
    return {LibraryString(degreeSignText), "'", "\""};
}

constexpr char digitPairs[] =
    "00010203040506070809101112131415161718192021222324252627282930313233343536373839404142434445464748495051"
    "525354"
    "5556575859606162636465666768697071727374757677787980818283848586878889909192939495969798"
    "99";

// Writes a text over what a string holds and cuts the string at the end: a string that is used again, as in
// the rows of a table, has the right length already.
class TextBuilder {
 public:
    explicit TextBuilder(CString& out) : m_out(out), m_at(out.data()) {}
    ~TextBuilder() { Finish(); }
    TextBuilder(TextBuilder const&) = delete;
    TextBuilder& operator=(TextBuilder const&) = delete;

    void Put(char c) {
        Need(1);
        *m_at++ = c;
    }

    void Put(std::string_view text) {
        Need(text.size());
        if (text.size() == 1) {
            *m_at++ = text[0];
        } else if (text.size() == 2) {
            m_at = std::copy_n(text.data(), 2, m_at);
        } else {
            m_at = std::copy(text.begin(), text.end(), m_at);
        }
    }

    // A whole number right-justified in a width.
    void PutInteger(std::uint64_t number, int width, char pad) {
        char digits[20];
        char* first = std::end(digits);
        while (number >= 100) {
            first -= 2;
            std::copy_n(digitPairs + number % 100 * 2, 2, first);
            number /= 100;
        }
        if (number >= 10) {
            first -= 2;
            std::copy_n(digitPairs + number * 2, 2, first);
        } else {
            *--first = static_cast<char>('0' + number);
        }
        auto const length = std::end(digits) - first;
        Need(static_cast<std::size_t>(std::max<std::ptrdiff_t>(length, width)));
        for (auto missing = width - length; missing > 0; --missing)
            *m_at++ = pad;
        m_at = std::copy(first, std::end(digits), m_at);
    }

    // The number count / 10^counted with so many decimals, right-justified in a width.
    void PutDecimal(std::uint64_t count, int counted, int decimals, int width, char pad) {
        std::uint64_t const power = powersOfTen[counted];
        std::uint64_t const whole = count / power;
        std::uint64_t fraction = count - whole * power;
        PutInteger(whole, width - decimals - 1, pad);
        Need(static_cast<std::size_t>(decimals) + 1);
        *m_at++ = '.';
        char* last = m_at + counted;
        for (int left = counted; left >= 2; left -= 2) {
            last -= 2;
            std::copy_n(digitPairs + fraction % 100 * 2, 2, last);
            fraction /= 100;
        }
        if (counted % 2 != 0) *m_at = static_cast<char>('0' + fraction);
        m_at += counted;
        for (int missing = decimals - counted; missing > 0; --missing)
            *m_at++ = '0';
    }

    // Gives the string its length; more may be put after it.
    void Finish() { m_out.resize(static_cast<std::size_t>(m_at - m_out.data())); }

    // Follows a change of the string after Finish.
    void Resume() { m_at = m_out.data() + m_out.size(); }

 private:
    void Need(std::size_t length) {
        if (static_cast<std::size_t>(m_out.data() + m_out.size() - m_at) < length) [[unlikely]] {
            auto const used = m_at - m_out.data();
            m_out.resize(std::max<std::size_t>((m_out.size() + length) * 2, 40));
            m_at = m_out.data() + used;
        }
    }

    CString& m_out;
    char* m_at;
};

// The fields of a packed angle and how the precision of a format prints them.
struct Fields {
    PackedParts parts;
    FieldSigns signs;
    int secondsWidth;
    int secondsDecimals;

    Fields(double packed, long unit, int precision, bool limit)
        : parts(SplitPacked(packed, Decimals(precision), limit, SystemOf(unit))),
          signs(SignsOf(unit)),
          secondsWidth(Decimals(precision) + 3),
          secondsDecimals(Decimals(precision)) {}

    // Six decimals of the packed number are one decimal of the seconds; below that they are always five.
    static int Decimals(int precision) { return precision < 6 ? 5 : std::min(precision - 5, maxNumberWidth); }

    char Sign() const { return parts.negative ? '-' : ' '; }

    void PutSeconds(TextBuilder& out, char pad) const {
        out.PutDecimal(parts.seconds, parts.decimals, secondsDecimals, secondsWidth, pad);
    }
};

void CutTrailingZeros(CString& text) {
    std::size_t const point = text.find('.');
    if (point == CString::npos) return;
    std::size_t end = text.size();
    while (end > point + 2 && text[end - 1] == '0')
        --end;
    text.resize(end);
}

void PutNotFinite(double value, CString& out) {
    out.clear();
    AppendNumber(out, value, {.blank = true});
}

// The tokens of the field units.
enum class FieldToken { kWhole, kMinutes, kSeconds };

struct TokenName {
    std::string_view name;
    FieldToken token;
    bool withSign;
};
constexpr TokenName tokenNames[] = {
    {"%DegOrG", FieldToken::kWhole, false},    {"%degOrG", FieldToken::kWhole, true},
    {"%MinOrC", FieldToken::kMinutes, false},  {"%minOrC", FieldToken::kMinutes, true},
    {"%SecOrCC", FieldToken::kSeconds, false}, {"%secOrCC", FieldToken::kSeconds, true},
};

TokenName const* TokenAt(std::string_view text) {
    for (TokenName const& name : tokenNames) {
        if (text.starts_with(name.name)) return &name;
    }
    return nullptr;
}

void PutToken(TextBuilder& out, TokenName const& name, Fields const& fields, bool trim) {
    PackedParts const& parts = fields.parts;
    bool const wholeGone = trim && parts.whole == 0;
    bool const minutesGone = wholeGone && parts.minutes == 0;
    switch (name.token) {
        case FieldToken::kWhole:
            if (wholeGone) return;
            out.Put(fields.Sign());
            out.PutInteger(static_cast<unsigned>(parts.whole), 3, ' ');
            if (name.withSign) out.Put(fields.signs.whole);
            return;
        case FieldToken::kMinutes:
            if (minutesGone) return;
            if (wholeGone) out.Put(fields.Sign());
            out.PutInteger(static_cast<unsigned>(parts.minutes), 2, ' ');
            if (name.withSign) out.Put(fields.signs.minutes);
            return;
        case FieldToken::kSeconds:
            if (minutesGone) out.Put(fields.Sign());
            fields.PutSeconds(out, ' ');
            if (name.withSign) out.Put(fields.signs.seconds);
            return;
    }
}

// Where the first conversion of a number stands in a text; "%%" does not begin one.
std::optional<std::size_t> FindConversion(std::string_view text, std::size_t& length,
                                          NumberConversion& conversion) {
    for (std::size_t at = text.find('%'); at != text.npos; at = text.find('%', at)) {
        if (text.compare(at, 2, "%%") == 0) {
            at += 2;
            continue;
        }
        length = ReadConversion(text, at, conversion);
        if (length != 0) return at;
        ++at;
    }
    return std::nullopt;
}

// Stretches of a format that can be searched, and what was put in between them.
template <typename Pieces>
class SectionCutter {
 public:
    explicit SectionCutter(Pieces& pieces) : m_pieces(pieces) {}

    // Takes every "%?" out, and where the last stood behind the third character, the first bracketed section
    // and the brackets of the second. Incomplete brackets stay.
    void Cut() {
        std::size_t last = 0;
        bool any = false;
        std::size_t before = 0;  // characters of the pieces in front
        for (auto& piece : m_pieces) {
            if (!piece.inserted) {
                for (std::size_t at = piece.text.find("%?"); at != CString::npos;
                     at = piece.text.find("%?")) {
                    piece.text.erase(at, 2);
                    last = before + Characters(std::string_view(piece.text).substr(0, at));
                    any = true;
                }
            }
            before += Characters(piece.text);
        }
        if (!any || last <= 2) return;
        std::optional<Place> const open = Find("%[", {0, 0});
        std::optional<Place> const close = open ? Find("%]", *open) : std::nullopt;
        if (!close) return;
        Erase(*open, {close->piece, close->at + 2});
        std::optional<Place> const nextOpen = Find("%[", {0, 0});
        std::optional<Place> const nextClose = nextOpen ? Find("%]", *nextOpen) : std::nullopt;
        if (!nextClose) return;
        Erase(*nextClose, {nextClose->piece, nextClose->at + 2});
        Erase(*nextOpen, {nextOpen->piece, nextOpen->at + 2});
    }

 private:
    struct Place {
        std::size_t piece;
        std::size_t at;
    };

    static std::size_t Characters(std::string_view text) {
        return static_cast<std::size_t>(std::count_if(
            text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
    }

    std::optional<Place> Find(char const* what, Place from) const {
        for (std::size_t i = from.piece; i < m_pieces.size(); ++i) {
            if (m_pieces[i].inserted) continue;
            std::size_t const at = m_pieces[i].text.find(what, i == from.piece ? from.at : 0);
            if (at != CString::npos) return Place{i, at};
        }
        return std::nullopt;
    }

    void Erase(Place from, Place to) {
        if (from.piece == to.piece) {
            m_pieces[from.piece].text.erase(from.at, to.at - from.at);
            return;
        }
        m_pieces[from.piece].text.erase(from.at);
        for (std::size_t i = from.piece + 1; i < to.piece; ++i)
            m_pieces[i].text.clear();
        m_pieces[to.piece].text.erase(0, to.at);
    }

    Pieces& m_pieces;
};

}  // namespace

CTovFormat::CTovFormat() = default;

CTovFormat::CTovFormat(long unit, int useSecOnly, int limitToCircle, char const* format)
    : m_bUseSecOnly(useSecOnly), m_bLimitToCircle(limitToCircle) {
    CTovFormat::SetUnitAbbreviation(unit);
    CTovFormat::Format(format);
}

CTovFormat::~CTovFormat() = default;

void CTovFormat::SetUnitAbbreviation(char const* abbreviation) {
    if (abbreviation != nullptr && *abbreviation != '\0') m_strUnitAbbreviation = abbreviation;
}

void CTovFormat::SetUnitAbbreviation(long unit) {
    Abbreviation const abbreviation = AbbreviationOf(unit);
    m_strUnitAbbreviation = m_bUseSecOnly != 0 ? abbreviation.small : abbreviation.unit;
    if (!m_strFormat.empty()) BuildFmtList();
}

void CTovFormat::GetUnitAbbreviation(CString& abbreviation) const {
    abbreviation = m_strUnitAbbreviation;
}

CString CTovFormat::Format() {
    return m_strFormat;
}

void CTovFormat::Format(char const* format) {
    if (format == nullptr || *format == '\0') return;
    m_strFormat = format;
    BuildFmtList();
}

void CTovFormat::CustomFormat(char const* token, char const* text) {
    m_strCustomToken = token != nullptr ? token : "";
    m_strCustomText = text != nullptr ? text : "";
}

void CTovFormat::Precision(int precision) {
    m_nPrecision = precision;
}

int CTovFormat::Precision() {
    return m_nPrecision;
}

int CTovFormat::DecimalsShown() const {
    NumberConversion conversion;
    std::size_t length = 0;
    for (Piece const& piece : m_expandedFormat) {
        if (piece.inserted || !FindConversion(piece.text, length, conversion)) continue;
        bool const fixed = conversion.kind == 'f' || conversion.kind == 'F';
        if (fixed && !conversion.star) return conversion.precision;
        break;
    }
    return ShownPrecision();
}

void CTovFormat::BuildFmtList() {
    m_expandedFormat.clear();
    std::string_view rest = m_strFormat;
    for (std::size_t at = rest.find("%U"); at != rest.npos; at = rest.find("%U")) {
        m_expandedFormat.push_back({CString(rest.substr(0, at)), false});
        m_expandedFormat.push_back({m_strUnitAbbreviation, true});
        rest.remove_prefix(at + 2);
    }
    m_expandedFormat.push_back({CString(rest), false});
    // A format of nothing is none.
    if (std::all_of(m_expandedFormat.begin(), m_expandedFormat.end(),
                    [](Piece const& p) { return p.text.empty(); })) {
        m_expandedFormat.clear();
    }
}

std::vector<CTovFormat::Piece> CTovFormat::WithCustomText() const {
    if (m_strCustomToken.empty()) return m_expandedFormat;
    std::vector<Piece> pieces;
    for (Piece const& piece : m_expandedFormat) {
        std::string_view rest = piece.text;
        for (std::size_t at = rest.find(m_strCustomToken); !piece.inserted && at != rest.npos;
             at = rest.find(m_strCustomToken)) {
            pieces.push_back({CString(rest.substr(0, at)), false});
            pieces.push_back({m_strCustomText, true});
            rest.remove_prefix(at + m_strCustomToken.size());
        }
        pieces.push_back({CString(rest), piece.inserted});
    }
    return pieces;
}

int CTovFormat::ConvertToString(double value, long unit, CString& out) {
    if (!m_expandedFormat.empty()) {
        PrintFormat(value, unit, out);
        return 0;
    }
    if (m_bUseSecOnly != 0) {
        switch (unit) {
            case TOV_UNIT_DEGREES:
                value *= 3600.0;
                break;
            case TOV_UNIT_DMS:
            case TOV_UNIT_PACKED_DMS: {
                if (!std::isfinite(value)) break;
                // Rounded once, to what is printed.
                int const decimals =
                    m_nPrecision >= 1 && m_nPrecision < 6 ? m_nPrecision : Fields::Decimals(m_nPrecision);
                PackedParts const parts = SplitPacked(value, decimals, m_bLimitToCircle != 0, sexagesimal);
                double const seconds =
                    static_cast<double>(parts.seconds) / static_cast<double>(powersOfTen[parts.decimals]);
                value = (parts.whole * 3600.0 + parts.minutes * 60.0 + seconds) * (parts.negative ? -1 : 1);
                break;
            }
            case TOV_UNIT_GRADS:
            case TOV_UNIT_GON:
            case TOV_UNIT_PACKED_GON:
                value *= 1000.0;
                break;
            default:
                m_bUseSecOnly = 0;
                break;
        }
    }
    if (!std::isfinite(value)) {
        PutNotFinite(value, out);
    } else if (HasFields(unit) && m_bUseSecOnly == 0) {
        PrintFields(value, unit, out);
    } else {
        PrintPlain(value, out);
    }
    return 0;
}

void CTovFormat::PrintFields(double value, long unit, CString& out) const {
    Fields const fields(value, unit, m_nPrecision, m_bLimitToCircle != 0);
    bool const trim = m_bTrimLeadingZeros != 0;
    bool const signs = m_bUseDmsSymbols != 0;
    bool const whole = !trim || fields.parts.whole != 0;
    bool const minutes = whole || fields.parts.minutes != 0;
    TextBuilder text(out);
    text.Put(fields.Sign());
    if (whole) {
        text.PutInteger(static_cast<unsigned>(fields.parts.whole), 3, ' ');
        if (signs) text.Put(fields.signs.whole);
        text.Put(' ');
    }
    if (minutes) {
        text.PutInteger(static_cast<unsigned>(fields.parts.minutes), 2, whole ? '0' : ' ');
        if (signs) text.Put(fields.signs.minutes);
        text.Put(' ');
    }
    fields.PutSeconds(text, minutes ? '0' : ' ');
    if (m_bTrimTrailingZeros != 0) {
        text.Finish();
        CutTrailingZeros(out);
        text.Resume();
    }
    if (signs) text.Put(fields.signs.seconds);
}

void CTovFormat::PrintPlain(double value, CString& out) const {
    out.clear();
    AppendNumber(out, value, {.blank = true, .precision = ShownPrecision()});
    if (m_bTrimTrailingZeros != 0) CutTrailingZeros(out);
}

void CTovFormat::PrintFormat(double value, long unit, CString& out) const {
    std::vector<Piece> pieces = WithCustomText();
    SectionCutter(pieces).Cut();
    CString text;
    if (HasFields(unit)) {
        bool anyToken = false;
        std::optional<Fields> fields;
        {
            TextBuilder builder(text);
            for (Piece const& piece : pieces) {
                std::string_view rest = piece.text;
                while (!rest.empty()) {
                    TokenName const* const name =
                        !piece.inserted && rest.front() == '%' ? TokenAt(rest) : nullptr;
                    if (name == nullptr) {
                        builder.Put(rest.front());
                        rest.remove_prefix(1);
                        continue;
                    }
                    anyToken = true;
                    if (!std::isfinite(value)) {
                        builder.Finish();
                        if (name->token == FieldToken::kSeconds) AppendNumber(text, value, {.blank = true});
                        builder.Resume();
                    } else {
                        if (!fields) fields.emplace(value, unit, m_nPrecision, m_bLimitToCircle != 0);
                        PutToken(builder, *name, *fields, m_bTrimLeadingZeros != 0);
                    }
                    rest.remove_prefix(name->name.size());
                }
            }
        }
        if (anyToken) out = std::move(text);
        return;
    }
    bool printed = false;
    for (Piece const& piece : pieces) {
        if (piece.inserted) {
            text += piece.text;
            continue;
        }
        std::string_view rest = piece.text;
        while (!rest.empty()) {
            NumberConversion conversion;
            std::size_t length = 1;
            if (rest.starts_with("%%")) {
                text += '%';
                length = 2;
            } else if (rest.front() == '%' && !printed &&
                       (length = ReadConversion(rest, 0, conversion)) != 0) {
                if (conversion.star) conversion.precision = ShownPrecision();
                AppendNumber(text, value, conversion);
                printed = true;
            } else {
                length = 1;
                text += rest.front();
            }
            rest.remove_prefix(length);
        }
    }
    out = std::move(text);
}

}  // namespace tov
