// An order class on the seam and the toolkit: allowed.
#pragma once

#include <QString>
#include "seam/common.h"
#include "toolkit/cpushbutton.h"
#include "order/cother.h"
