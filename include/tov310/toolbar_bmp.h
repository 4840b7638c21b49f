// Toolbar resources: the commands of the buttons and their pictures.
#pragma once

#include <tov310/bitmap.h>
#include <tov310/export.h>
#include <tov310/image_list.h>
#include <tov310/object.h>
#include <tov310/resources.h>

#include <vector>

namespace tov {

// A toolbar out of a resource module: toolbars/ID.json tells its buttons, the bitmap ID has their pictures
// side by side.
class TOV_CORE_API CTovToolbarBmp : public CObject {
    TOV_DYNAMIC(CTovToolbarBmp, CObject)
 public:
    CTovToolbarBmp() = default;
    CTovToolbarBmp(HINSTANCE module, unsigned int id) { LoadBitmap(module, id); }
    CTovToolbarBmp(CTovToolbarBmp const&) = delete;
    CTovToolbarBmp& operator=(CTovToolbarBmp const&) = delete;

    // Loads a toolbar in place of the one that is there. 1 where the module (null: the current one) has the
    // toolbar; its bitmap may be missing. 0, and nothing is loaded, where it is missing or faulty.
    int LoadBitmap(HINSTANCE module, unsigned int id);

    // The commands alone, 0 for separators. 0, and none, where the toolbar is missing or faulty.
    static int LoadVectorOfIDs(HINSTANCE module, unsigned int id, std::vector<unsigned int>& ids);

    std::vector<unsigned int> const& IdVector() const { return m_ids; }  // with separators
    int IdCount() const { return static_cast<int>(m_ids.size()); }
    int ButtonCount() const { return m_buttonCount; }  // without separators
    CSize ImageSize() const { return m_imageSize; }    // pixels
    CSize ButtonSize() const { return m_buttonSize; }  // 7 pixels more each way
    CTovBitmap& Bitmap() { return m_bitmap; }
    CTovImageList& ImageList() { return m_imageList; }

    // Makes the image list from the bitmap, in place of one that is there; colours as CImageList takes them.
    // 0 where nothing is loaded, and without a bitmap that has a picture.
    int CreateImageList(unsigned int flags, COLORREF maskColor);

    // The place of a command among all, separators included; -1 where it is not there. 0 asks for the first
    // separator.
    int ImageIndex(unsigned int id) const;

    // A picture by its place in the bitmap; null where there is none. An image list that is not made yet is
    // made, with the bitmap's alpha bytes.
    HICON ExtractIcon(int index);

    // The picture of a button; null for a command without one. A bitmap has pictures for the buttons alone;
    // where it has as many as there are places, those of separators are passed over.
    HICON ExtractIcon(unsigned int id);

 private:
    void Clean();

    bool m_isLoaded = false;
    bool m_hasImageList = false;
    std::vector<unsigned int> m_ids;
    int m_buttonCount = 0;
    CSize m_imageSize;
    CSize m_buttonSize;
    CTovBitmap m_bitmap;
    HBITMAP m_fine;  // the bitmap in twice the size, or null
    CTovImageList m_imageList;
};

}  // namespace tov
