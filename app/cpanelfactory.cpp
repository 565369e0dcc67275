#include "app/cpanelfactory.h"

#include "toolkit/itradedockablewidget.h"

#ifdef OPTDESK_HAS_PRICET
#include "board/coptionpricetpanel.h"
#endif
#ifdef OPTDESK_HAS_PRICEQUOTE
#include "positions/coptionpricequotepanel.h"
#endif
#ifdef OPTDESK_HAS_OPS
#include "strategy/coptionstrategypanel.h"
#endif
#ifdef OPTDESK_HAS_OPSP
#include "positions/coptionstrategypositionpanel.h"
#endif

namespace desk {

CPanelFactory CPanelFactory::withBuiltins()
{
    CPanelFactory factory;
#ifdef OPTDESK_HAS_PRICET
    factory.add(QStringLiteral("pricet"), QStringLiteral("T型报价"),
                [](int id, QWidget* parent) { return new TC::COptionPriceTPanel(id, parent); });
#endif
#ifdef OPTDESK_HAS_PRICEQUOTE
    factory.add(QStringLiteral("pricequote"), QStringLiteral("期权报价"),
                [](int id, QWidget* parent) { return new TC::COptionPriceQuotePanel(id, parent); });
#endif
#ifdef OPTDESK_HAS_OPS
    factory.add(QStringLiteral("ops"), QStringLiteral("期权策略"),
                [](int id, QWidget* parent) { return new TC::COptionStrategyPanel(id, parent); });
#endif
#ifdef OPTDESK_HAS_OPSP
    factory.add(QStringLiteral("opsp"), QStringLiteral("组合持仓"),
                [](int id, QWidget* parent) { return new TC::COptionStrategyPositionPanel(id, parent); });
#endif
    return factory;
}

void CPanelFactory::add(const QString& name, const QString& title, Maker maker)
{
    if (!has(name)) {
        m_order << name;
    }
    m_makers[name] = Entry{title, std::move(maker)};
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
