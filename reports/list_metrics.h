#pragma once

#include <tov310/list_metrics.h>

namespace tov {

// Of a list control in the font of the application.
CTovListCtrlMetrics::Heights MeasureListCtrl();

}  // namespace tov
