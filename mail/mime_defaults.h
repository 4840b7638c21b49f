// What new parts and containers take over.
#pragma once

#include <tov310/types.h>

#include "vesk/immortal.h"

namespace tov {

struct MimeDefaults {
    CString textCharset = "iso-8859-1";
    CString textType = "text/plain";
    CString textEncoding = "quoted-printable";
    CString binaryType = "application/octet-stream";
    CString binaryDisposition = "attachment";
    CString binaryEncoding = "Base64";
    CString boundary = "_NextPart_CTovMail_1dE8e48F60beBCECoestrsf";

    static MimeDefaults& Instance() {
        static Immortal<MimeDefaults> defaults;
        return *defaults;
    }
};

}  // namespace tov
