// Finding a place by what a person types.
#pragma once

#include "places.h"

#include <string_view>
#include <vector>

namespace survey {

struct Found {
    Place const* place = nullptr;  // null when no place, or more than one, is meant

    // Without a place: those that may be meant, the likeliest first. They are `exact` when each of them fits
    // the name, and only resemble it otherwise.
    std::vector<Place const*> others;
    bool exact = false;
};

// Whole name, last part of the name ("Berlin"), or a beginning of either that no other place shares, in this
// order; letters in any case, and "_" is a blank.
Found FindPlace(std::vector<Place> const& places, std::string_view name);

}  // namespace survey
