#pragma once

// The grid unit: the grid, its columns, data links, order, selection, totals and settings.
// Each concern has a header of its own behind this one.

#include "QDBColumns.h"
#include "QDBGrid.h"
#include "QDBGridSettings.h"
#include "QDBGridTypes.h"
#include "QDBGridsOrderRegistry.h"
#include "QDBGridsOrderText.h"
