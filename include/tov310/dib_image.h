// Software images, bitmaps and icons of the library as the toolkit's, and back.
#pragma once

#include <tov310/bitmap.h>
#include <tov310/dib.h>
#include <tov310/export.h>
#include <tov310/icon.h>

#include <QIcon>
#include <QImage>
#include <QPixmap>

namespace tov {

// A view of pixels: painting on it draws straight into the block, and it shows what is drawn there. It keeps
// the block alive as long as it has the view itself. A copy of a view that is drawn on gets pixels of its
// own; so does the view while it has copies. Format_RGB32 counts alpha bytes for nothing, and painting sets
// them to 255; Format_ARGB32 shows what they say. Null without pixels, and where the rows run bottom-up.
TOV_UI_API QImage TovImageView(HBITMAP const& block, QImage::Format format = QImage::Format_RGB32);

// The picture of an image: a view where its rows run top-down, else a copy. Null without pixels.
TOV_UI_API QImage TovImage(CTovDib const& dib, QImage::Format format = QImage::Format_RGB32);

// A copy in rows that run top-down, with the alpha bytes of the picture. Null for a null image, and where
// memory is refused.
TOV_UI_API HBITMAP TovPixels(QImage const& image);

// The picture of a bitmap; opaque where all alpha bytes are 0. Null without pixels.
TOV_UI_API QPixmap TovPixmap(CBitmap const& bitmap);

// Gives the bitmap a copy of the picture in place of what it has. 0, and it has nothing, for a null pixmap.
TOV_UI_API int TovSetPixmap(CBitmap& bitmap, QPixmap const& pixmap);

// An icon as the library hands it round; null for a null one.
TOV_UI_API HICON TovIcon(QIcon const& icon);
TOV_UI_API QIcon TovQIcon(HICON const& icon);

}  // namespace tov
