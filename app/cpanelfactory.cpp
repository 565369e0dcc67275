#include "app/cpanelfactory.h"

#include "toolkit/itradedockablewidget.h"

#include "board/coptionpricetpanel.h"
#include "positions/coptionpricequotepanel.h"
#include "strategy/coptionstrategypanel.h"

namespace desk {

CPanelFactory CPanelFactory::withBuiltins()
{
    CPanelFactory factory;
    const auto board = [](int id, QWidget* parent) { return new TC::COptionPriceTPanel(id, parent); };
    factory.add(QStringLiteral("pricet"), QStringLiteral("T型报价"), board);
    factory.add(QStringLiteral("pricet_future"), QStringLiteral("T型报价(商品期权)"), board,
                nqservice::VQ_TRADER_TYPE_FUTURE_OPTION);
    factory.add(QStringLiteral("pricequote"), QStringLiteral("价格报价"),
                [](int id, QWidget* parent) { return new TC::COptionPriceQuotePanel(id, parent); });
    factory.add(QStringLiteral("ops"), QStringLiteral("策略组合"),
                [](int id, QWidget* parent) { return new TC::COptionStrategyPanel(id, parent); });
    return factory;
}

void CPanelFactory::add(const QString& name, const QString& title, Maker maker, nqservice::EVqTraderType traderType)
{
    if (!has(name)) {
        m_order << name;
    }
    m_makers[name] = Entry{title, std::move(maker), traderType};
}

nqservice::EVqTraderType CPanelFactory::traderType(const QString& name) const
{
    auto it = m_makers.find(name);
    return it == m_makers.end() ? nqservice::VQ_TRADER_TYPE_STOCK_OPTION : it->second.traderType;
}

QString CPanelFactory::title(const QString& name) const
{
    auto it = m_makers.find(name);
    return it == m_makers.end() ? QString() : it->second.title;
}

TC::ITradeDockableWidget* CPanelFactory::make(const QString& name, int widgetID, QWidget* parent) const
{
    auto it = m_makers.find(name);
    return it == m_makers.end() ? nullptr : it->second.maker(widgetID, parent);
}

}  // namespace desk
