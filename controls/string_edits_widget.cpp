#include <tov310/string_edits.h>

namespace tov {

CString CTovEditString::GetString() {
    CString text = GetRawString();
    TrimString(text, 1);
    return text;
}

int CTovEditString::SetString(CString const& text) {
    Text().SetString(text);
    OnContentChanged();
    return 1;
}

}  // namespace tov
