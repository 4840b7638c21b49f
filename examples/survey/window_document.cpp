#include "window_document.h"

#include "files.h"
#include "recent.h"
#include "sphere.h"
#include "units.h"
#include "window_ids.h"

#include <tov310/cmd_ui.h>
#include <tov310/distance.h>
#include <tov310/messages.h>
#include <tov310/wait_cursor.h>

#include <filesystem>
#include <iterator>
#include <utility>

namespace survey {

PlacesDocument::PlacesDocument() : m_settings(ApplySettings({})) {}

std::string PlacesDocument::Open(std::string const& file) {
    tov::CTovWaitCursor const wait;
    std::string bytes;
    if (std::string reason = ReadFile(file, bytes); !reason.empty()) return reason;
    PlaceTable table = ReadPlaces(bytes);
    if (table.places.empty()) return Words(textNoPlace).toStdString();
    m_table = std::move(table);
    m_file = file;
    SetTitle(std::filesystem::path(file).filename().c_str());
    RememberTable(file);
    OnChangedViewList();
    TellViews(tov::WM_TOV_POST_INITIALUPDATE);
    return "";
}

void PlacesDocument::PutPlace(Place place, std::optional<std::size_t> number) {
    if (number)
        m_table.places.at(*number) = std::move(place);
    else
        m_table.places.push_back(std::move(place));
    TellViews(tov::WM_TOV_POST_INITIALUPDATE);
}

void PlacesDocument::PutPlaces(std::vector<Place> places, bool inPlaceOfAll) {
    std::vector<Place>& all = m_table.places;
    if (inPlaceOfAll) all.clear();
    all.insert(all.end(), std::make_move_iterator(places.begin()), std::make_move_iterator(places.end()));
    TellViews(tov::WM_TOV_POST_INITIALUPDATE);
}

std::string PlacesDocument::DistanceText(double metres) const {
    tov::CTovUnitSettingsDistance settings(m_settings.distanceUnit->id, nullptr);
    settings.Precision(m_settings.distanceDecimals);
    tov::CTovValueDistance distance(&settings);
    distance.SetDouble(metres);
    tov::CString number;
    distance.GetString(number);
    return number;
}

std::string PlacesDocument::HeightText(Place const& place) const {
    return place.height ? DistanceText(*place.height) : "";
}

std::string PlacesDocument::Distance(Place const& from, Place const& to) const {
    return DistanceText(GreatCircleDistance(from.latitude, from.longitude, to.latitude, to.longitude))
        .append(" ")
        .append(m_settings.distanceUnit->name);
}

tov::CTovCommandTable const* PlacesDocument::GetCommandTable() const {
    using Self = PlacesDocument;
    static constexpr tov::CTovCommandHandler handlers[] = {
        tov::TovCommand<Self, &Self::OnAngleUnit, &Self::OnUpdateAngleUnit>(idAngleUnit, idAngleUnit + 7),
        tov::TovCommand<Self, &Self::OnDistanceUnit, &Self::OnUpdateDistanceUnit>(idDistanceUnit,
                                                                                  idDistanceUnit + 2)};
    static tov::CTovCommandTable const table{CTovDocument::GetCommandTable(), handlers};
    return &table;
}

void PlacesDocument::OnAngleUnit(unsigned id) {
    Choice choice;
    choice.unit = &AngleUnits()[id - idAngleUnit];
    Choose(choice);
}

void PlacesDocument::OnUpdateAngleUnit(tov::CCmdUI* state) {
    state->SetRadio(m_settings.unit == &AngleUnits()[state->m_nID - idAngleUnit]);
}

void PlacesDocument::OnDistanceUnit(unsigned id) {
    Choice choice;
    choice.distanceUnit = &DistanceUnits()[id - idDistanceUnit];
    Choose(choice);
}

void PlacesDocument::OnUpdateDistanceUnit(tov::CCmdUI* state) {
    state->SetRadio(m_settings.distanceUnit == &DistanceUnits()[state->m_nID - idDistanceUnit]);
}

// The library's shared units change, and with them every value that is shown anywhere.
void PlacesDocument::Choose(Choice const& choice) {
    m_settings = ApplySettings(choice);
    for (unsigned const message : {tov::WM_TOV_UNIT_CHANGED_ANGLE, tov::WM_TOV_UNIT_CHANGED_DISTANCE})
        for (tov::CView* const view : GetViews()) {
            tov::CFrameWnd const* const frame = view->GetParentFrame();
            if (frame != nullptr) tov::TovSendMessageToDescendants(frame->GetSafeHwnd(), message);
        }
}

void PlacesDocument::TellViews(unsigned message) const {
    for (tov::CView* const view : GetViews())
        tov::TovSendMessage(view->GetSafeHwnd(), message);
}

}  // namespace survey
