// The dialog in which a place is added or edited.
#pragma once

#include "places.h"

#include <tov310/string_edits.h>
#include <tov310/tov_dialog.h>
#include <tov310/value_edits.h>

#include <cstddef>
#include <optional>
#include <vector>

namespace survey {

// The name of a place, which no other one may have.
class NameEdit : public tov::CTovEditString {
 public:
    NameEdit(std::vector<Place> const& places, std::optional<std::size_t> edited)
        : m_places(places), m_edited(edited) {}

 protected:
    eState InternalValidate(char const* text, tov::CString* message) override;

 private:
    std::vector<Place> const& m_places;
    std::optional<std::size_t> const m_edited;
};

// OK can be pressed when the name is there and free and both coordinates are right. Angles and the height are
// entered in the units of the table, and what is not touched stays as it is to the last bit.
class PlaceDialog : public tov::CTovDialogCV {
 public:
    // The places must outlive it. Without a number a place is added.
    PlaceDialog(std::vector<Place> const& places, std::optional<std::size_t> edited,
                QWidget* parent = nullptr);

    // Behind OK.
    Place const& Result() const { return m_place; }

    int OnEnableOkButton(int quiet) override;

 protected:
    int OnInitDialog() override;
    void OnOK() override;

 private:
    bool const m_isNew;
    Place m_place;
    NameEdit m_name;
    tov::CTovEditLatitude m_latitude;
    tov::CTovEditLongitude m_longitude;
    tov::CTovEditValueDistance m_height;
    tov::CTovEditString m_comment;
};

}  // namespace survey
