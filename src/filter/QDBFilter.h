#pragma once

// The filter unit: the auto filter's model and the expressions it writes.

#include "QDBColumnFilter.h"
#include "QDBFilterConsts.h"
#include "QDBFilterPeriods.h"
#include "QDBFilterTypes.h"
#include "QDBGridFilter.h"
