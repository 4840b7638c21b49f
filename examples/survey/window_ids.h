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
    idImport,
    idFind,
    idCopy = 40010,
    idSelectAll,
    idAdd,
    idEdit,
    idOptions,
    idAngleUnit = 40020,  // and those behind it, in the order of AngleUnits()
    idDistanceUnit = 40030,
    idToolBar = 40040,
    idStatusBar,
    idAbout,
    idRecent = 40100,  // and those behind it

    textColumns = 41000,  // of the table, from left to right
    textHeight = 41005,
    textCount = 41010,
    textSelected,
    textDistance,
    textSkipped,
    textNoPlace,
    textOpenTable,
    textKinds,
    textAbout,
    textRecent,

    // The gallery. Pages have a sentence about them further on; lists of words stand one behind the other.
    textGallery = 42000,
    textOptions,
    textStates,
    textValid,
    textEmpty,
    textWrong,
    textChanged,
    textValue,
    textNoFormat,
    textPassword,
    pageText = 42020,
    pageFilename,
    pageInteger,
    pageFloating,
    pageDistance,
    pageAngle,
    pageLatitude,
    pageLongitude,
    pageSwitched,
    optionReadOnly = 42060,
    optionKeepsFocus,
    optionEmptyAllowed,
    optionSpin,
    optionButton,
    optionTrim,
    optionWrap,
    optionTrimZeros,
    optionSecOnly,
    optionCircle,
    optionSeveral,
    optionNoPath,
    optionNoRemovable,
    optionColors,
    optionConversion,
    optionAllowed,
    optionMinChars,
    optionMaxChars,
    optionStep,
    optionMaximum,
    optionNumberType,
    optionDecimals,
    optionDisplayFormat,
    optionUnit,
    optionSignType,
    optionFileType,
    optionExistence,
    optionKind,
    textColors = 42100,
    textConversions = 42110,
    textAllowed = 42120,
    textSignTypes = 42130,
    textFileTypes = 42140,
    textExistences = 42150,
    textSamples = 42160,
    textSwitched = 42170,

    // Dialogs.
    textAddPlace = 43000,
    textEditPlace,
    textNameTaken,
    textOptionsTitle,
    textImport = 43010,
    textImportKinds,
    textNoLine,
    textColumnTwice,
    textColumnCount,
    textFirstLine,
    textWillBeRead,
    textNothingSkipped,
    textSkippedLine,
    textImported,
    textSeparators = 43020,    // in the order of importSeparators
    textImportFaults = 43030,  // in the order of ImportFault
    textSearching = 43040,
    textFilesFound,
    textSearchAborted,
    textNoPattern,
    textFailure,
    pageDialogs = 43050,
    textDialogsAbout,
    textAPlace,
    textHiddenPage,
    textWizard,
    textProgress = 43060,       // in the order of its styles
    textAngleUnits = 43070,     // in the order of AngleUnits()
    textDistanceUnits = 43080,  // in the order of DistanceUnits()

    menuMain = 100,
    menuPlace = 101,

    dialogPlace = 200,
    dialogAngles = 210,
    dialogDistances,
    dialogLanguage,
    dialogFile = 220,
    dialogColumns,
    dialogPreview,
    dialogFind = 230,
    dialogRoom = 240,  // above the bar of progress, for the styles with room
};

inline constexpr unsigned galleryAbout = 20;  // from the title of a page to what is said about it

// The samples on each page, in the order of their words.
enum SampleState : unsigned {
    sampleNormal,
    sampleReadOnly,
    sampleDisabled,
    sampleEmpty,
    sampleWrong,
    sampleSpin,
    sampleStates,
};

// A text of the program in the user's language.
QString Words(unsigned id);

}  // namespace survey
