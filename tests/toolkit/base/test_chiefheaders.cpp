#include "seam/toolkit.h"
#include "seam/host.h"
#include "seam/market.h"
#include "seam/trading.h"
#include "seam/user.h"
#include "seam/calculator.h"

#include <gtest/gtest.h>

// The chief headers stand on their own and together.
TEST(ChiefHeaders, CompileTogether)
{
    EXPECT_EQ(WG::UE_CELL_PRIMARY, 47);
    EXPECT_EQ(static_cast<int>(nqservice::VQ_TRADER_TYPE_STOCK_OPTION) | static_cast<int>(nqservice::VQ_TRADER_TYPE_FUTURE_OPTION), 1056);
}
