// The making of a dialog's controls, for those who take them away again.
#pragma once

#include <tov310/dialog_builder.h>

#include <QPointer>

#include <vector>

namespace tov {

// What was made in a host, as far as it still is.
using MadeObjects = std::vector<QPointer<QObject>>;

// As TovFillDialog does; adds to `made` what belongs to the host now.
bool FillDialog(QWidget& host, CTovDialogTemplate const& dialog, MadeObjects& made, CString* message);

}  // namespace tov
