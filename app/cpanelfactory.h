// Makes the desk's panels by their names ("pricet", "pricequote", "ops", "opsp",
// and "pricet_future", the chain board of the commodity options), each with the
// trader type the desk hands it.
#pragma once

#include "seam/tradingenums.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <map>

class QWidget;

namespace TC {
class ITradeDockableWidget;
}

namespace desk {

class CPanelFactory {
public:
    using Maker = std::function<TC::ITradeDockableWidget*(int widgetID, QWidget* parent)>;

    // A factory with every panel this build has.
    static CPanelFactory withBuiltins();

    void add(const QString& name, const QString& title, Maker maker,
             nqservice::EVqTraderType traderType = nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
    bool has(const QString& name) const { return m_makers.count(name) != 0; }
    // Names in the order they were added: the desk's default docking order.
    QStringList names() const { return m_order; }
    QString title(const QString& name) const;
    // The trader type a panel of this name works for; stock options for an unknown name.
    nqservice::EVqTraderType traderType(const QString& name) const;
    // Null for an unknown name.
    TC::ITradeDockableWidget* make(const QString& name, int widgetID, QWidget* parent) const;

private:
    struct Entry {
        QString title;
        Maker maker;
        nqservice::EVqTraderType traderType = nqservice::VQ_TRADER_TYPE_STOCK_OPTION;
    };
    std::map<QString, Entry> m_makers;
    QStringList m_order;
};

}  // namespace desk
