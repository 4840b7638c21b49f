// The numbers of commands and texts, as they stand in data/res.
#pragma once

#include <QString>

namespace survey {

enum Id : unsigned {
    idTitle = 40000,
    idOpen = 40001,
    idReload,
    idClose,
    idQuit,
    idCopy = 40010,
    idSelectAll,
    idAngleUnit = 40020,  // and those behind it, in the order of AngleUnits()
    idDistanceUnit = 40030,
    idToolBar = 40040,
    idStatusBar,
    idAbout,
    idRecent = 40100,  // and those behind it

    textColumns = 41000,  // of the table, from left to right
    textCount = 41010,
    textSelected,
    textDistance,
    textSkipped,
    textNoPlace,
    textOpenTable,
    textKinds,
    textAbout,
    textRecent,

    menuMain = 100,
    menuPlace = 101,
};

// A text of the program in the user's language.
QString Words(unsigned id);

}  // namespace survey
