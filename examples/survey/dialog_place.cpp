#include "dialog_place.h"

#include "window_ids.h"

#include <tov310/qt_values.h>

namespace survey {
namespace {

enum PlaceControl { kNameEdit = 1001, kLatitudeEdit, kLongitudeEdit, kHeightEdit, kHeightUnit, kCommentEdit };

constexpr unsigned mostNameChars = 80;

}  // namespace

tov::CTovInputControl::eState NameEdit::InternalValidate(char const* text, tov::CString* message) {
    eState const state = CTovEditString::InternalValidate(text, message);
    if (state != eStateValid || !PlaceNamed(m_places, text, m_edited)) return state;
    if (message != nullptr) *message = Words(textNameTaken).toStdString();
    return eStateInvalid;
}

PlaceDialog::PlaceDialog(std::vector<Place> const& places, std::optional<std::size_t> edited, QWidget* parent)
    : CTovDialogCV(tov::TovGetResourceHandle(), dialogPlace, parent),
      m_isNew(!edited),
      m_place(edited ? places.at(*edited) : Place()),
      m_name(places, edited) {}

int PlaceDialog::OnInitDialog() {
    CTovDialogCV::OnInitDialog();
    setWindowTitle(Words(m_isNew ? textAddPlace : textEditPlace));
    m_name.SubclassDlgItem(kNameEdit, this);
    m_latitude.SubclassDlgItem(kLatitudeEdit, this);
    m_longitude.SubclassDlgItem(kLongitudeEdit, this);
    m_height.SubclassDlgItem(kHeightEdit, this);
    m_comment.SubclassDlgItem(kCommentEdit, this);

    m_name.SetMaxChars(mostNameChars);
    m_height.UnitAbbreviation(kHeightUnit);
    m_height.SetRange(lowestPlace, highestPlace);
    m_height.SetEmptyAllowed(1);
    m_comment.SetEmptyAllowed(1);
    m_name.SetString(m_place.name);
    m_comment.SetString(m_place.comment);
    if (!m_isNew) {
        m_latitude.SetValue(m_place.latitude.GetDouble());
        m_longitude.SetValue(m_place.longitude.GetDouble());
    }
    if (m_place.height) m_height.SetValue(*m_place.height);
    for (tov::CTovEdit* const edit :
         {static_cast<tov::CTovEdit*>(&m_name), static_cast<tov::CTovEdit*>(&m_latitude),
          static_cast<tov::CTovEdit*>(&m_longitude), static_cast<tov::CTovEdit*>(&m_height),
          static_cast<tov::CTovEdit*>(&m_comment)})
        connect(edit, &tov::CTovEdit::validityChanged, this, [this] { EnableOkButton(); });
    return 1;
}

int PlaceDialog::OnEnableOkButton(int quiet) {
    if (CTovDialogCV::OnEnableOkButton(quiet) == 0) return 0;
    for (tov::CTovInputControl* const control :
         {static_cast<tov::CTovInputControl*>(&m_name), static_cast<tov::CTovInputControl*>(&m_latitude),
          static_cast<tov::CTovInputControl*>(&m_longitude), static_cast<tov::CTovInputControl*>(&m_height),
          static_cast<tov::CTovInputControl*>(&m_comment)}) {
        if (control->Validate(nullptr) != tov::CTovInputControl::eStateValid) return 0;
    }
    return 1;
}

void PlaceDialog::OnOK() {
    m_place.name = m_name.GetStringTrimmed();
    m_place.comment = m_comment.GetStringTrimmed();
    m_place.latitude.SetDouble(m_latitude.GetValue());
    m_place.longitude.SetDouble(m_longitude.GetValue());
    m_place.height.reset();
    if (m_height.IsEmpty() == 0) m_place.height = m_height.GetValue();
    CTovDialogCV::OnOK();
}

}  // namespace survey
