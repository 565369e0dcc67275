// The BSON of the service records: the legacy MongoDB C++ driver, under the
// name the trading services use for it.
#pragma once

#include <mongo/bson/bson.h>
#include <mongo/db/json.h>

namespace bson = mongo;
