// The document of a window: a table of places, and the units in which all windows show them.
#pragma once

#include "places.h"
#include "settings.h"

#include <tov310/document.h>

#include <optional>
#include <string>
#include <vector>

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

    // Puts a place behind the others, or in the place of the one with that number. Its name must be free.
    void PutPlace(Place place, std::optional<std::size_t> number);

    // Puts places behind the others, or in the place of all.
    void PutPlaces(std::vector<Place> places, bool inPlaceOfAll);

    Settings const& CurrentSettings() const { return m_settings; }

    // Remembers and shows what was chosen.
    void Choose(Choice const& choice);
    std::size_t SkippedLines() const { return m_table.skipped.size(); }

    // How high a place lies, in the unit of distances; empty where nobody knows.
    std::string HeightText(Place const& place) const;

    // How far two places are apart along a great circle, with the unit.
    std::string Distance(Place const& from, Place const& to) const;

 protected:
    tov::CTovCommandTable const* GetCommandTable() const override;

 private:
    void OnAngleUnit(unsigned id);
    void OnUpdateAngleUnit(tov::CCmdUI* state);
    void OnDistanceUnit(unsigned id);
    void OnUpdateDistanceUnit(tov::CCmdUI* state);
    void TellViews(unsigned message) const;

    std::string DistanceText(double metres) const;

    std::string m_file;
    PlaceTable m_table;
    Settings m_settings;
};

}  // namespace survey
