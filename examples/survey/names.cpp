#include "names.h"

#include "text.h"

#include <algorithm>
#include <numeric>
#include <string>
#include <utility>

namespace survey {
namespace {

std::string_view LastPart(std::string_view name) {
    return name.substr(name.rfind('/') + 1);
}

// The least number of letters that are put in, left out or changed to make one text the other (V.
// Levenshtein, Soviet Physics Doklady 10 (1966) 707-710).
std::size_t EditDistance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < b.size(); ++j) {
            std::size_t const changed = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({changed, diagonal + 1, row[j] + 1});
        }
    }
    return row.back();
}

template <class Fits>
std::vector<Place const*> PlacesThat(std::vector<Place> const& places, Fits fits) {
    std::vector<Place const*> matches;
    for (Place const& place : places) {
        if (fits(Folded(place.name))) matches.push_back(&place);
    }
    return matches;
}

// Places whose names hold the text or are only a few slips of the finger away from it.
std::vector<Place const*> Resembling(std::vector<Place> const& places, std::string_view wanted) {
    std::vector<std::pair<std::size_t, Place const*>> ranked;
    std::size_t const most = std::max<std::size_t>(1, wanted.size() / 3);
    for (Place const& place : places) {
        std::string const name = Folded(place.name);
        bool const holds = wanted.size() > 1 && name.find(wanted) != name.npos;
        std::size_t const slips =
            holds ? 0 : std::min(EditDistance(wanted, name), EditDistance(wanted, LastPart(name)));
        if (slips <= most) ranked.emplace_back(slips, &place);
    }
    std::ranges::stable_sort(ranked, {}, [](auto const& entry) { return entry.first; });
    std::vector<Place const*> matches;
    for (auto const& entry : ranked)
        matches.push_back(entry.second);
    return matches;
}

}  // namespace

Found FindPlace(std::vector<Place> const& places, std::string_view name) {
    std::string const wanted = Folded(name);
    if (wanted.empty()) return {};
    auto isName = [&](std::string_view candidate) { return candidate == wanted; };
    auto isLastPart = [&](std::string_view candidate) { return LastPart(candidate) == wanted; };
    auto begins = [&](std::string_view candidate) {
        return candidate.starts_with(wanted) || LastPart(candidate).starts_with(wanted);
    };
    std::vector<Place const*> matches = PlacesThat(places, isName);
    if (matches.empty()) matches = PlacesThat(places, isLastPart);
    if (matches.empty()) matches = PlacesThat(places, begins);
    if (matches.empty()) return {nullptr, Resembling(places, wanted), false};
    if (matches.size() > 1) return {nullptr, std::move(matches), true};
    return {matches.front(), {}, true};
}

}  // namespace survey
