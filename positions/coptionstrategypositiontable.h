// The combination table: the combination positions of the requested accounts,
// with a check-box column (one row at a time) for the roles that may release,
// and the Greeks and time value of both legs.
#pragma once

#include "positions/chpfoptionstrategypositionmodel.h"
#include "seam/tradingrecords.h"
#include "toolkit/chpfdatatable.h"

#include <QMap>
#include <QString>
#include <QVector>

#include <boost/shared_ptr.hpp>

#include <memory>
#include <string>

namespace TC {

class COptionStrategyPositionTable : public CHpfDataTable {
    Q_OBJECT
public:
    COptionStrategyPositionTable(int id, QWidget* parent);
    ~COptionStrategyPositionTable() override;

    bool handleEvent(int code, int id, int arg, QString text, void* data) override;

    // A record of the subscription, on any thread.
    void onPositionDetail(const boost::shared_ptr<nqservice::IData>& data);
    // Reloads one account's combinations on the model's worker.
    void requestAccount(const std::string& key);
    void setSearchText(const QString& text);
    // The ticked rows in display order.
    void checkedRows(QVector<boost::shared_ptr<nqservice::CStkOptCombPositionDetail>>& out);
    void checkAll();
    void invertChecks();
    // Formats the computed columns afresh and repaints.
    void refreshExtraColumns();

    CHpfOptionStrategyPositionModel* getModel() const { return model.get(); }
    const QMap<std::string, bool>& getRequestedKeys() const { return requestedKeys; }
    // The detail of a model row, null when the row is none.
    boost::shared_ptr<nqservice::CStkOptCombPositionDetail> detailOfRow(int row) const;

private:
    void buildExtraColumns();

    boost::shared_ptr<CHpfOptionStrategyPositionModel> model;
    QMap<std::string, bool> requestedKeys;
};

}  // namespace TC
