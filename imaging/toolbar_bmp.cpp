#include <tov310/toolbar_bmp.h>

#include "imaging/picture_resource.h"
#include "imaging/toolbar_resource.h"

#include <algorithm>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <utility>

namespace tov {
namespace {

using ToolbarJson = nlohmann::json;

constexpr int largestToolbarImage = 1024;
constexpr std::uint64_t lastToolbarCommand = 0xFFFF;  // commands travel in half a word

bool ReadWhole(ToolbarJson const& number, std::uint64_t least, std::uint64_t most, std::uint64_t& whole) {
    if (!number.is_number_unsigned()) return false;
    whole = number.get<std::uint64_t>();
    return whole >= least && whole <= most;
}

bool ReadSide(ToolbarJson const& toolbar, char const* name, int& side) {
    std::uint64_t whole = 0;
    auto const found = toolbar.find(name);
    if (found == toolbar.end() || !ReadWhole(*found, 1, largestToolbarImage, whole)) return false;
    side = static_cast<int>(whole);
    return true;
}

bool FindToolbar(HINSTANCE module, unsigned int id, ToolbarResource& toolbar) {
    std::string const name = "toolbars/" + std::to_string(id) + ".json";
    std::string_view const json =
        TovFindResource(module != nullptr ? module : TovGetResourceHandle(), name.c_str());
    return json.data() != nullptr && ParseToolbar(json, toolbar);
}

}  // namespace

bool ParseToolbar(std::string_view json, ToolbarResource& toolbar) {
    // One object with numbers and a list of them; no member may stand twice.
    std::set<std::string> names;
    bool refused = false;
    auto const look = [&](int depth, ToolbarJson::parse_event_t event, ToolbarJson& parsed) {
        if (event == ToolbarJson::parse_event_t::key)
            refused = refused || !names.insert(parsed.get<std::string>()).second;
        refused = refused || depth > 2;
        return !refused;
    };
    ToolbarJson const tree = ToolbarJson::parse(json, look, false);
    if (refused || !tree.is_object() || tree.size() != 3) return false;
    auto const items = tree.find("items");
    if (!ReadSide(tree, "width", toolbar.image.cx) || !ReadSide(tree, "height", toolbar.image.cy) ||
        items == tree.end() || !items->is_array())
        return false;
    toolbar.ids.clear();
    for (ToolbarJson const& item : *items) {
        std::uint64_t id = 0;
        if (!ReadWhole(item, 0, lastToolbarCommand, id)) return false;
        toolbar.ids.push_back(static_cast<unsigned int>(id));
    }
    return true;
}

int CTovToolbarBmp::LoadBitmap(HINSTANCE module, unsigned int id) {
    Clean();
    ToolbarResource toolbar;
    if (!FindToolbar(module, id, toolbar)) return 0;
    constexpr int aroundImage = 7;
    m_ids = std::move(toolbar.ids);
    m_buttonCount = IdCount() - static_cast<int>(std::ranges::count(m_ids, 0U));
    m_imageSize = toolbar.image;
    m_buttonSize = {m_imageSize.cx + aroundImage, m_imageSize.cy + aroundImage};
    PictureResource picture = LoadPicture(module, id);
    m_bitmap.Attach(std::move(picture.plain));
    m_fine = std::move(picture.fine);
    m_isLoaded = true;
    return 1;
}

int CTovToolbarBmp::LoadVectorOfIDs(HINSTANCE module, unsigned int id, std::vector<unsigned int>& ids) {
    ToolbarResource toolbar;
    bool const found = FindToolbar(module, id, toolbar);
    ids.clear();
    if (found) ids = std::move(toolbar.ids);
    return found;
}

int CTovToolbarBmp::CreateImageList(unsigned int flags, COLORREF maskColor) {
    if (!m_isLoaded) return 0;
    m_imageList.DeleteImageList();
    m_hasImageList = m_imageList.Create(m_imageSize.cx, m_imageSize.cy, flags, IdCount(), 1) &&
                     m_imageList.AddPictures(m_bitmap, m_fine, nullptr, maskColor) != -1;
    return m_hasImageList;
}

int CTovToolbarBmp::ImageIndex(unsigned int id) const {
    auto const found = std::ranges::find(m_ids, id);
    return found != m_ids.end() ? static_cast<int>(found - m_ids.begin()) : -1;
}

HICON CTovToolbarBmp::ExtractIcon(int index) {
    if (!m_hasImageList) CreateImageList(ILC_COLOR32, CLR_NONE);
    return m_imageList.ExtractIcon(index);
}

HICON CTovToolbarBmp::ExtractIcon(unsigned int id) {
    int const place = id != 0 ? ImageIndex(id) : -1;
    if (place < 0) return nullptr;
    if (!m_hasImageList) CreateImageList(ILC_COLOR32, CLR_NONE);
    if (m_imageList.GetImageCount() >= IdCount()) return m_imageList.ExtractIcon(place);
    return m_imageList.ExtractIcon(place -
                                   static_cast<int>(std::count(m_ids.begin(), m_ids.begin() + place, 0U)));
}

void CTovToolbarBmp::Clean() {
    m_isLoaded = m_hasImageList = false;
    m_ids.clear();
    m_buttonCount = 0;
    m_imageSize = m_buttonSize = {};
    m_bitmap.DeleteObject();
    m_fine = nullptr;
    m_imageList.DeleteImageList();
}

}  // namespace tov
