#include "toolkit/ctextlinepainter.h"

#include <QFont>
#include <QFontMetrics>
#include <QFontMetricsF>
#include <QGlyphRun>
#include <QHash>
#include <QPainter>
#include <QRawFont>
#include <QRect>
#include <QTextLayout>

#include <array>
#include <memory>
#include <vector>

namespace WG {

namespace {

// What formatted numbers are made of: prices, volumes with thousands
// separators, percentages, signed changes, dates and times, codes of digits.
// The ellipsis comes last; eliding appends it.
constexpr char16_t kSymbols[] = u"%()+,-./0123456789:\u2026";
constexpr int kSymbolCount = static_cast<int>(sizeof(kSymbols) / sizeof(kSymbols[0])) - 1;
constexpr int kEllipsis = kSymbolCount - 1;
// A longer text is no number; Qt lays it out.
constexpr int kMaxDirectLength = 40;

int symbolOf(ushort code)
{
    static const std::array<signed char, 128> table = [] {
        std::array<signed char, 128> codes{};
        codes.fill(-1);
        for (int i = 0; i < kEllipsis; ++i) {
            codes[static_cast<std::size_t>(kSymbols[i])] = static_cast<signed char>(i);
        }
        return codes;
    }();
    return code < 128 ? table[code] : -1;
}

// One font's layout of the symbols, as Qt's shaping lays them out: a glyph and
// an advance each, and the correction of every pair (kerning). Measured from
// Qt's layouts of every pair, so that the result is Qt's own; a font whose
// layout of a pair is anything but the two glyphs of its primary face is not
// described.
struct CFontTables {
    QFont font;
    QRawFont raw;
    bool usable = false;
    quint32 glyph[kSymbolCount] = {};
    qreal advance[kSymbolCount] = {};
    qreal pair[kSymbolCount][kSymbolCount] = {};
    qreal ellipsisWidth = 0.0;  // unshaped, as eliding measures it
    qreal ascent = 0.0;
    qreal descent = 0.0;
    // Other texts by room and text: the elided form, which costs a shaping
    // pass to find, and the layout itself, shaped once. Names, codes and
    // labels repeat from paint to paint. drawText places a right or centred
    // line by its advance, not by its natural width: the two differ by a
    // fraction of a pixel in text of several scripts.
    struct Shaped {
        QString shown;
        std::shared_ptr<QTextLayout> layout;
        qreal width = 0.0;
        qreal advance = 0.0;
        qreal height = 0.0;
    };
    QHash<QPair<int, QString>, Shaped> shaped;
};

// Bounds the shaped texts kept per font; past it they are dropped together.
constexpr int kMaxShaped = 2048;
constexpr int kMaxShapedLength = 200;

// The glyphs of a one-line layout of text, and their x positions; false if
// the layout is not plain glyphs of raw.
bool layOut(const QString& text, const QFont& font, const QRawFont& raw, std::vector<quint32>& glyphs,
            std::vector<qreal>& positions)
{
    QTextLayout layout(text, font);
    layout.setCacheEnabled(true);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    layout.endLayout();
    if (!line.isValid()) {
        return false;
    }
    const QList<QGlyphRun> runs = layout.glyphRuns();
    if (runs.size() != 1 || runs.front().rawFont() != raw) {
        return false;
    }
    const QVector<quint32> indexes = runs.front().glyphIndexes();
    const QVector<QPointF> points = runs.front().positions();
    glyphs.assign(indexes.begin(), indexes.end());
    positions.clear();
    for (const QPointF& point : points) {
        positions.push_back(point.x());
    }
    positions.push_back(line.naturalTextWidth());
    return true;
}

void measure(CFontTables& tables)
{
    const QFont& font = tables.font;
    if (font.underline() || font.overline() || font.strikeOut() || font.capitalization() != QFont::MixedCase ||
        font.letterSpacing() != 0.0 || (font.stretch() != 0 && font.stretch() != QFont::Unstretched)) {
        return;  // decorations and spacing that the tables do not carry
    }
    tables.raw = QRawFont::fromFont(font);
    if (!tables.raw.isValid()) {
        return;
    }
    std::vector<quint32> glyphs;
    std::vector<qreal> positions;
    for (int i = 0; i < kSymbolCount; ++i) {
        if (!layOut(QString(QChar(kSymbols[i])), font, tables.raw, glyphs, positions) || glyphs.size() != 1 ||
            glyphs[0] == 0) {
            return;
        }
        tables.glyph[i] = glyphs[0];
        tables.advance[i] = positions[1] - positions[0];
    }
    // Every pair in one layout per symbol: i j0 i j1 ... i, so that both (i, j)
    // and (j, i) sit side by side.
    for (int i = 0; i < kSymbolCount; ++i) {
        QString text;
        for (int j = 0; j < kSymbolCount; ++j) {
            text.append(QChar(kSymbols[i])).append(QChar(kSymbols[j]));
        }
        text.append(QChar(kSymbols[i]));
        if (!layOut(text, font, tables.raw, glyphs, positions) || glyphs.size() != static_cast<std::size_t>(text.size())) {
            return;
        }
        for (int j = 0; j < kSymbolCount; ++j) {
            const std::size_t at = 2 * static_cast<std::size_t>(j);
            if (glyphs[at] != tables.glyph[i] || glyphs[at + 1] != tables.glyph[j]) {
                return;
            }
            tables.pair[i][j] = (positions[at + 1] - positions[at]) - tables.advance[i];
            tables.pair[j][i] = (positions[at + 2] - positions[at + 1]) - tables.advance[j];
        }
    }
    // Eliding measures the ellipsis glyph alone, not shaped.
    QPointF ellipsis;
    const quint32 ellipsisGlyph = tables.glyph[kEllipsis];
    if (!tables.raw.advancesForGlyphIndexes(&ellipsisGlyph, &ellipsis, 1)) {
        return;
    }
    tables.ellipsisWidth = ellipsis.x();
    const QFontMetricsF metrics(font);
    tables.ascent = metrics.ascent();
    tables.descent = metrics.descent();
    tables.usable = true;
}

// The tables of the fonts in use. Tables use two fonts (normal and bold); a
// few more entries cover the rest without growing.
CFontTables* tablesFor(const QFont& font)
{
    static std::array<std::unique_ptr<CFontTables>, 4> cache;
    static std::size_t next = 0;
    for (const auto& entry : cache) {
        if (entry != nullptr && entry->font == font) {
            return entry.get();
        }
    }
    auto tables = std::make_unique<CFontTables>();
    tables->font = font;
    measure(*tables);
    cache[next] = std::move(tables);
    CFontTables* found = cache[next].get();
    next = (next + 1) % cache.size();
    return found;
}

// A text in symbols, laid out: how many of its characters show, whether the
// ellipsis follows them, and the x of each glyph.
struct CLine {
    int symbols[kMaxDirectLength + 1];
    qreal x[kMaxDirectLength + 1];
    quint32 glyphs[kMaxDirectLength + 1];
    int shown = 0;   // glyphs, the ellipsis included
    qreal width = 0.0;
};

bool toSymbols(const QString& text, CLine& line)
{
    const int length = text.size();
    if (length == 0 || length > kMaxDirectLength) {
        return false;
    }
    const QChar* characters = text.constData();
    for (int i = 0; i < length; ++i) {
        const int symbol = symbolOf(characters[i].unicode());
        if (symbol < 0 || symbol == kEllipsis) {
            return false;
        }
        line.symbols[i] = symbol;
    }
    return true;
}

// Lays out length symbols in width, eliding on the right as QFontMetrics::elidedText
// does: a text wider than the room keeps the characters that fit before the
// ellipsis (each measured with the kerning to its neighbour), and a
// one-character text is never elided.
void layOutLine(const CFontTables& tables, int length, int width, CLine& line)
{
    qreal full = 0.0;
    for (int i = 0; i < length; ++i) {
        full += tables.advance[line.symbols[i]];
        if (i + 1 < length) {
            full += tables.pair[line.symbols[i]][line.symbols[i + 1]];
        }
    }
    int kept = length;
    if (full > width && length > 1) {
        const qreal available = width - tables.ellipsisWidth;
        if (available < 0) {
            line.shown = 0;
            line.width = 0.0;
            return;
        }
        qreal current = 0.0;
        int position = 0;
        int nextBreak = 0;
        do {
            position = nextBreak;
            ++nextBreak;
            current += tables.advance[line.symbols[position]];
            if (position + 1 < length) {
                current += tables.pair[line.symbols[position]][line.symbols[position + 1]];
            }
        } while (nextBreak < length && current < available);
        kept = position;
        line.symbols[kept] = kEllipsis;
        line.shown = kept + 1;
    } else {
        line.shown = length;
    }
    qreal x = 0.0;
    for (int i = 0; i < line.shown; ++i) {
        line.x[i] = x;
        line.glyphs[i] = tables.glyph[line.symbols[i]];
        x += tables.advance[line.symbols[i]];
        if (i + 1 < line.shown) {
            x += tables.pair[line.symbols[i]][line.symbols[i + 1]];
        }
    }
    line.width = x;
}

void drawByQt(QPainter* painter, const QRect& rect, int alignment, const QString& text, const QFont& font)
{
    painter->setFont(font);
    const QFontMetrics metrics(font);
    painter->drawText(rect, alignment, metrics.elidedText(text, Qt::ElideRight, rect.width()));
}

// Whether a text is one plain line that a kept shaping can stand for.
bool isPlainLine(const QString& text)
{
    if (text.size() > kMaxShapedLength) {
        return false;
    }
    for (const QChar character : text) {
        const ushort code = character.unicode();
        if (code < 0x20 || code == 0x7f || character.isSurrogate() || code == QChar::LineSeparator ||
            code == QChar::ParagraphSeparator) {
            return false;
        }
    }
    return true;
}

// Where QPainter::drawText puts a line of this size in the rectangle.
QPointF lineOrigin(const QRect& rect, int alignment, qreal width, qreal height)
{
    qreal x = rect.x();
    if (alignment & Qt::AlignRight) {
        x += rect.width() - width;
    } else if (alignment & Qt::AlignHCenter) {
        x += (rect.width() - width) / 2;
    }
    qreal top = rect.y();
    if (alignment & Qt::AlignBottom) {
        top += rect.height() - height;
    } else if (alignment & Qt::AlignVCenter) {
        top += (rect.height() - height) / 2;
    }
    return QPointF(x, top);
}

bool lineInside(const QRect& rect, const QPointF& origin, qreal width, qreal height)
{
    return origin.x() >= rect.x() && origin.x() + width <= rect.x() + rect.width() && origin.y() >= rect.y() &&
           origin.y() + height <= rect.y() + rect.height();
}

void drawShaped(QPainter* painter, const QRect& rect, int alignment, const QString& text, const QFont& font,
                CFontTables& tables)
{
    const QPair<int, QString> key(rect.width(), text);
    auto found = tables.shaped.find(key);
    if (found == tables.shaped.end()) {
        if (tables.shaped.size() >= kMaxShaped) {
            tables.shaped.clear();
        }
        CFontTables::Shaped shaped;
        shaped.shown = QFontMetrics(font).elidedText(text, Qt::ElideRight, rect.width());
        found = tables.shaped.insert(key, shaped);
    }
    if (found->shown.isEmpty()) {
        return;
    }
    const bool aligned = (alignment & (Qt::AlignRight | Qt::AlignHCenter)) != 0;
    if (found->layout == nullptr) {
        // The layout drawText makes, kept with its shaping.
        found->layout = std::make_shared<QTextLayout>(found->shown, font, painter->device());
        QTextOption option;
        option.setWrapMode(QTextOption::NoWrap);
        option.setFlags(QTextOption::IncludeTrailingSpaces);
        found->layout->setTextOption(option);
        found->layout->setCacheEnabled(true);
        found->layout->beginLayout();
        QTextLine line = found->layout->createLine();
        if (line.isValid()) {
            line.setLineWidth(0x01000000);
            line.setPosition(QPointF(0.0, 0.0));
            found->width = line.naturalTextWidth();
            found->advance = line.horizontalAdvance();
            found->height = line.ascent() + line.descent();
        }
        found->layout->endLayout();
    }
    if (found->layout->lineCount() == 0) {
        return;
    }
    // drawText places a right or centred line by its advance.
    const QPointF origin = lineOrigin(rect, alignment, aligned ? found->advance : found->width, found->height);
    if (lineInside(rect, origin, found->width, found->height)) {
        found->layout->lineAt(0).draw(painter, origin);
        return;
    }
    painter->save();
    painter->setClipRect(rect, Qt::IntersectClip);
    found->layout->lineAt(0).draw(painter, origin);
    painter->restore();
}

}  // namespace

bool CTextLinePainter::laysOutDirectly(const QString& text, const QFont& font)
{
    CLine line;
    return toSymbols(text, line) && tablesFor(font)->usable;
}

QString CTextLinePainter::shownText(const QString& text, const QFont& font, int width)
{
    CLine line;
    const CFontTables* tables = tablesFor(font);
    if (!toSymbols(text, line) || !tables->usable) {
        return QFontMetrics(font).elidedText(text, Qt::ElideRight, width);
    }
    layOutLine(*tables, text.size(), width, line);
    QString shown;
    for (int i = 0; i < line.shown; ++i) {
        shown.append(QChar(kSymbols[line.symbols[i]]));
    }
    return shown;
}

void CTextLinePainter::draw(QPainter* painter, const QRect& rect, int alignment, const QString& text, const QFont& font)
{
    if (text.isEmpty()) {
        return;
    }
    CLine line;
    CFontTables* tables = tablesFor(font);
    if (!toSymbols(text, line) || !tables->usable) {
        if (isPlainLine(text)) {
            drawShaped(painter, rect, alignment, text, font, *tables);
        } else {
            drawByQt(painter, rect, alignment, text, font);
        }
        return;
    }
    layOutLine(*tables, text.size(), rect.width(), line);
    if (line.shown == 0) {
        return;
    }
    const qreal height = tables->ascent + tables->descent;
    const QPointF origin = lineOrigin(rect, alignment, line.width, height);
    QPointF positions[kMaxDirectLength + 1];
    for (int i = 0; i < line.shown; ++i) {
        positions[i] = QPointF(line.x[i], 0.0);
    }
    QGlyphRun run;
    run.setRawFont(tables->raw);
    run.setRawData(line.glyphs, positions, line.shown);
    const QPointF baseline(origin.x(), origin.y() + tables->ascent);
    // Qt clips the text to its rectangle; only a line that leaves it needs the clip.
    if (lineInside(rect, origin, line.width, height)) {
        painter->drawGlyphRun(baseline, run);
        return;
    }
    painter->save();
    painter->setClipRect(rect, Qt::IntersectClip);
    painter->drawGlyphRun(baseline, run);
    painter->restore();
}

}  // namespace WG
