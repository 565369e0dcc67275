// A service drawing a widget: the include rules refuse it.
#include "toolkit/cpushbutton.h"
