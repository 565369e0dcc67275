// Draws one line of text (a table cell, a button's label), elided on the right
// as QFontMetrics::elidedText elides, at the place QPainter::drawText puts it,
// with the same pixels. Shaping is most of what drawing such short texts costs:
// a text made only of digits and the signs that format numbers is laid out from
// per-font tables of glyphs, advances and pair kerning, measured once through
// Qt's own shaping. For any other one-line text the elided form is kept per
// font and room, and a left-aligned line's layout with it (names and labels
// repeat from paint to paint). Texts of several lines or control characters go
// straight to QPainter::drawText.
// GUI thread only: the tables are shared by every widget of the process.
#pragma once

#include <QString>

class QFont;
class QPainter;
class QRect;

namespace WG {

class CTextLinePainter {
public:
    // Draws text inside rect with the painter's pen; alignment is Qt's.
    static void draw(QPainter* painter, const QRect& rect, int alignment, const QString& text, const QFont& font);
    // Whether draw() lays this text out without shaping in this font.
    static bool laysOutDirectly(const QString& text, const QFont& font);
    // The text draw() shows in width pixels: text, or its elided form.
    static QString shownText(const QString& text, const QFont& font, int width);
};

}  // namespace WG
