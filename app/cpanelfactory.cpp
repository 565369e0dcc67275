#include "app/cpanelfactory.h"

#include "toolkit/itradedockablewidget.h"

#include "board/coptionpricetpanel.h"

namespace desk {

CPanelFactory CPanelFactory::withBuiltins()
{
    CPanelFactory factory;
    factory.add(QStringLiteral("pricet"), QStringLiteral("T型报价"),
                [](int id, QWidget* parent) { return new TC::COptionPriceTPanel(id, parent); });
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
