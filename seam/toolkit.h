// The toolkit as the panels see it: resources and themes, layout and small
// widgets, dialogs and messages, tables and delegates, trade controls.
#pragma once

#include "toolkit/cuiresource.h"
#include "toolkit/tables.h"
#include "toolkit/widgets.h"
