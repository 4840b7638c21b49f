// The document of a window: a table of places, and the units in which all windows show them.
#pragma once

#include "places.h"
#include "settings.h"

#include <tov310/document.h>

#include <string>

namespace survey {

using tov::CTovDocument;

class PlacesDocument : public CTovDocument {
    TOV_DYNCREATE(PlacesDocument, CTovDocument)
 public:
    PlacesDocument();

    // Reads a table in the place of the one before, and puts it first in the list of recent ones. Answers why
    // it could not be read, in the user's language; empty when it was.
    std::string Open(std::string const& file);

    std::string const& File() const { return m_file; }
    std::vector<Place> const& Places() const { return m_table.places; }
    std::size_t SkippedLines() const { return m_table.skipped.size(); }

    // How far two places are apart along a great circle, with the unit.
    std::string Distance(Place const& from, Place const& to) const;

 protected:
    tov::CTovCommandTable const* GetCommandTable() const override;

 private:
    void OnAngleUnit(unsigned id);
    void OnUpdateAngleUnit(tov::CCmdUI* state);
    void OnDistanceUnit(unsigned id);
    void OnUpdateDistanceUnit(tov::CCmdUI* state);
    void Choose(Choice const& choice, unsigned message);

    std::string m_file;
    PlaceTable m_table;
    Settings m_settings;
};

}  // namespace survey
