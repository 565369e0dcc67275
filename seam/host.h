// What a panel is to its host: the dockable base chain, the event channel and
// its codes, the tick flags and the trader types.
#pragma once

#include "seam/tradingenums.h"
#include "seam/uievents.h"
#include "toolkit/ceventdeliverer.h"
#include "toolkit/cuiresourcechangehandler.h"
#include "toolkit/itradedockablewidget.h"
