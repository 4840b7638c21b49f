#include <tov310/menu_popup.h>

#include "frame/menu_tools.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace tov {
namespace {

constexpr char sliderToken[] = "%SLIDER";
constexpr unsigned mostSlides = 256;

// The colour moved by so many quarters towards black, a dark one towards white.
unsigned long Apart(unsigned long color, unsigned quarters) {
    auto const part = [color](int shift) { return static_cast<unsigned>(color >> shift & 0xFF); };
    unsigned const brightness = (part(0) * 299 + part(8) * 587 + part(16) * 114) / 1000;
    unsigned const target = brightness >= 128 ? 0 : 255;
    unsigned long apart = 0;
    for (int const shift : {0, 8, 16})
        apart |= static_cast<unsigned long>((part(shift) * (4 - quarters) + target * quarters) / 4) << shift;
    return apart;
}

struct MenuPlace {
    CMenu* menu = nullptr;
    unsigned position = 0;
};

// The first entry, in the order of the screen, that the question is true for.
template <typename Question>
MenuPlace FindEntry(CMenu& menu, Question const& question) {
    for (unsigned i = 0; i < menu.GetMenuItemCount(); ++i) {
        if (question(menu, i)) return {&menu, i};
        CMenu* const popup = menu.GetSubMenu(i);
        if (popup == nullptr) continue;
        if (MenuPlace const found = FindEntry(*popup, question); found.menu != nullptr) return found;
    }
    return {};
}

}  // namespace

// The menu of the slides, or a copy of it.
class CTovMenuSlider::Popup final : public CMenu {
 public:
    explicit Popup(std::shared_ptr<CTovMenuSlider*> slider) : m_slider(std::move(slider)) {}
    ~Popup() override {
        if (*m_slider != nullptr && (*m_slider)->m_popup == this) (*m_slider)->m_popup = nullptr;
    }

    void MeasureItem(MEASUREITEMSTRUCT* item) override {
        if (*m_slider != nullptr) (*m_slider)->MeasureItem(item);
    }
    void DrawItem(DRAWITEMSTRUCT* item) override {
        if (*m_slider != nullptr) (*m_slider)->DrawItem(item);
    }
    std::unique_ptr<CMenu> MakeForCopies() const override { return std::make_unique<Popup>(m_slider); }

 private:
    std::shared_ptr<CTovMenuSlider*> m_slider;
};

CTovMenuSlider::CTovMenuSlider() : m_self(std::make_shared<CTovMenuSlider*>(this)) {}

CTovMenuSlider::~CTovMenuSlider() {
    *m_self = nullptr;
}

void CTovMenuSlider::SetCountSlides(unsigned count) {
    m_count = std::min(count, mostSlides);
}

int CTovMenuSlider::InsertIntoMenu(CMenu& menu, char const* text) {
    if (text == nullptr || *text == '\0' || m_popup != nullptr) return 0;
    MenuPlace const token = FindEntry(
        menu, [](CMenu const& in, unsigned position) { return MenuTextIs(in, position, sliderToken); });
    if (token.menu == nullptr) return 0;

    m_colorBackground = m_colorMenu;
    m_colorSelection = Apart(m_colorMenu, 1);
    m_colorFrame = Apart(m_colorMenu, 2);

    auto popup = std::make_unique<Popup>(m_self);
    for (unsigned i = 0; i < m_count; ++i) {
        popup->AppendMenu(MF_OWNERDRAW, FirstCommand + i);
        popup->SetMenuItemData(i, i, MF_BYPOSITION);
    }
    m_popup = popup.get();
    unsigned const id = token.menu->GetMenuItemID(token.position);
    m_tokenId = id != tovNoMenuItem ? id : 0;
    // Of a popup the higher bits count its entries.
    constexpr unsigned stateOfPopup = MF_GRAYED | MF_DISABLED | MF_CHECKED;
    bool const isPopup = token.menu->GetSubMenu(token.position) != nullptr;
    m_tokenState = token.menu->GetMenuState(token.position, MF_BYPOSITION) &
                   (isPopup ? stateOfPopup : stateOfPopup | MF_RADIOCHECK);
    m_tokenData = token.menu->GetMenuItemData(token.position, MF_BYPOSITION);
    return token.menu->ModifyMenu(token.position, MF_BYPOSITION | MF_POPUP, std::move(popup), text);
}

int CTovMenuSlider::InsertIntoMenu(CMenu& menu, HINSTANCE module, unsigned textId) {
    CString text;
    TovLoadResourceString(module, textId, text);
    return InsertIntoMenu(menu, text.c_str());
}

int CTovMenuSlider::RemoveFromMenu(CMenu& menu) const {
    if (m_popup == nullptr) return 0;
    MenuPlace const slides =
        FindEntry(menu, [this](CMenu& in, unsigned position) { return in.GetSubMenu(position) == m_popup; });
    if (slides.menu == nullptr) return 0;
    slides.menu->ModifyMenu(slides.position, MF_BYPOSITION | MF_STRING | m_tokenState, m_tokenId,
                            sliderToken);
    return slides.menu->SetMenuItemData(slides.position, m_tokenData, MF_BYPOSITION);
}

void CTovMenuSlider::MeasureItem(MEASUREITEMSTRUCT* item) {
    if (item == nullptr) return;
    item->itemWidth = static_cast<unsigned>(std::max(m_itemSize.cx, 0));
    item->itemHeight = static_cast<unsigned>(std::max(m_itemSize.cy, 0));
}

void CTovMenuSlider::DrawItem(DRAWITEMSTRUCT* item) {
    if (item != nullptr) DrawItem(item->hDC, static_cast<unsigned>(item->itemData), item->rcItem);
}

void CTovMenuSlider::DrawItem(CDC* dc, unsigned index, CRect const& rect) {
    ITovMenuPort* const port = TovGetMenuPort();
    if (port == nullptr || dc == nullptr || rect.Width() <= 0 || rect.Height() <= 0) return;
    bool const selected = index == m_selected;
    bool const filled = selected && m_style == eStyleSelectionFill;
    port->FillRect(dc, rect, filled ? m_colorSelection : m_colorBackground);
    if (!selected) return;
    port->FillRect(dc, {rect.left, rect.top, rect.right, rect.top + 1}, m_colorFrame);
    port->FillRect(dc, {rect.left, rect.bottom - 1, rect.right, rect.bottom}, m_colorFrame);
    port->FillRect(dc, {rect.left, rect.top, rect.left + 1, rect.bottom}, m_colorFrame);
    port->FillRect(dc, {rect.right - 1, rect.top, rect.right, rect.bottom}, m_colorFrame);
}

}  // namespace tov
