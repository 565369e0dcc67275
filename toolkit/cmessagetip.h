// A short note beside a control that goes away by itself: the quiet way to say
// that an input was refused. One tip at a time; a new one replaces the old.
#pragma once

#include "toolkit/toolkitenums.h"

#include <QFlags>
#include <QPointer>
#include <QRect>
#include <QString>

class QWidget;

namespace WG {

// The last tip shown, for tests and for the desk's message log.
struct CMessageTipRecord {
    QString text;
    QPointer<QWidget> anchor;
    int align = 0;
    int seconds = 0;
    int maxWidth = 0;
    QRect geometry;  // global
};

class CMessageTip {
public:
    // align: where the tip sits against the anchor (AL_BOTTOM, 64, below it; AL_TOP, AL_LEFT, AL_RIGHT);
    // seconds: how long it stays; maxWidth: where its text wraps.
    static void showTip(QWidget* anchor, QFlags<EAlign> align, const QString& text, int seconds = 3, int maxWidth = 300);
    // The same with the alignment as a plain number, as callers write it (0x40).
    static void showTip(QWidget* anchor, int align, const QString& text, int seconds = 3, int maxWidth = 300)
    {
        showTip(anchor, QFlags<EAlign>(QFlag(align)), text, seconds, maxWidth);
    }
    static void hideTip();
    static bool isTipVisible();
    static CMessageTipRecord lastTip();
    // Tips shown since the process started (or since resetRecord()).
    static int tipCount();
    static void resetRecord();
};

}  // namespace WG
