// A one-pixel line in a colour key between parts of a panel; horizontal when
// wider than tall. The margins keep the line off the panel's edges.
#pragma once

#include <QWidget>

namespace WG {

class CFrameSplitterLine : public QWidget {
    Q_OBJECT
public:
    CFrameSplitterLine(const QString& colorKey, QWidget* parent, Qt::Orientation orientation = Qt::Horizontal);
    ~CFrameSplitterLine() override;

    void setMargin(int left, int top, int right, int bottom);
    void setColorKey(const QString& key);
    QString colorKey() const { return m_colorKey; }
    Qt::Orientation orientation() const { return m_orientation; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void updateFixedSize();

    QString m_colorKey;
    Qt::Orientation m_orientation;
    QMargins m_margins;
};

}  // namespace WG
