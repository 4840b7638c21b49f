// Sizes of paper, and the part of a sheet that is printed on.
#pragma once

#include <tov310/export.h>
#include <tov310/geometry.h>
#include <tov310/object.h>

#include <cstdint>

namespace tov {

class CDC;

// Which fields of a DEVMODE hold something.
inline constexpr std::uint32_t DM_PAPERSIZE = 0x0002;
inline constexpr std::uint32_t DM_PAPERLENGTH = 0x0004;
inline constexpr std::uint32_t DM_PAPERWIDTH = 0x0008;

// What a printer is set to, as far as paper goes.
struct _devicemodeA {
    std::uint32_t dmFields = 0;      // DM_ bits
    std::int16_t dmPaperSize = 0;    // a common size by its number: 1 letter, 9 A4 ...
    std::int16_t dmPaperLength = 0;  // tenths of a millimetre
    std::int16_t dmPaperWidth = 0;   // tenths of a millimetre
};
using DEVMODE = _devicemodeA;

class TOV_CORE_API CTovCDCHelper : public CObject {
    TOV_DYNAMIC(CTovCDCHelper, CObject)
 public:
    // The size of the sheet in inches. Length and width count before the number of the size. Answers 1; 0
    // where one of them cannot be told, which then is that of A4; both are 0 for null and for a record that
    // tells neither a size by number nor both length and width.
    static int GetPaperSizeInInches(_devicemodeA const* mode, double& width, double& height);

    // The part of the printable area that is within margins, in its dots from its left and top. The sheet is
    // given in inches, the margins in thousandths of an inch or, with metric not 0, in hundredths of a
    // millimetre. The printable area is taken to be in the middle of the sheet; a margin that is narrower
    // than what the device leaves blank anyway costs nothing.
    static CRect CalculatePrintArea(CDC const* dc, double paperWidth, double paperHeight,
                                    CRect const& margins, int metric);
};

}  // namespace tov
