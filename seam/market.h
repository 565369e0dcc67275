// The market seam: instruments, quotes, subscriptions, trading phases and the clock.
#pragma once

#include "seam/cexchangeclient.h"
#include "seam/cinstrumentdetail.h"
#include "seam/cpricedata.h"
#include "seam/cquoteclient.h"
#include "seam/cquoterequest.h"
#include "seam/ctimeservice.h"
#include "seam/marketenums.h"
