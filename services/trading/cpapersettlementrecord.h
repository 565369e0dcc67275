// One step of the paper broker's close of the day or an expiry, as the trader
// reads it in the accounts dock's "交割" tab: a settlement of an account, a
// combination released by the exchange, an exercise, an assignment, a lapse, a
// delivery of cash or ETF shares. Kept in the ledger like the other tables.
#pragma once

#include "seam/idata.h"
#include "seam/tradingrecords.h"

#include <string>

namespace trading {

// The table number of these records: the broker's own, beside the exchange tables.
constexpr int kPaperSettlementDataType = 9100;

class CPaperSettlementRecord : public nqservice::TData<CPaperSettlementRecord, kPaperSettlementDataType> {
public:
    static constexpr const char* kStructName = "trading::CPaperSettlementRecord";

    boost::shared_ptr<nqservice::CAccountInfo> account;
    std::string recordId;  // grows with every record
    int tradingDay = 0;    // yyyymmdd of the day settled
    std::string kind;      // "结算", "组合自动解除", "行权", "被指派", "到期作废", "现金交割", "证券交割", "现金结算"
    std::string market;
    std::string code;
    std::string name;
    long long volume = 0;  // contracts, or ETF shares for a delivery of shares
    double price = 0.0;    // settlement or strike price of the step
    double amount = 0.0;   // cash to the account (negative: from it)
    int valueDay = 0;      // yyyymmdd the cash or shares arrive; 0 at once
    std::string note;

    std::string getKey() const override { return (account ? account->getKey() : std::string()) + "|" + recordId; }

    template <typename S, typename V>
    static void describe(S& self, V& visit)
    {
        visit("account", "资金账号", self.account);
        visit("recordId", "流水号", self.recordId);
        visit("tradingDay", "交易日", self.tradingDay);
        visit("kind", "类别", self.kind);
        visit("market", "市场", self.market);
        visit("code", "代码", self.code);
        visit("name", "名称", self.name);
        visit("volume", "数量", self.volume);
        visit("price", "价格", self.price);
        visit("amount", "发生金额", self.amount);
        visit("valueDay", "到账日", self.valueDay);
        visit("note", "说明", self.note);
    }
};

}  // namespace trading
