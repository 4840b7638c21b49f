// Where the fields of a split angle stand, which has the focus, and the caret in them.
#include <tov310/edit_angle_mask.h>
#include <tov310/messages.h>
#include <tov310/packed_angle.h>
#include <tov310/system.h>
#include <tov310/window.h>

#include "controls/edit_angle_text.h"
#include "frame/resource_module.h"
#include "util/trim.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

namespace tov {
namespace {

constexpr int altKey = 18;

bool IsDown(int key) {
    return TovGetSystem()->IsKeyDown(key) != 0;
}

bool IsTabDown() {
    return IsDown(static_cast<int>(VK_TAB));
}

std::size_t StartOfLastCharacter(std::string_view text) {
    std::size_t start = text.size();
    while (start > 0 && (static_cast<unsigned char>(text[--start]) & 0xC0) == 0x80) {
    }
    return start;
}

}  // namespace

CString CTovEditAngleMask::MaskText() const {
    constexpr unsigned plusMinusMasks[] = {26129, 26130};  // degrees, gon
    constexpr unsigned letterMasks[] = {26131, 26132};
    long const unit = IsSplit() ? m_unit : m_units.Unit();
    auto const& masks = m_eSignType == eSignPlusMinus ? plusMinusMasks : letterMasks;
    return LibraryString(masks[unit == TOV_UNIT_DMS ? 0 : 1]);
}

// The fields are the three runs of digits, and the letter is the last character.
std::vector<CTovEditAngleMask::MaskSpan> CTovEditAngleMask::MaskSpans(CString const& mask) const {
    std::vector<MaskSpan> spans;
    constexpr char const* digits = "-0123456789.";
    for (std::size_t at = 0; spans.size() < 3; at = spans.back().end) {
        std::size_t const begin = std::min(mask.find_first_of(digits, at), mask.size());
        spans.push_back({begin, std::min(mask.find_first_not_of(digits, begin), mask.size())});
    }
    if (m_eSignType != eSignPlusMinus) spans.push_back({StartOfLastCharacter(mask), mask.size()});
    return spans;
}

CString CTovEditAngleMask::FieldSign(eTovAngleField field) const {
    if (field >= eTovFieldSign) return {};
    CString const mask = MaskText();
    std::vector<MaskSpan> const spans = MaskSpans(mask);
    auto const index = static_cast<std::size_t>(field);
    std::size_t const next = index + 1 < spans.size() ? spans[index + 1].begin : mask.size();
    return CString(TrimBlanks(std::string_view(mask).substr(spans[index].end, next - spans[index].end)));
}

// The letters of the hemispheres may be wider than that of the mask.
int CTovEditAngleMask::MaskWidth(std::function<int(CString const&)> const& width) const {
    CString const mask = MaskText();
    if (m_eSignType == eSignPlusMinus) return width(mask);
    CString const before = mask.substr(0, StartOfLastCharacter(mask));
    return std::max({width(mask), width(before + SignLetter(false)), width(before + SignLetter(true))});
}

void CTovEditAngleMask::GetChildRect(CRect const& client, CRect& degrees, CRect& minutes, CRect& seconds,
                                     CRect& sign) {
    CString const mask = MaskText();
    int const indent = client.left + m_host.GetMaskIndent();
    auto const width = [this](CString const& text) { return m_host.GetTextWidth(text); };
    CRect* const rects[] = {&degrees, &minutes, &seconds, &sign};
    sign = CRect();
    std::vector<MaskSpan> const spans = MaskSpans(mask);
    for (std::size_t i = 0; i < spans.size(); ++i) {
        int const left = i == 0 ? client.left + 1 : indent + width(mask.substr(0, spans[i].begin));
        int const right =
            indent + (i == eTovFieldSign ? MaskWidth(width) : width(mask.substr(0, spans[i].end)));
        *rects[i] = {left, client.top + 1, right + 2, client.bottom - 1};
    }
}

void CTovEditAngleMask::OnSize() {
    if (!IsSplit()) return;
    CRect rects[4];
    GetChildRect(m_host.GetMaskRect(), rects[0], rects[1], rects[2], rects[3]);
    for (std::size_t i = 0; i < m_fields.size(); ++i) {
        m_rects[i] = rects[i];
        m_fields[i]->Move(rects[i]);
    }
}

int CTovEditAngleMask::GetMinEditWidth() {
    return MaskWidth([this](CString const& text) { return m_host.GetTextWidth(text); }) +
           m_host.GetCompanionsWidth();
}

int CTovEditAngleMask::GetMinEditWidth(HFONT font) {
    return MaskWidth(
               [font](CString const& text) { return TovGetSystem()->GetTextExtent(font, text.c_str()).cx; }) +
           m_host.GetCompanionsWidth();
}

int CTovEditAngleMask::GetChildEditFocus() const {
    auto const found = std::find_if(m_fields.begin(), m_fields.end(),
                                    [](ITovAngleField* field) { return field->HasFocus(); });
    return found != m_fields.end() ? static_cast<int>(found - m_fields.begin()) : -1;
}

int CTovEditAngleMask::FailingField() const {
    auto const failing = std::find_if(m_fields.begin(), m_fields.end(), [](ITovAngleField* field) {
        return field->InputControl().Validate(nullptr) == CTovInputControl::eStateInvalid;
    });
    return failing != m_fields.end() ? static_cast<int>(failing - m_fields.begin()) : -1;
}

void CTovEditAngleMask::OnSetFocus() {
    if (!IsSplit()) return;
    bool const isTab = IsTabDown() && !IsDown(altKey);
    SetChildEditFocus(!isTab ? eFocusKeep : IsDown(VK_SHIFT) ? eFocusLast : eFocusFirst);
}

// Coming backwards the button is reached first, and passed the next time.
bool CTovEditAngleMask::FocusButtonFirst() {
    m_buttonPassed = m_host.GetEditButtonWidth() > 0 && !m_buttonPassed;
    if (!m_buttonPassed) return false;
    m_active = -1;
    m_host.FocusEditButton();
    return true;
}

void CTovEditAngleMask::SetChildEditFocus(eSetChildEditFocus focus) {
    if (!IsSplit()) return;
    int const last = static_cast<int>(m_fields.size()) - 1;
    bool const isTab = IsTabDown();
    if (focus == eFocusFirst) {
        m_active = 0;
    } else if (focus == eFocusLast || (m_active < 0 && isTab && IsDown(VK_SHIFT))) {
        if (FocusButtonFirst()) return;
        m_active = last;
    } else if (m_active < 0) {
        if (!isTab && m_buttonPassed) {
            m_host.FocusEditButton();
            return;
        }
        m_active = 0;
    }
    int const index = std::min(m_active, last);
    ITovAngleField& field = *m_fields[static_cast<std::size_t>(index)];
    field.InputControl().SetFocusInputControl();
    if (isTab) field.SetSelection(0, -1);
}

void CTovEditAngleMask::StepChildEdit(int step) {
    int const current = GetChildEditFocus();
    int const next = (current >= 0 ? current : m_active) + step;
    if (next >= 0 && next < static_cast<int>(m_fields.size())) {
        m_active = next;
        SetChildEditFocus(eFocusKeep);
    } else {
        m_host.PostNextDlgCtl(step < 0);
        if (GetChildEditFocus() < 0) m_active = -1;
    }
}

int CTovEditAngleMask::FindClosestChildEdit(POINT const& point) const {
    int closest = -1;
    std::uint64_t least = 0;
    for (std::size_t i = 0; i < m_rects.size(); ++i) {
        CRect const& rect = m_rects[i];
        auto const square = [](std::int64_t from, std::int64_t to) {
            auto const distance = static_cast<std::uint64_t>(from < to ? to - from : from - to);
            return distance * distance;
        };
        std::uint64_t const distance = square(point.x, (std::int64_t{rect.left} + rect.right) / 2) +
                                       square(point.y, (std::int64_t{rect.top} + rect.bottom) / 2);
        if (closest >= 0 && distance >= least) continue;
        closest = static_cast<int>(i);
        least = distance;
    }
    return closest;
}

bool CTovEditAngleMask::IsChildEdit(CWnd const* window) const {
    return window != nullptr &&
           std::any_of(m_fields.begin(), m_fields.end(),
                       [window](ITovAngleField* field) { return field->InputControl().GetWnd() == window; });
}

void CTovEditAngleMask::FocusField(int index, int start, int end) {
    m_active = index;
    ITovAngleField& field = *m_fields[static_cast<std::size_t>(index)];
    field.InputControl().SetFocusInputControl();
    field.SetSelection(start, end);
}

int CTovEditAngleMask::MoveCaret(eTovCaretMove move) {
    int const index = GetChildEditFocus();
    if (index < 0) return 0;
    int const last = static_cast<int>(m_fields.size()) - 1;
    auto const lengthOf = [this](int field) {
        return CountCharacters(m_fields[static_cast<std::size_t>(field)]->GetText());
    };
    int start = 0;
    int end = 0;
    m_fields[static_cast<std::size_t>(index)]->GetSelection(start, end);
    bool const isCaret = start == end;
    auto const go = [this](int field, int position) {
        FocusField(field, position, position);
        return 1;
    };
    switch (move) {
        case eTovCaretLeft:
            return isCaret && start == 0 && index > 0 ? go(index - 1, lengthOf(index - 1)) : 0;
        case eTovCaretRight:
            return isCaret && start >= lengthOf(index) && index < last ? go(index + 1, 0) : 0;
        case eTovCaretPrevious:
            return start > 0 || index == 0 ? go(index, 0) : go(index - 1, 0);
        case eTovCaretNext:
            return index < last ? go(index + 1, 0) : go(index, lengthOf(index));
        case eTovCaretHome:
            return go(0, 0);
        case eTovCaretEnd:
            return go(last, lengthOf(last));
    }
    return 0;
}

int CTovEditAngleMask::OnFieldChar(char32_t character) {
    int const index = GetChildEditFocus();
    if (index < 0 || m_units.Host().InputControl().GetReadOnlyMode() != 0) return 0;
    ITovAngleField* const letter = Field(eTovFieldSign);
    if (letter != nullptr) {
        for (bool const negative : {false, true}) {
            if (!IsHemisphereCharacter(m_eSignType, negative, character)) continue;
            letter->TypeText(SignLetter(negative));
            return 1;
        }
    }
    bool const isEmpty = m_fields[static_cast<std::size_t>(index)]->GetText().empty();
    if (isEmpty || index >= static_cast<int>(m_fields.size()) - 1) return 0;
    bool const leadsOn = character == U' ' || character == U':' || PartOfMark(character) == index;
    if (!leadsOn) return 0;
    FocusField(index + 1, 0, -1);
    return 1;
}

bool CTovEditAngleMask::HasRoomFor(char32_t character) {
    int const index = GetChildEditFocus();
    if (index < 0 || index >= eTovFieldSeconds || character < U'0' || character > U'9') return true;
    ITovAngleField& field = *m_fields[static_cast<std::size_t>(index)];
    int start = 0;
    int end = 0;
    field.GetSelection(start, end);
    auto const digits = [](std::string_view text) {
        return std::ranges::count_if(text, [](char c) { return c >= '0' && c <= '9'; });
    };
    CString const mask = MaskText();
    MaskSpan const span = MaskSpans(mask)[static_cast<std::size_t>(index)];
    return start != end ||
           digits(field.GetText()) < digits(std::string_view(mask).substr(span.begin, span.end - span.begin));
}

CString CTovEditAngleMask::GetWholeText() {
    if (!IsSplit() || IsEmpty() != 0) return {};
    CString const mask = MaskText();
    std::vector<MaskSpan> const spans = MaskSpans(mask);
    CString whole;
    std::size_t from = 0;
    for (std::size_t i = 0; i < m_fields.size(); ++i) {
        CString text = m_fields[i]->GetText();
        text.erase(0, text.find_first_not_of(' '));
        if (text.empty() && i != eTovFieldSign) text.assign(1, '0');
        whole.append(mask, from, spans[i].begin - from).append(text);
        from = spans[i].end;
    }
    whole.append(mask, from);
    whole.erase(whole.find_last_not_of(' ') + 1);
    return whole;
}

CString CTovEditAngleMask::GetFutureText() {
    long const unit = m_units.Unit();
    bool const isDms = unit == TOV_UNIT_DMS;
    if (IsSplit() || m_bSecOnly != 0 || (!isDms && unit != TOV_UNIT_GON)) return {};
    double const packed =
        m_units.InShownUnit([&] { return m_units.Host().ConvertStdTo(m_units.GetValue(), 0, 1); });
    int sign = 1;
    int degrees = 0;
    int minutes = 0;
    double seconds = 0;
    int const decimals = std::min(m_displayDecimals, 5);
    (isDms ? VeskSplitPackedDms : VeskSplitPackedGon)(packed, sign, degrees, minutes, seconds, decimals,
                                                      m_bLimitToCircle);
    CString const mask = MaskText();
    std::vector<MaskSpan> const spans = MaskSpans(mask);
    auto const signs = [&](std::size_t i) {
        std::size_t const end = i + 1 < spans.size() ? spans[i + 1].begin : mask.size();
        return mask.substr(spans[i].end, end - spans[i].end);
    };
    bool const hasLetter = m_eSignType != eSignPlusMinus;
    std::array<char, 400> digits{};
    std::snprintf(digits.data(), digits.size(), "%.*f", decimals, seconds);
    CString whole = sign < 0 && !hasLetter ? "-" : "";
    whole.append(std::to_string(degrees)).append(signs(0)).append(std::to_string(minutes)).append(signs(1));
    whole.append(digits.data()).append(signs(2));
    return hasLetter ? whole.append(SignLetter(sign < 0)) : whole;
}

CString CTovEditAngleMask::TextToCopy() {
    int const index = GetChildEditFocus();
    if (index >= 0) {
        int start = 0;
        int end = 0;
        m_fields[static_cast<std::size_t>(index)]->GetSelection(start, end);
        CString const text = m_fields[static_cast<std::size_t>(index)]->GetText();
        std::tie(start, end) = std::pair(std::min(start, end), std::max(start, end));
        if (start != end && (start > 0 || end < CountCharacters(text))) {
            std::size_t const first = OffsetOfCharacter(text, start);
            return text.substr(first, OffsetOfCharacter(text, end) - first);
        }
    }
    return GetWholeText();
}

}  // namespace tov
