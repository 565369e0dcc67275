// One cell of the price quote panel's header strip: a month's caption centred
// over its block of columns, or the fixed cell over the strike column that
// holds the underlying selector.
#pragma once

#include "toolkit/cbasewidget.h"

#include <QString>

namespace TC {

class CPriceQuoteHeaderCell : public WG::CBaseWidget {
    Q_OBJECT
public:
    explicit CPriceQuoteHeaderCell(QWidget* parent);
    ~CPriceQuoteHeaderCell() override;

    void setText(const QString& value);
    QString getText() const { return text; }
    // Takes a child widget (the fixed cell's selector), placed 8 from the left, centred.
    void setChild(QWidget* widget);
    QWidget* getChild() const { return child; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void placeChild();

    QString text;
    QWidget* child = nullptr;
};

}  // namespace TC
