// The page of the gallery from which dialogs, sheets and wizards are opened, and what they show there.
#pragma once

#include "dialog_progress.h"
#include "places.h"

#include <QString>
#include <QWidget>

#include <vector>

namespace survey {

class GalleryDialogs : public QWidget {
 public:
    explicit GalleryDialogs(QWidget* parent = nullptr);
};

// The places of the table that comes with the program.
std::vector<Place> const& ShippedPlaces();

// A text file of places of another program, in the folder of the program's own files.
QString SampleImport();

// A search that has come half its way.
void ShowSampleProgress(SearchProgress& progress);

}  // namespace survey
