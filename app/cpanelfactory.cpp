#include "app/cpanelfactory.h"

#include "toolkit/itradedockablewidget.h"

#if __has_include("board/coptionpricetpanel.h")
#include "board/coptionpricetpanel.h"
#define OPTDESK_HAS_PRICET 1
#endif
#if __has_include("positions/coptionpricequotepanel.h")
#include "positions/coptionpricequotepanel.h"
#define OPTDESK_HAS_PRICEQUOTE 1
#endif
#if __has_include("strategy/coptionstrategypanel.h")
#include "strategy/coptionstrategypanel.h"
#define OPTDESK_HAS_OPS 1
#endif
#if __has_include("positions/coptionstrategypositionpanel.h")
#include "positions/coptionstrategypositionpanel.h"
#define OPTDESK_HAS_OPSP 1
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
