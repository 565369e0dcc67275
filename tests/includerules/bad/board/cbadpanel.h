// A board class reaching into the services: the include rules refuse it.
#pragma once

#include "seam/common.h"
#include "services/market/csimmarket.h"
