// Sizes of paper, the part of a sheet that is printed on, and small tools for drawing.
#pragma once

#include <tov310/export.h>
#include <tov310/geometry.h>
#include <tov310/object.h>
#include <tov310/types.h>

#include <cstdint>
#include <memory>

namespace tov {

class CDC;
class ITovPrinter;

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

// A print job while it is prepared and runs.
struct CPrintInfo {
    DEVMODE const* m_pDevMode = nullptr;  // what the printer is set to; null while that is not known
    int m_bPreview = 0;                   // 1: it is shown and not printed
    int m_bDirect = 0;                    // 1: without asking the user
    int m_bDocObject = 0;                 // 1: another job that runs has its view print; one call of OnPrint
    int m_bPrintToFile = 0;               // 1: into a file, which the user is asked for unless it is told
    CString m_strOutput;                  // that file
    ITovPrinter* m_pPrinter = nullptr;    // borrowed (printing.h); null while there is none
    int m_bContinuePrinting = 1;          // 0 ends it in front of the present page
    unsigned m_nMinPage = 1;
    unsigned m_nMaxPage = 0xFFFF;  // 0xFFFF: not known
    unsigned m_nFromPage = 1;      // the pages that are printed, and in which order
    unsigned m_nToPage = 0xFFFF;
    unsigned m_nCurPage = 1;
    std::unique_ptr<ITovPrinter>* m_pAsked = nullptr;  // where TovPreparePrinting puts the printer
    CRect m_rectDraw;                                  // the printable area of the page, in its dots
    void* m_lpUserData = nullptr;                      // the host's own
};

class TOV_CORE_API CTovCDCHelper : public CObject {
    TOV_DYNAMIC(CTovCDCHelper, CObject)
 public:
    // The size of the sheet in inches. Length and width count before the number of the size. Answers 1; 0
    // where one of them cannot be told, which then is that of A4; both are 0 for null and for a record that
    // tells neither a size by number nor both length and width.
    static int GetPaperSizeInInches(_devicemodeA const* mode, double& width, double& height);
    static int GetPaperSizeInInches(CPrintInfo const* info, double& width, double& height);

    // The part of the printable area that is within margins, in its dots from its left and top. The sheet is
    // given in inches, the margins in thousandths of an inch or, with metric not 0, in hundredths of a
    // millimetre. The printable area is taken to be in the middle of the sheet; a margin that is narrower
    // than what the device leaves blank anyway costs nothing.
    static CRect CalculatePrintArea(CDC const* dc, double paperWidth, double paperHeight,
                                    CRect const& margins, int metric);

    // Cuts drawing to a rectangle, and answers the rectangle around where it was possible before: empty where
    // that is not known.
    static CRect SelectClipRect(CDC* dc, CRect const& rect);

    // Draws the border of a rectangle, in every other pixel inverted: left and top side in it, right and
    // bottom side next to it. Drawing it again removes it. Nothing for an empty one; the sides may be
    // exchanged. The device must be one that can be read.
    static void DrawRubberBand(CDC* dc, CRect const& rect);

    // Makes what stands in a rectangle look like disabled controls: everything but the colours of buttons'
    // faces and highlights becomes that of shadows, with a highlight one pixel to the right and below, which
    // may lie next to the rectangle. The device must be one that can be read.
    static void MakeDlgDisabled(CDC* dc, CRect const& rect);
};

}  // namespace tov
