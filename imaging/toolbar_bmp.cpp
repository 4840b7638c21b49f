#include <tov310/toolbar_bmp.h>
#include <tov310/window.h>

#include "imaging/picture_resource.h"
#include "imaging/toolbar_resource.h"

#include <algorithm>
#include <string>
#include <utility>

namespace tov {
namespace {

bool FindToolbar(HINSTANCE module, unsigned int id, ToolbarResource& toolbar) {
    std::string const name = "toolbars/" + std::to_string(id) + ".json";
    std::string_view const json =
        TovFindResource(module != nullptr ? module : TovGetResourceHandle(), name.c_str());
    if (json.data() == nullptr) return false;
    std::string fault;
    if (ParseToolbar(json, toolbar, &fault)) return true;
    TovReportFault((name + ": " + fault).c_str());
    return false;
}

}  // namespace

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
