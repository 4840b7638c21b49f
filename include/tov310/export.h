// Export marks of the two libraries.
#pragma once

#include <cstddef>  // first of the standard's: Qt's moc stumbles over <concepts> and <compare> without it

#define TOV_EXPORT __attribute__((visibility("default")))

// Everything that libTov310Core offers is marked TOV_CORE_API; the rest of it is hidden.
#define TOV_CORE_API TOV_EXPORT

// What libTov310 offers beyond that.
#define TOV_UI_API TOV_EXPORT
